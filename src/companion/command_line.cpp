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
#include <utility>
#include <variant>
#include <vector>

#include "companion/command_table.h"
#include "companion/usage.h"

namespace companion {

namespace {

constexpr int WrongUsage = 2;

using Values = std::vector<std::string>;

void Set(bool& target, Values const& /*none*/) {
  target = true;
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
              throw args::Help("");  // Whatever stands behind it.
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

CommandEntry const& FindCommand(Values const& words) {
  if (words.empty()) {
    Refuse("no command");
  }
  auto const* const found = std::ranges::find(CommandTable, words.front(), &CommandEntry::name);
  if (found == std::end(CommandTable)) {
    Refuse("no such command: " + words.front());
  }
  return *found;
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
  const auto needed = command.words.empty() ? 0 : std::ranges::count(command.words, ' ') + 1;
  if (given < needed) {
    Refuse(std::format("{} needs {}", command.name, command.words));
  }
  if (given > needed && !command.words.ends_with("...")) {
    Refuse(std::format("too many words for {}", command.name));
  }
  auto word = words.begin() + 1;
  if (command.run == Explain) {
    options.source = *word++;
  }
  options.reports.assign(word, words.end());
}

/// What the parsed arguments ask to be run. Throws args::Error.
CommandLine TakeCommand(Arguments& arguments) {
  CommandEntry const& command = FindCommand(arguments.words.Get());
  RefuseSurplus(command, arguments);
  RefuseLack(command, arguments.options);
  TakeWords(command, arguments.words.Get(), arguments.options);
  return {command.run, std::move(arguments.options)};
}

}  // namespace

std::optional<CommandLine> ParseCommandLine(int argc, char const* const* argv, Console& console,
                                            int& status) {
  Arguments arguments;
  Options const& options = arguments.options;
  status = EXIT_SUCCESS;
  try {
    arguments.parser.ParseCLI(argc, argv);
    if (options.version) {
      console.Out() << "qln-fp-tree  " QLN_VERSION " ARM64\n";
    } else if (options.completions) {
      console.Out() << Completions();
    } else {
      return TakeCommand(arguments);
    }
  } catch (args::Help const&) {
    console.Out() << Usage();
  } catch (args::Error const& error) {
    console.Complain(std::format("{}; see qln-fp-tree --help", error.what()));
    status = WrongUsage;
  }
  return std::nullopt;
}

}  // namespace companion
