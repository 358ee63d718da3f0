#include "merge/reading/file_from_json.h"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;

json Record(std::string_view path, json const& number) {
  const json range = {{"begin", number}, {"end", number}};
  const json marker = {{"code", number}, {"columns", range}, {"offsets", range}};
  return {{"version", number},
          {"path", path},
          {"hash", "h"},
          {"lines", {{{"line", number}, {"markers", {marker}}}}}};
}

TEST(ReportJson, AnyNumberIsCastToItsField) {
  const std::tuple<json, std::uint32_t, std::uint64_t> cases[] = {
      {7, 7, 7},
      {true, 1, 1},
      {false, 0, 0},
      {-1, 4294967295, 18446744073709551615U},
      {4294967296, 0, 4294967296},
      {18446744073709551615U, 4294967295, 18446744073709551615U},
      {2.9, 2, 2},
      {-2.9, 4294967294, 18446744073709551614U},
      {1e19, 2313682944, 10000000000000000000U},
      {1e300, 0, 9223372036854775808U},
  };
  for (auto const& [number, narrow, wide] : cases) {
    const auto file = Record("a", number).get<File>();
    const Range range{wide, wide};
    EXPECT_EQ(file.version, narrow) << number;
    EXPECT_EQ(file.lines, (std::vector<Line>{{narrow, {{wide, range, range}}}})) << number;
  }
}

TEST(ReportJson, PathsLoseThePlaceholderAndGetItBack) {
  const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
      {"|?|", "", "|?|/"},
      {"|?|/src/a.cpp", "src/a.cpp", "|?|/src/a.cpp"},
      {"src/a.cpp", "src/a.cpp", "|?|/src/a.cpp"},
      {"/abs/a.cpp", "/abs/a.cpp", "|?|/abs/a.cpp"},
      {"|?|\\\\dir\\a.cpp", "dir\\a.cpp", "|?|/dir\\a.cpp"},
      {"|?|/\\a.cpp", "a.cpp", "|?|/a.cpp"},
      {"|?|//dir", "/dir", "|?|/dir"},
      {"|?|\\\\\\a.cpp", "\\a.cpp", "|?|\\a.cpp"},
      {"|?a", "|?a", "|?|/|?a"},
  };
  for (auto const& [written, stored, shown] : cases) {
    const auto file = Record(written, 1).get<File>();
    EXPECT_EQ(file.path.native(), stored);
    EXPECT_EQ(file.PathToString({}), shown);
  }
}

}  // namespace
