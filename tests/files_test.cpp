#include "merge/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <format>
#include <random>
#include <sstream>

#include "merge/paths/path_order.h"
#include "merge/paths/source_paths.h"
#include "merge/paths/weakly_canonical.h"
#include "merge/writing/structured_report_writer.h"
#include "scratch_directory.h"

namespace {

namespace fs = std::filesystem;

std::string RandomPath(std::minstd_rand& random, std::string_view letters) {
  std::string path;
  for (auto length = random() % 9; length > 0; --length) {
    path += letters[random() % letters.size()];
  }
  return path;
}

TEST(PathOrder, IsThatOfTheStandardLibrary) {
  const auto sign = [](int value) { return (value > 0) - (value < 0); };
  std::minstd_rand random(13);
  for (int round = 0; round < 100'000; ++round) {
    const fs::path left = RandomPath(random, "aab-/./\xff");
    const fs::path right = round % 2 == 0 ? fs::path(RandomPath(random, "aab-/./\xff"))
                                          : fs::path(left.native() + RandomPath(random, "a/-"));
    ASSERT_EQ(sign(ComparePaths(left, right)), sign(left.compare(right))) << left << right;
  }
}

TEST(SourcePaths, AreThoseOfTheStandardLibrary) {
  const ScratchDirectory scratch;
  fs::create_directories(scratch.Path() / "a/b/a");
  fs::create_directory_symlink("a/b", scratch.Path() / "b");
  fs::create_symlink("../nowhere", scratch.Path() / "a/b/b");
  scratch.Write("a/a", "");
  std::minstd_rand random(17);
  for (const char* root : {"", "a", "b", "a/b/../a", "none/at/all", "a/b/a"}) {
    SourcePaths paths;
    for (int round = 0; round < 3000; ++round) {
      const fs::path path = scratch.Path() / RandomPath(random, "ab//..c");
      const fs::path top = scratch.Path() / root;
      const auto expect = [&](auto find) -> std::string {
        try {
          return fs::path(find()).native();
        } catch (fs::filesystem_error const& error) {
          return error.what();
        }
      };
      ASSERT_EQ(expect([&] { return paths.Relative(path, top).relative; }), expect([&] {
                  return WeaklyCanonical(path).lexically_relative(WeaklyCanonical(top));
                }))
          << path << top;
    }
  }
}

TEST(Intersect, IsASearchFromTheFrontForEveryLine) {
  std::minstd_rand random(19);
  const auto lines = [&random] {
    std::vector<Line> result;
    for (auto count = random() % 12; count > 0; --count) {
      result.push_back({static_cast<std::uint32_t>(random() % 8), {}});
      result.back().markers.resize(random() % 3, {random() % 2, {}, {random() % 2, 0}});
    }
    if (random() % 2 == 0) {
      std::ranges::sort(result, {}, &Line::line);
      const auto repeats = std::ranges::unique(result, {}, &Line::line);
      result.erase(repeats.begin(), repeats.end());
    }
    return result;
  };
  for (int round = 0; round < 20'000; ++round) {
    File file;
    File other;
    file.lines = lines();
    other.lines = lines();
    std::vector<Line> expected;
    std::ranges::copy_if(file.lines, std::back_inserter(expected), [&other](Line const& line) {
      return std::ranges::find(other.lines, line) != other.lines.end();
    });
    file.Intersect(other);
    ASSERT_EQ(file.lines, expected);
  }
}

std::string Text(Files const& files) {
  std::ostringstream text;
  WriteStructuredReport(files.version, files.files, text);
  return text.str();
}

// One collection reads whole reports, and remembers paths and repeats; the other is copied, and so
// forgets, for each record. In between anyone may change the set, which is public.
TEST(RawReports, AreMergedAsIfEachRecordStoodAlone) {
  const ScratchDirectory scratch;
  fs::path const& root = scratch.Path();
  const fs::path report = root / "report.json";
  const auto record = [&root](std::uint64_t file, std::uint64_t lines) {
    std::string text;
    for (unsigned line = 0; line < 5; ++line) {
      if ((lines >> line & 1U) != 0) {
        text += std::format(R"({}{{"line":{},"markers":[]}})", text.empty() ? "" : ",", line);
      }
    }
    const fs::path path = root / (file % 2 == 0 ? "" : "folder/..") / std::to_string(file / 2);
    return std::format(R"({{"path":"{}","hash":"h","lines":[{}]}})", path.native(), text);
  };
  std::minstd_rand random(23);
  for (int round = 0; round < 20; ++round) {
    Files files;
    Files plain;
    for (int turn = 0; turn < 6; ++turn) {
      std::vector<std::string> records(1 + random() % 12);
      std::ranges::generate(records, [&] { return record(random() % 6, random() % 31 + 1); });
      records.insert(records.end(), records.begin(), records.end());
      std::string text;
      for (std::string const& one : records) {
        text += one + "\n";
        scratch.Write("report.json", one);
        plain = Files(plain);
        plain.ExtractFromReport(report, false, root);
      }
      scratch.Write("report.json", text);
      files.ExtractFromReport(report, false, root);
      ASSERT_EQ(Text(files), Text(plain));
      if (turn == 1) {
        for (FileSet* const set : {&files.files, &plain.files}) {
          round % 3 == 0 ? set->clear() : static_cast<void>(set->erase(set->begin()));
        }
      } else if (turn == 2) {
        files.DeleteEmpty();
        plain.DeleteEmpty();
      } else if (turn == 3) {
        files.files = FileSet(plain.files);
      } else if (turn == 4) {
        scratch.Write("report.json", R"({"version":1,"files":[]})");
        files.ExtractFromReport(report, false, root);
        plain.files.clear();
      }
    }
  }
}

}  // namespace
