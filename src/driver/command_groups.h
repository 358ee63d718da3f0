// The argument groups of a command, with messages of their own.
#pragma once

#include <args.hxx>
#include <string>
#include <string_view>

/// A group that says in its own words that it is not satisfied. The parser library has one message
/// for all groups; this one raises its own while it validates, before its members complain, and
/// leaves the word to the innermost unsatisfied group.
class MessageGroup : public args::Group {
 public:
  using args::Group::Group;

  /// Empty for the library's message.
  [[nodiscard]] virtual std::string_view GetValidationErrorMessage() const { return {}; }

  /// Throws args::ValidationError when this group is not satisfied.
  void Validate(std::string const& shortPrefix, std::string const& longPrefix) const override;

 private:
  [[nodiscard]] MessageGroup const& InnermostUnsatisfied() const;
};

/// The outer group of a command's arguments. With the trees of this program its message is never
/// the one that is printed, since the inner group has one too.
class CommonCommandGroup : public MessageGroup {
 public:
  using MessageGroup::MessageGroup;
  [[nodiscard]] std::string_view GetValidationErrorMessage() const override {
    return "None arguments received";
  }
};

/// The inner group, which holds a command's parameters.
class CommandParamsGroup : public MessageGroup {
 public:
  using MessageGroup::MessageGroup;
  [[nodiscard]] std::string_view GetValidationErrorMessage() const override {
    return "Some of arguments aren't specified";
  }
};
