#include "merge/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "merge/weakly_canonical.h"
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
      ASSERT_EQ(expect([&] { return paths.Relative(path, top); }), expect([&] {
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

}  // namespace
