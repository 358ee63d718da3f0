#include "companion/command_line.h"

#include <algorithm>
#include <args.hxx>
#include <array>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <format>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "companion/command_table.h"
#include "companion/similar_word.h"
#include "companion/usage.h"

namespace companion {

namespace {

constexpr int WrongUsage = 2;

using Values = std::vector<std::string>;

void Set(bool& target, Values const& /*none*/) {
  target = true;
}
void Set(std::string& target, Values const& values) {
  target = values.front();
}
void Set(std::filesystem::path& target, Values const& values) {
  target = values.front();
}
void Set(Values& target, Values const& values) {
  target.push_back(values.front());
}

/// The parser, with a flag for each row of the table, which sets the option; all refer to it. Text
/// is kept as typed; the parser would read paths through a stream.
struct Arguments {
  Arguments() {
    for (OptionEntry const& option : OptionTable) {
      flags.emplace_back(
          parser, "", "", args::Matcher(option.letter, std::array{std::string(option.name)}),
          args::Nargs(option.value.empty() ? 0 : 1), [this, &option](Values const& values) {
            std::visit([&](auto member) { Set(options.*member, values); }, option.target);
            if (options.help) {
              throw args::Help("");  // Whatever stands behind it; Parse catches this.
            }
          });
    }
  }

  Options options;
  args::ArgumentParser parser{""};
  std::deque<args::ActionFlag> flags;  ///< In the order of the table.
  args::PositionalList<std::string> words{parser, "COMMAND", ""};
};

/// Leaves the parsing as the parser's own errors do.
[[noreturn]] void Refuse(std::string const& what) {
  throw args::ValidationError(what);
}

template <typename Table>
[[noreturn]] void RefuseUnknown(std::string_view what, std::string_view typed,
                                std::string_view word, Table const& table) {
  std::vector<std::string_view> names;
  for (auto const& entry : table) {
    names.push_back(entry.name);
  }
  const std::string_view similar = SimilarWord(word, names);
  const std::string_view dashes = typed.substr(0, typed.size() - word.size());
  Refuse(std::format("no such {}: {}", what, typed) +
         (similar.empty() ? "" : std::format(" (did you mean {}{}?)", dashes, similar)));
}

/// The command of that name; of two, the one that has -r if `hasRoot`.
CommandEntry const& FindCommand(std::string const& name, bool hasRoot) {
  CommandEntry const* found = nullptr;
  for (CommandEntry const& entry : CommandTable) {
    const bool takesRoot = OptionTable[0].IsOf(entry.run);
    if (entry.name == name && (found == nullptr || takesRoot == hasRoot)) {
      found = &entry;
    }
  }
  if (found == nullptr) {
    RefuseUnknown("command", name, name, CommandTable);
  }
  return *found;
}

/// What is parsed: an option that may stand without its value gets the usual one, since the parser
/// would take the next word for it.
Values ArgumentsOf(int argc, char const* const* argv) {
  Values values(argv + std::min(argc, 1), argv + argc);
  for (std::string& value : values) {
    if (value == "--") {
      break;
    }
    const std::string_view name = std::string_view(value).substr(0, value.find('='));
    if (name.size() > 2 && name.starts_with("--") &&
        std::ranges::find(OptionTable, name.substr(2), &OptionEntry::name) ==
            std::end(OptionTable)) {
      RefuseUnknown("option", name, name.substr(2), OptionTable);
    }
    value += value == "--stat" ? std::format("={}", StatByFile) : "";
  }
  return values;
}

/// Refuses an option that the command does not have.
void RefuseSurplus(CommandEntry const& command, Arguments const& arguments) {
  auto flag = arguments.flags.begin();
  for (OptionEntry const& option : OptionTable) {
    if ((flag++)->Matched() && !option.IsOf(command.run) && !option.isPassedOver) {
      Refuse(std::format("{} has no option {}", command.name, option.Typed()));
    }
  }
}

/// Refuses to go on without an option that the command needs; an empty value is none.
void RefuseLack(CommandEntry const& command, Options const& options) {
  for (OptionEntry const& option : OptionTable) {
    const auto isUnset = [&](auto member) { return options.*member == Options().*member; };
    if (option.isNeeded && option.IsOf(command.run) && std::visit(isUnset, option.target)) {
      Refuse(std::format("{} needs {} {}", command.name, option.Typed(), option.value));
    }
  }
}

/// Takes the words behind the command.
void TakeWords(CommandEntry const& command, Values const& words, Options& options) {
  const auto given = std::ssize(words) - 1;
  const auto most = command.words.empty() ? 0 : std::ranges::count(command.words, ' ') + 1;
  if (given < (command.words.starts_with('[') ? 0 : most)) {
    Refuse(std::format("{} needs {}", command.name, command.words));
  }
  if (given > most && !command.words.ends_with("...")) {
    Refuse(std::format("too many words for {}", command.name));
  }
  auto word = words.begin() + 1;
  if (command.run == Explain) {
    options.source = *word++;
  }
  options.reports.assign(word, words.end());
}

/// What is to be run; its command is null for the help.
CommandLine TakeCommand(Arguments& arguments) {
  Values const& words = arguments.words.Get();
  if (words.empty()) {
    Refuse("no command");
  }
  CommandEntry const& command = FindCommand(words.front(), !arguments.options.root.empty());
  RefuseSurplus(command, arguments);
  RefuseLack(command, arguments.options);
  TakeWords(command, words, arguments.options);
  return {command.run, std::move(arguments.options)};
}

/// The help of the command that is named, or of all.
std::string HelpOn(Values const& words) {
  return words.empty() ? Usage() : UsageOf(FindCommand(words.front(), false).name);
}

/// Help ends the parsing.
void Parse(Arguments& arguments, Values const& values) {
  try {
    arguments.parser.ParseArgs(values);
  } catch (args::Help const&) {
    arguments.options.help = true;
  }
}

/// Answers what needs no command, or returns the command line. Throws args::Error.
std::optional<CommandLine> Answer(Arguments& arguments, Console& console) {
  Options const& options = arguments.options;
  if (options.help) {
    console.Out() << HelpOn(arguments.words.Get());
  } else if (options.version) {
    console.Out() << "qln-fp-tree  " QLN_VERSION " ARM64\n";
  } else if (options.completions) {
    console.Out() << Completions();
  } else if (CommandLine command = TakeCommand(arguments); command.run != nullptr) {
    return command;
  } else {
    Values const& words = arguments.words.Get();
    console.Out() << HelpOn({words.begin() + 1, words.end()});
  }
  return std::nullopt;
}

}  // namespace

std::optional<CommandLine> ParseCommandLine(int argc, char const* const* argv, Console& console,
                                            int& status) {
  Arguments arguments;
  status = EXIT_SUCCESS;
  try {
    Parse(arguments, ArgumentsOf(argc, argv));
    return Answer(arguments, console);
  } catch (args::Error const& error) {
    console.Complain(std::format("{}; see qln-fp-tree --help", error.what()));
    status = WrongUsage;
  }
  return std::nullopt;
}

}  // namespace companion
