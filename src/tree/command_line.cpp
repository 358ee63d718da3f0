#include "tree/command_line.h"

#include <algorithm>
#include <args.hxx>
#include <cstddef>
#include <cstdlib>
#include <format>
#include <string>
#include <string_view>
#include <utility>

#include "tree/check.h"
#include "tree/clean.h"
#include "tree/explain.h"
#include "tree/keep.h"
#include "tree/page.h"
#include "tree/preview.h"
#include "tree/sarif.h"
#include "tree/select.h"
#include "tree/undo.h"
#include "tree/usage.h"

namespace tree {

namespace {

constexpr int WrongUsage = 2;

/// One command and what may follow it. Options may stand anywhere on the line.
struct CommandEntry {
  std::string_view name;
  void (*run)(Options const&, Console&);
  std::string_view options;  ///< Its own ones, of which -o must be given.
  std::size_t fewestWords;
  std::string_view words;  ///< What these are.
  bool hasRoot = true;     ///< Needs one, and takes any number of words.
};

constexpr CommandEntry Commands[] = {
    {"check", Check, "--list", 1, "REPORT..."},
    {"explain", Explain, "", 2, "FILE[:LINE] REPORT..."},
    {"preview", Preview, "--stat", 1, "REPORT..."},
    {"clean", Clean, "--keep", 1, "REPORT..."},
    {"undo", Undo, "", 0, ""},
    {"keep", Keep, "", 0, ""},
    {"select", Select, "-o --code --path --without", 1, "REPORT..."},
    {"page", Page, "-o", 1, "REPORT..."},
    {"sarif", Sarif, "", 1, "WARNINGS.json", false},
};

/// The parser with its arguments, which refer to it. Text is read as typed; paths would go through
/// a stream.
struct Arguments {
  using Text = std::string;

  args::ArgumentParser parser{""};
  args::HelpFlag help{parser, "help", "", {'h', "help"}};
  args::Flag version{parser, "version", "", {'v', "version"}};
  args::ValueFlag<Text> root{parser, "ROOT", "", {'r', "sourcetree-root"}};
  args::ValueFlag<Text> output{parser, "FILE", "", {'o', "output-file"}};
  args::Flag list{parser, "list", "", {"list"}};
  args::Flag stat{parser, "stat", "", {"stat"}};
  args::Flag keep{parser, "keep", "", {"keep"}};
  args::ValueFlagList<Text> codes{parser, "CODE", "", {"code"}};
  args::ValueFlagList<Text> paths{parser, "GLOB", "", {"path"}};
  args::ValueFlagList<Text> without{parser, "GLOB", "", {"without"}};
  args::PositionalList<Text> words{parser, "COMMAND", ""};
};

/// The first option that the command does not have; empty when there is none.
std::string_view Surplus(CommandEntry const& entry, Arguments& arguments) {
  const std::pair<std::string_view, bool> given[] = {
      {"-o", arguments.output},        {"--list", arguments.list},  {"--stat", arguments.stat},
      {"--keep", arguments.keep},      {"--code", arguments.codes}, {"--path", arguments.paths},
      {"--without", arguments.without}};
  for (auto const& [option, isGiven] : given) {
    if (isGiven && entry.options.find(option) == std::string_view::npos) {
      return option;
    }
  }
  return {};
}

/// What is wrong with the command's arguments; empty when nothing is.
std::string WhatIsWrong(CommandEntry const& entry, Arguments& arguments) {
  if (const std::string_view option = Surplus(entry, arguments); !option.empty()) {
    return std::format("{} has no option {}", entry.name, option);
  }
  if (entry.hasRoot && arguments.root.Get().empty()) {
    return std::format("{} needs -r ROOT", entry.name);
  }
  if (entry.options.starts_with("-o") && arguments.output.Get().empty()) {
    return std::format("{} needs -o FILE", entry.name);
  }
  const std::size_t words = arguments.words.Get().size() - 1;
  if (words < entry.fewestWords) {
    return std::format("{} needs {}", entry.name, entry.words);
  }
  const bool isOpen = entry.words.ends_with("...");
  return isOpen || words == entry.fewestWords ? std::string()
                                              : std::format("too many words for {}", entry.name);
}

Options TakeOptions(Arguments& arguments) {
  Options options;
  auto const& words = arguments.words.Get();
  auto word = words.begin() + 1;
  if (words.front() == "explain") {
    options.source = *word++;
  }
  options.reports.assign(word, words.end());
  options.root = arguments.root.Get();
  options.output = arguments.output.Get();
  options.codes = arguments.codes.Get();
  options.paths = arguments.paths.Get();
  options.without = arguments.without.Get();
  options.list = arguments.list;
  options.stat = arguments.stat;
  options.keep = arguments.keep;
  return options;
}

/// Complains; returns the status to exit with.
int Refuse(Console& console, std::string_view what) {
  console.Complain(std::format("{}; see qln-fp-tree --help", what));
  return WrongUsage;
}

}  // namespace

std::optional<Command> ParseCommandLine(int argc, char const* const* argv, Console& console,
                                        int& status) {
  Arguments arguments;
  status = EXIT_SUCCESS;
  try {
    arguments.parser.ParseCLI(argc, argv);
  } catch (args::Help const&) {
    console.Out() << Usage();
    return std::nullopt;
  } catch (args::Error const& error) {
    status = Refuse(console, error.what());
    return std::nullopt;
  }
  if (arguments.version) {
    console.Out() << "qln-fp-tree  " QLN_VERSION " ARM64\n";
    return std::nullopt;
  }
  if (arguments.words.Get().empty()) {
    status = Refuse(console, "no command");
    return std::nullopt;
  }
  std::string const& name = arguments.words.Get().front();
  CommandEntry const* const entry = std::ranges::find(Commands, name, &CommandEntry::name);
  if (entry == std::end(Commands)) {
    status = Refuse(console, "no such command: " + name);
    return std::nullopt;
  }
  if (const std::string wrong = WhatIsWrong(*entry, arguments); !wrong.empty()) {
    status = Refuse(console, wrong);
    return std::nullopt;
  }
  return Command{entry->run, TakeOptions(arguments)};
}

}  // namespace tree
