#include "driver/argument_groups.h"

#include <gtest/gtest.h>

namespace {

TEST(ArgumentGroups, TheInnermostUnsatisfiedOneHasTheWord) {
  const auto atLeastOne = args::Group::Validators::AtLeastOne;
  args::ArgumentParser parser("");
  CommonCommandGroup outer(parser, "", atLeastOne);
  EXPECT_EQ(outer.GetValidationFailReason().first, &outer);
  EXPECT_EQ(outer.GetValidationErrorMessage(), "None arguments received");
  EXPECT_THROW(outer.Validate("-", "--"), args::ValidationError);
  CommandParamsGroup inner(outer, "", atLeastOne);
  EXPECT_EQ(outer.GetValidationFailReason().first, &inner);
  EXPECT_EQ(inner.GetValidationErrorMessage(), "Some of arguments aren't specified");
  const args::Flag flag(inner, "flag", "", {'f'});
  parser.ParseArgs(std::vector<std::string>{"-f"});
  EXPECT_EQ(outer.GetValidationFailReason().first, nullptr);
}

}  // namespace
