#include "driver/command_groups.h"

void MessageGroup::Validate(std::string const& shortPrefix, std::string const& longPrefix) const {
  if (!Matched()) {
    const std::string_view message = InnermostUnsatisfied().GetValidationErrorMessage();
    throw args::ValidationError(message.empty() ? "Group validation failed somewhere!"
                                                : std::string(message));
  }
  args::Group::Validate(shortPrefix, longPrefix);
}

MessageGroup const& MessageGroup::InnermostUnsatisfied() const {
  MessageGroup const* innermost = this;
  for (args::Base const* child : Children()) {
    auto const* group = dynamic_cast<MessageGroup const*>(child);
    if (group != nullptr && !group->Matched()) {
      innermost = &group->InnermostUnsatisfied();
    }
  }
  return *innermost;
}
