#include "driver/argument_groups.h"

void MessageGroup::Validate(std::string const& shortPrefix, std::string const& longPrefix) const {
  if (MessageGroup const* const failing = GetValidationFailReason().first) {
    const std::string_view message = failing->GetValidationErrorMessage();
    throw args::ValidationError(message.empty() ? "Group validation failed somewhere!"
                                                : std::string(message));
  }
  args::Group::Validate(shortPrefix, longPrefix);
}

Validated::FailReason MessageGroup::GetValidationFailReason() const {
  if (Matched()) {
    return {nullptr, ValidationFailType::NoneGiven};
  }
  for (args::Base const* child : Children()) {
    auto const* group = dynamic_cast<MessageGroup const*>(child);
    if (group != nullptr && !group->Matched()) {
      return group->GetValidationFailReason();
    }
  }
  return {this, ValidationFailType::NoneGiven};
}
