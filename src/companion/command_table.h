// The commands of qln-fp-tree and their options, each in one row: the parser, the help and the
// completions are made of these.
#pragma once

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/commands/options.h"

namespace companion {

/// One command.
struct CommandEntry {
  std::string_view name;
  Command* run;               ///< Null for the help.
  std::string_view words;     ///< A name for each that it needs; with dots at the end, or more.
  std::string_view help;      ///< Sentences without `|`.
  std::string_view examples;  ///< Two lines, each without the program's name.
  std::string_view outputEnding = {};  ///< Of the name of the file that it writes.
};

/// One option. Those that no command has stand in the place of one.
struct OptionEntry {
  std::string_view letter;  ///< Empty if it has none.
  std::string_view name;
  /// What the help calls it; empty if the option has none, in brackets if it may be left out.
  std::string_view value;
  std::string_view help;  ///< A sentence without `|` and `]`; empty if users are not told of it.
  /// What it sets: that it was given, its last value, or all its values.
  std::variant<bool Options::*, std::string Options::*, std::filesystem::path Options::*,
               std::vector<std::string> Options::*>
      target;
  std::initializer_list<Command*> commands = {};  ///< Those that have it.
  bool isNeeded = false;                          ///< By these commands.
  bool isPassedOver = false;                      ///< By the others, which else refuse it.

  [[nodiscard]] bool IsOf(Command* command) const {
    return std::ranges::find(commands, command) != commands.end();
  }

