#include "merge/reading/plain_record.h"

#include <gtest/gtest.h>

#include <random>

#include "merge/reading/file_from_json.h"
#include "merge/reading/structured_report_reader.h"
#include "scratch_directory.h"

namespace {

using nlohmann::json;

bool Same(File const& left, File const& right) {
  return left.version == right.version && left.path == right.path && left.hash == right.hash &&
         left.lines == right.lines;
}

/// What the library makes of a text that is to be one record; nothing when it refuses it.
std::optional<File> LibraryRecord(std::string_view text) {
  try {
    return json::parse(text).get<File>();
  } catch (json::exception const&) {
    return std::nullopt;
  }
}

json RandomRecord(std::minstd_rand& random) {
  const auto number = [&random] { return random() % (1U << random() % 32); };
  const auto range = [&] { return json{{"begin", number()}, {"end", number()}}; };
  json record = {{"path", "|?|/src/a.cpp"}, {"hash", "0123456789abcdef"}, {"lines", json::array()}};
  if (random() % 2 == 0) {
    record["version"] = number();
  }
  for (auto lines = random() % 3; lines > 0; --lines) {
    json markers = json::array();
    for (auto count = random() % 3; count > 0; --count) {
      markers.push_back({{"columns", range()}, {"offsets", range()}});
      if (random() % 2 == 0) {
        markers.back()["code"] = number();
      }
    }
    record["lines"].push_back({{"line", number()}, {"markers", markers}});
  }
  return record;
}

/// Copies a piece of the text to another place in it, or puts something else there.
void Mutate(std::string& text, std::minstd_rand& random) {
  static constexpr std::string_view others =
      "0-1.5e2.18446744073709551615,true null\"\"{}[]\\u0041\xc3\xa4 \n{}\xff\"code\":\t000x\x7f";
  const bool copies = random() % 3 == 0;
  const std::string_view from = copies ? std::string_view(text) : others;
  const std::string piece(from.substr(random() % from.size(), random() % (copies ? 30 : 4)));
  text.replace(random() % text.size(), random() % 4, piece);
}

/// The length of the plain record at the front of `text`; 0 when none stands there.
std::size_t PlainLength(ScratchDirectory const& scratch, std::string_view text, File& file) {
  ReportWindow window(scratch.Write("report", text));
  const bool isRead = window.ReadMore() && ReadPlainRecord(window, file);
  EXPECT_EQ(isRead, window.Position() > 0) << text;
  return window.Position();
}

TEST(PlainRecord, ReadsWhatTheLibraryReadsOrLeavesItToIt) {
  const ScratchDirectory scratch;
  std::minstd_rand random(11);
  File reused;
  int plain = 0;
  for (int round = 0; round < 10'000; ++round) {
    std::string text = RandomRecord(random).dump(static_cast<int>(random() % 4) - 1);
    for (auto mutations = random() % 3; mutations > 0 && !text.empty(); --mutations) {
      Mutate(text, random);
    }
    const std::size_t length = PlainLength(scratch, text, reused);
    if (length == 0) {
      continue;
    }
    ++plain;
    const auto expected = LibraryRecord(std::string_view(text).substr(0, length));
    ASSERT_TRUE(expected) << text;
    ASSERT_TRUE(Same(reused, *expected)) << text;
  }
  EXPECT_GT(plain, 3'500);
}

TEST(PlainRecord, EndsWithItsLastBrace) {
  const ScratchDirectory scratch;
  const std::string good = RandomRecord(*std::make_unique<std::minstd_rand>(2)).dump();
  File file;
  EXPECT_EQ(PlainLength(scratch, good + "}", file), good.size());
  EXPECT_EQ(PlainLength(scratch, " " + good, file), 0);
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_EQ(PlainLength(scratch, good.substr(0, length), file), 0) << length;
  }
}

/// Longer than the window or across its edge, a record is read the same, or the window stands at
/// its front again.
TEST(PlainRecord, MayBeAnywhereAndOfAnyLength) {
  const ScratchDirectory scratch;
  std::minstd_rand random(4);
  json record = RandomRecord(random);
  for (std::uint32_t line = 0; line < 20000; ++line) {
    record["lines"].push_back({{"line", line}, {"markers", json::array()}});
  }
  const std::string good = record.dump();
  ASSERT_GT(good.size(), ReportWindow::Size);
  for (std::size_t before = 1; before < ReportWindow::Size + 100; before += 15'013) {
    for (const bool isPlain : {true, false}) {
      const std::string text = isPlain ? good : good.substr(0, good.size() - 1) + ",\"x\":1}";
      ReportWindow window(scratch.Write("report", std::string(before, '\n') + text + "\n"));
      ASSERT_TRUE(window.SkipAny("\n"));
      File file;
      ASSERT_EQ(ReadPlainRecord(window, file), isPlain) << before;
      ASSERT_EQ(window.Position(), before + (isPlain ? text.size() : 0));
      ASSERT_TRUE(window.Rest().starts_with(isPlain ? "\n" : text.substr(0, 99)));
      ASSERT_TRUE(!isPlain || Same(file, record.get<File>()));
    }
  }
}

TEST(PlainRecord, RefusesAKeyWithoutItsValue) {
  const std::string good = R"({"path":"a","hash":"h","lines":[{"line":1,"markers":[{"offsets":)"
                           R"({"begin":1,"end":2},"columns":{"begin":1,"end":2}}]}]})";
  const ScratchDirectory scratch;
  File file;
  ASSERT_EQ(PlainLength(scratch, good, file), good.size());
  for (const std::string_view value : {R"(:"a",)", R"(:"h",)", ":1,"}) {
    std::string text = good;
    text.replace(text.find(value), value.size(), " ");
    EXPECT_EQ(PlainLength(scratch, text, file), 0) << text;
  }
}

TEST(PlainStructuredReport, RefusesAKeyWithoutItsValue) {
  const ScratchDirectory scratch;
  for (const std::string_view text :
       {R"({"files","files":[],"version":1})", R"({"files":[],"version":,"version":1})",
        R"({"files":[{"path":"a","hash":"h","lines":[]},,"files":[],"version":1})"}) {
    EXPECT_FALSE(ReadPlainStructuredReport(scratch.Write("report", text))) << text;
  }
}

/// Whole structured reports, mutated anywhere: the frame is held against the library as well.
TEST(PlainStructuredReport, IsWhatTheLibraryReadsOrLeftToIt) {
  const ScratchDirectory scratch;
  std::minstd_rand random(5);
  int plain = 0;
  for (int round = 0; round < 3000; ++round) {
    json report = {{"version", random() % 12}, {"files", json::array()}};
    for (auto count = random() % 3; count > 0; --count) {
      report["files"].push_back(RandomRecord(random));
      report["files"].back()["path"] = std::to_string(random() % 4) + "\xc3\xa4";
    }
    std::string text = report.dump(static_cast<int>(random() % 4) - 1);
    for (auto mutations = random() % 3; mutations > 0; --mutations) {
      Mutate(text, random);
    }
    const auto files = ReadPlainStructuredReport(scratch.Write("report", text));
    if (!files) {
      continue;
    }
    ++plain;
    ASSERT_TRUE(json::accept(text)) << text;
    const auto expected = FilesFromJson(json::parse(text));
    ASSERT_TRUE(std::ranges::equal(*files, expected, Same)) << text;
  }
  EXPECT_GT(plain, 500);
}

}  // namespace
