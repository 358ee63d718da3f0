#include "merge/paths/source_tree_placeholder.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(SourceTreePlaceholder, IsLostAndComesBack) {
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
    EXPECT_EQ(WithoutPlaceholder(written), stored);
    EXPECT_EQ(WithPlaceholder(stored), shown);
  }
}

}  // namespace