  /// As people type it.
  [[nodiscard]] std::string Typed() const {
    return letter.empty() ? "--" + std::string(name) : "-" + std::string(letter);
  }
};

// In the order of the help. Of two with one name, the one that has -r is meant where it is given.
inline constexpr CommandEntry CommandTable[] = {
    {"check", Check, "REPORT...",
     "Check that reports are whole, sources as analyzed, and nothing in the way of a cleanup. "
     "--list names the sources that some report does not name; --complete refuses them.",
     "check -r project linux.json windows.json\n"
     "check -r project --list reports/*.json"},
    {"explain", Explain, "FILE[:LINE] REPORT...",
     "Tell which markers of a source go and which stay, and what each report says of them.",
     "explain -r project src/tank.cpp linux.json windows.json\n"
     "explain -r project src/tank.cpp:13 reports/*.json"},
    {"list", List, "REPORT...",
     "Print a line for each marker that goes, as compilers print warnings; --stays, for each that "
     "stays, and why.",
     "list -r project linux.json windows.json\n"
     "list -r project --stays reports/*.json"},
    {"preview", Preview, "REPORT...",
     "Print what a cleanup would change, as a patch; --stat, only how much, by file or by code. "
     "--exit-code checks first, and exits with 3 if something would change.",
     "preview -r project linux.json windows.json | less\n"
     "preview -r project --exit-code --stat=code reports/*.json"},
    {"clean", Clean, "REPORT...",
     "Check, clean if all is well, and look at each result; --skip leaves what cannot be cleaned; "
     "--keep, then keep.",
     "clean -r project linux.json windows.json\n"
     "clean -r project --keep reports/*.json"},
    {"undo", Undo, "", "Put every backup back in the place of its source.",
     "undo -r project\n"
     "undo -r . --path src/tank.cpp"},
    {"keep", Keep, "",
     "Give every cleaned source the permissions and owner of its backup, and delete the backup.",
     "keep -r project\n"
     "keep -r . --without third_party"},
    {"status", Status, "", "Tell what backups are there, and what has become of their sources.",
     "status -r project\n"
     "status -r . --path src"},
    {"select", Select, "REPORT...",
     "Write what the reports agree on, cut to some codes (V501, V600-V699) and to some paths, as a "
     "report for a cleanup.",
     "select -r project -o some.json --code V501,V600-V699 reports/*.json\n"
     "select -r project -o - --path src --without 'src/generated' linux.json"},
    {"relocate", Relocate, "REPORT...",
     "Write raw reports of another machine as one of this machine: paths below --from become paths "
     "below the root, and line ends may differ.",
     "relocate -r project --from 'C:\\work\\tank' -o windows.json raw.json\n"
     "relocate -r . --from /home/ci/tank -o - part1.json part2.json >board.json"},
    {"page", Page, "REPORT...",
     "Write a page that shows what goes and what stays, and why; for a browser.",
     "page -r project -o redundant.html reports/*.json\n"
     "page -r project -o - linux.json >redundant.html",
     ".html"},
    {"sarif", Sarif, "WARNINGS.json", "Print a warnings report as SARIF 2.1.0.",
     "sarif warnings.json >warnings.sarif"},
    {"sarif", SarifOfReports, "REPORT...",
     "Print what goes as SARIF 2.1.0, with columns and fixes; paths are below --prefix.",
     "sarif -r project --prefix project reports/*.json >redundant.sarif"},
    {"help", nullptr, "[COMMAND]", "Display this help, or that of a command.",
     "help\n"
     "help clean"},
};

/// The commands that work on a project.
inline constexpr std::initializer_list<Command*> BelowRoot = {
    Check, Explain, List,   Preview,  Clean, Undo,
    Keep,  Status,  Select, Relocate, Page,  SarifOfReports};

/// Those that check what is to be cleaned, and those that complain of many sources.
inline constexpr std::initializer_list<Command*> ThatCheck = {Check, Preview, Clean};
inline constexpr std::initializer_list<Command*> ThatList = {Check, List, Preview,  Clean,
                                                             Undo,  Keep, Relocate, SarifOfReports};

/// Those that clean, or show what that would do.
inline constexpr std::initializer_list<Command*> ThatClean = {Preview, Clean};

/// Those that write a file.
inline constexpr std::initializer_list<Command*> WithOutput = {Select, Relocate, Page};

/// Those of them that may be narrowed to some sources.
inline constexpr std::initializer_list<Command*> OfSources = {
    Check, Explain, List, Preview, Clean, Undo, Keep, Status, Select, Page, SarifOfReports};

/// Those that may be narrowed to some codes.
inline constexpr std::initializer_list<Command*> OfCodes = {Check, Explain, List, Preview,
                                                            Clean, Select,  Page, SarifOfReports};

inline constexpr OptionEntry OptionTable[] = {
    {"r", "sourcetree-root", "ROOT", "The project's root.", &Options::root, BelowRoot, true, true},
    {"o", "output-file", "FILE", "The file to write.", &Options::output, WithOutput, true},
    {"", "from", "FOLDER", "The root on the other machine.", &Options::from, {Relocate}, true},
    {"", "list", "", "Name each source, however many.", &Options::list, ThatList},
    {"", "complete", "", "Every report must name every source.", &Options::complete, ThatCheck},
    {"", "stays", "", "Print those that stay, and why.", &Options::stays, {List}},
    {"", "stat", "[=code]", "Print only how much, by file or by code.", &Options::stat, {Preview}},
    {"", "blanks", "", "Take blanks in front of markers, too.", &Options::blanks, ThatClean},
    {"", "skip", "", "Leave what cannot be cleaned.", &Options::skip, {Clean}},
    {"", "exit-code", "", "Check; exit with 3 if any would go.", &Options::exitCode, {Preview}},
    {"", "keep", "", "Then delete the backups.", &Options::keep, {Clean}},
    {"", "code", "CODE,...", "Only codes such as V501,V600-V699.", &Options::codes, OfCodes},
    {"", "without-code", "CODE,...", "No such codes.", &Options::withoutCodes, OfCodes},
    {"", "path", "GLOB", "Only paths that match.", &Options::paths, OfSources},
    {"", "without", "GLOB", "No paths that match.", &Options::without, OfSources},
    {"", "prefix", "FOLDER", "Put before each path.", &Options::prefix, {SarifOfReports}},
    {"q", "quiet", "", "Print only what is wrong.", &Options::quiet, {Clean, Undo, Keep}},
    {"h", "help", "", "Display this help.", &Options::help},
    {"v", "version", "", "Show the version, which is qln-fp-cleaner's.", &Options::version},
    {"", "completions", "", "", &Options::completions},
};

}  // namespace companion
