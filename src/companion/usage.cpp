#include "companion/usage.h"

#include <cstddef>
#include <format>
#include <string_view>
#include <variant>
#include <vector>

#include "companion/command_table.h"

namespace companion {

namespace {

/// What a command line with this command looks like.
std::string Synopsis(CommandEntry const& command) {
  std::string text = std::format("  {:7}", command.name);
  for (OptionEntry const& option : OptionTable) {
    if (option.IsOf(command.run)) {
      const bool isOutput = option.name == "output-file";
      text += std::format("{}{}{}{}{}{}", option.isNeeded ? " " : " [", option.Typed(),
                          option.value.empty() ? "" : " ", option.value,
                          isOutput ? command.outputEnding : "", option.isNeeded ? "" : "]");
    }
  }
  return text.append(command.words.empty() ? "" : " ").append(command.words);
}

/// The text in lines, all but the first of them with blanks in front.
std::string Folded(std::string text, std::size_t indent) {
  constexpr std::size_t width = 80;
  for (std::size_t start = 0; text.size() - start > width;) {
    const std::size_t blank = text.rfind(' ', start + width);
    text.replace(blank, 1, '\n' + std::string(indent, ' '));
    start = blank + 1;
  }
  return text += '\n';
}

std::string Row(std::string_view command, OptionEntry const& option) {
  const bool isList = std::holds_alternative<std::vector<std::string> Options::*>(option.target);
  return std::format("{}|{}|{}--{}|{}|{}\n", command, isList ? "*" : "",
                     option.letter.empty() ? "" : option.Typed() + ' ', option.name, option.value,
                     option.help);
}

}  // namespace

std::string Usage() {
  std::string text = "Usage: qln-fp-tree COMMAND, which is one of:\n\n";
  for (CommandEntry const& command : CommandTable) {
    text += Folded(Synopsis(command), 10) + Folded(std::format("{:6}{}", "", command.help), 6);
  }
  text += '\n';
  for (OptionEntry const& option : OptionTable) {
    if (!option.letter.empty()) {  // The commands' help tells of the others.
      text += std::format("  -{}, --{:22}{}\n", option.letter,
                          std::format("{} {}", option.name, option.value), option.help);
    }
  }
  return text + R"(
undo and keep leave a source that is not its backup less some markers. preview
refuses names that hold control characters, such as line ends.
Exit status: 0 all is well; 1 something failed or was refused; 2 wrong usage.
)";
}

std::string Completions() {
  std::string text;
  for (CommandEntry const& command : CommandTable) {
    text += std::format("||{}|{}|{}\n", command.name, command.words, command.help);
    for (OptionEntry const& option : OptionTable) {
      text += option.IsOf(command.run) ? Row(command.name, option) : "";
    }
  }
  for (OptionEntry const& option : OptionTable) {
    text += option.commands.size() > 0 || option.help.empty() ? "" : Row("", option);
  }
  return text;
}

}  // namespace companion
