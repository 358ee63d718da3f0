#include "converter/warning.h"

#include <gtest/gtest.h>

#include "fill_template.h"

namespace {

TEST(Warning, ErrorCode) {
  const std::pair<const char*, std::uint64_t> cases[] = {{"V005", 5},
                                                         {"V4294967295", 4294967295},
                                                         {"V4294967296", 4294967296},
                                                         {"V-1", 4294967296},
                                                         {"V9223372036854775808", 0},
                                                         {"", 0},
                                                         {"V", 0},
                                                         {"V+5", 0},
                                                         {"V5a", 0},
                                                         {"V 5", 0},
                                                         {"V5 ", 0},
                                                         {"v501", 0}};
  for (auto const& [code, number] : cases) {
    TesselConverter::Warning warning;
    warning.code = code;
    EXPECT_EQ(warning.GetErrorCode(), number) << code;
  }
}

TEST(FillTemplate, ReplacesOnlyNumbersThatHaveAnArgument) {
  const std::pair<const char*, const char*> cases[] = {
      {"%1% %2%", "a b"}, {"%2%%1%", "ba"}, {"100%", "100%"}, {"%0% %3% %x%", "%0% %3% %x%"},
      {"%%1%", "%a"},     {"%1", "%1"},     {"%1x%", "%1x%"}, {"", ""}};
  for (auto const& [text, filled] : cases) {
    EXPECT_EQ(FillTemplate(text, {"a", "b"}), filled) << text;
  }
}

}  // namespace
