#include "companion/usage.h"

#include <algorithm>
#include <cstddef>
#include <format>
#include <iterator>
#include <string_view>
#include <variant>
#include <vector>

#include "companion/command_table.h"

namespace companion {

namespace {

bool CanBeLeftOut(std::string_view value) {
  return value.starts_with('[');
}

/// What a command line with this command looks like.
std::string Synopsis(CommandEntry const& command, std::size_t width = 0) {
  std::string text = std::format("{:{}}", command.name, width);
  for (OptionEntry const& option : OptionTable) {
    if (option.IsOf(command.run)) {
      const bool isOutput = option.name == "output-file";
      text +=
          std::format("{}{}{}{}{}{}", option.isNeeded ? " " : " [", option.Typed(),
                      option.value.empty() || CanBeLeftOut(option.value) ? "" : " ", option.value,
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
                     option.letter.empty() ? "" : option.Typed() + ' ', option.name,
                     CanBeLeftOut(option.value) ? "" : option.value, option.help);
}

/// An option as the help lists it.
std::string Listed(OptionEntry const& option) {
  const std::string letter = option.letter.empty() ? "    " : option.Typed() + ", ";
  const std::string_view blank = CanBeLeftOut(option.value) ? "" : " ";
  return std::format("  {}--{:22}{}\n", letter,
                     std::format("{}{}{}", option.name, blank, option.value), option.help);
}

}  // namespace

std::string Usage() {
  std::string text = "Usage: qln-fp-tree COMMAND, which is one of:\n\n";
  for (CommandEntry const& command : CommandTable) {
    text += Folded(std::format("  {}", Synopsis(command, 8)), 10) +
            Folded(std::format("{:6}{}", "", command.help), 6);
  }
  text += '\n';
  for (OptionEntry const& option : OptionTable) {
    if (!option.letter.empty()) {  // The commands' help tells of the others.
      text += Listed(option);
    }
  }
  return text + R"(
undo and keep leave a source that is not its backup less some markers. preview
refuses names that hold control characters, such as line ends.
Exit status: 0 all is well; 1 something failed or was refused; 2 wrong usage;
3 preview --exit-code: something would change.
)";
}

std::string UsageOf(std::string_view command) {
  std::string usage;
  std::string options;
  std::string examples = "\nExamples:\n\n";
  for (CommandEntry const& entry : CommandTable) {
    if (entry.name != command) {
      continue;
    }
    usage += Folded("Usage: qln-fp-tree " + Synopsis(entry), 10) + '\n' +
             Folded(std::string(entry.help), 0) + '\n';
    for (OptionEntry const& option : OptionTable) {
      options += option.IsOf(entry.run) ? Listed(option) : "";
    }
    for (std::string_view left = entry.examples; !left.empty();) {
      const std::string_view example = left.substr(0, left.find('\n'));
      examples += std::format("  qln-fp-tree {}\n", example);
      left.remove_prefix(std::min(example.size() + 1, left.size()));
    }
  }
  return usage + options + examples.substr(options.empty() ? 1 : 0);
}

std::string Completions() {
  std::string text;
  for (auto entry = std::begin(CommandTable); entry != std::end(CommandTable); ++entry) {
    CommandEntry const& command = *entry;
    if (entry + 1 != std::end(CommandTable) && (entry + 1)->name == command.name) {
      continue;  // The next one of this name tells all that there is to complete.
    }
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
