// The argument groups of a command, with messages of their own.
#pragma once

#include <args.hxx>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// Why a group is not satisfied. The groups of this program have one reason: no member is given.
enum class ValidationFailType : std::uint32_t { NoneGiven = 0 };

class MessageGroup;

/// What can be asked why it is not satisfied.
class Validated {
 public:
  /// The group to blame, none when all is well.
  using FailReason = std::pair<MessageGroup const*, ValidationFailType>;

  [[nodiscard]] virtual FailReason GetValidationFailReason() const = 0;

 protected:
  ~Validated() = default;
};

/// A group that says in its own words that it is not satisfied. The parser library has one message
/// for all groups; this one raises its own while it validates, before its members complain, and
/// leaves the word to the innermost unsatisfied group.
class MessageGroup : public args::Group, public Validated {
 public:
  using args::Group::Group;

  /// Empty for the library's message.
  [[nodiscard]] virtual std::string_view GetValidationErrorMessage() const { return {}; }

  /// Blames the innermost group that is not satisfied.
  [[nodiscard]] FailReason GetValidationFailReason() const override;

  /// Throws args::ValidationError when this group is not satisfied.
  void Validate(std::string const& shortPrefix, std::string const& longPrefix) const override;
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
