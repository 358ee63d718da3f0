#include "merge/plain_record.h"

#include <gtest/gtest.h>

#include <random>

#include "merge/report_json.h"
#include "merge/structured_report_reader.h"
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
  static constexpr std::string_view pieces[] = {"0",
                                                "-1",
                                                "1.5",
                                                "1e2",
                                                "18446744073709551615",
                                                "9999999999999999999",
                                                "true",
                                                "null",
                                                "\"\"",
                                                "{}",
                                                "[]",
                                                ",",
                                                "\\u0041",
                                                "\xc3\xa4",
                                                " ",
                                                "\n",
                                                "{",
                                                "}",
                                                "\xff",
                                                "\x7f",
                                                "00",
                                                "\"code\":",
                                                "\t",
                                                "x"};
  const std::size_t at = random() % text.size();
  const std::size_t length = random() % 4;
  const std::string piece = random() % 3 == 0 ? text.substr(random() % text.size(), random() % 30)
                                              : std::string(pieces[random() % std::size(pieces)]);
  text.replace(at, length, piece);
}

TEST(PlainRecord, ReadsWhatTheLibraryReadsOrLeavesItToIt) {
  std::minstd_rand random(11);
  File reused;
  int plain = 0;
  for (int round = 0; round < 30'000; ++round) {
    std::string text = RandomRecord(random).dump(static_cast<int>(random() % 4) - 1);
    for (auto mutations = random() % 3; mutations > 0 && !text.empty(); --mutations) {
      Mutate(text, random);
    }
    const std::size_t length = ReadPlainRecord(text, reused).length;
    if (length == 0) {
      continue;
    }
    ++plain;
    const auto expected = LibraryRecord(std::string_view(text).substr(0, length));
    ASSERT_TRUE(expected) << text;
    ASSERT_TRUE(Same(reused, *expected)) << text;
  }
  EXPECT_GT(plain, 10'000);
}

TEST(PlainRecord, LeavesTheUnusualToTheLibrary) {
  const std::string good = RandomRecord(*std::make_unique<std::minstd_rand>(2)).dump();
  File file;
  ASSERT_EQ(ReadPlainRecord(good + "}", file).length, good.size());
  for (std::size_t length = 0; length < good.size(); ++length) {
    const auto record = ReadPlainRecord(std::string_view(good).substr(0, length), file);
    EXPECT_EQ(record.length, 0) << length;
    EXPECT_TRUE(record.isCutShort) << length;
  }
  EXPECT_EQ(ReadPlainRecord(" " + good, file).length, 0);
}

TEST(PlainRecord, RefusesAKeyWithoutItsValue) {
  const std::string good = R"({"path":"a","hash":"h","lines":[{"line":1,"markers":[{"offsets":)"
                           R"({"begin":1,"end":2},"columns":{"begin":1,"end":2}}]}]})";
  File file;
  ASSERT_EQ(ReadPlainRecord(good, file).length, good.size());
  for (const std::string_view value : {R"(:"a",)", R"(:"h",)", ":1,"}) {
    std::string text = good;
    text.replace(text.find(value), value.size(), " ");
    EXPECT_EQ(ReadPlainRecord(text, file).length, 0) << text;
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
    const auto expected = json::parse(text).get<Files>();
    ASSERT_TRUE(std::ranges::equal(files->files, expected.files, Same)) << text;
  }
  EXPECT_GT(plain, 500);
}

}  // namespace
