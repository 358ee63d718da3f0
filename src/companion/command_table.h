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
  Command* run;
  std::string_view words;  ///< A name for each that it needs; with dots at the end, or more.
  std::string_view help;   ///< Sentences without `|`.
  std::string_view outputEnding = {};  ///< Of the name of the file that it writes.
};

/// One option. Those that no command has stand in the place of one.
struct OptionEntry {
  std::string_view letter;  ///< Empty if it has none.
  std::string_view name;
  std::string_view value;  ///< What the help calls it; empty if the option has none.
  std::string_view help;   ///< A sentence without `|` and `]`; empty if users are not told of it.
  /// What it sets: that it was given, its last value, or all its values.
  std::variant<bool Options::*, std::filesystem::path Options::*,
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

// In the order of the help.
inline constexpr CommandEntry CommandTable[] = {
    {"check", Check, "REPORT...",
     "Check that reports are whole, sources as analyzed, and nothing in the way of a cleanup. "
     "--list names the sources that some report does not name; --complete refuses them."},
    {"explain", Explain, "FILE[:LINE] REPORT...",
     "Tell which markers of a source go and which stay, and what each report says of them."},
    {"preview", Preview, "REPORT...",
     "Print what a cleanup would change, as a patch; --stat, only how much."},
    {"clean", Clean, "REPORT...",
     "Check, clean if all is well, and look at each result; --skip leaves what cannot be cleaned; "
     "--keep, then keep."},
    {"undo", Undo, "", "Put every backup back in the place of its source."},
    {"keep", Keep, "",
     "Give every cleaned source the permissions and owner of its backup, and delete the backup."},
    {"status", Status, "", "Tell what backups are there, and what has become of their sources."},
    {"select", Select, "REPORT...",
     "Write what the reports agree on, cut to some codes (V501, V600-V699) and to some paths, as a "
     "report for a cleanup."},
    {"page", Page, "REPORT...",
     "Write a page that shows what goes and what stays, and why; for a browser.", ".html"},
    {"sarif", Sarif, "WARNINGS.json", "Print a warnings report as SARIF 2.1.0."},
};

/// The commands that work on a project.
inline constexpr std::initializer_list<Command*> BelowRoot = {Check, Explain, Preview, Clean, Undo,
                                                              Keep,  Status,  Select,  Page};

/// Those of them that read reports.
inline constexpr std::initializer_list<Command*> OfReports = {Check, Explain, Preview,
                                                              Clean, Select,  Page};

inline constexpr OptionEntry OptionTable[] = {
    {"r", "sourcetree-root", "ROOT", "The project's root.", &Options::root, BelowRoot, true, true},
    {"o", "output-file", "FILE", "The file to write.", &Options::output, {Select, Page}, true},
    {"", "list", "", "Name each source, however many.", &Options::list, {Check, Preview, Clean}},
    {"",
     "complete",
     "",
     "Every report must name every source.",
     &Options::complete,
     {Check, Preview, Clean}},
    {"", "stat", "", "Print only how much.", &Options::stat, {Preview}},
    {"",
     "blanks",
     "",
     "Take the blanks in front of markers at line ends.",
     &Options::blanks,
     {Preview, Clean}},
    {"", "skip", "", "Leave what cannot be cleaned.", &Options::skip, {Clean}},
    {"", "keep", "", "Then delete the backups.", &Options::keep, {Clean}},
    {"", "code", "CODE,...", "Only codes such as V501,V600-V699.", &Options::codes, OfReports},
    {"", "without-code", "CODE,...", "No such codes.", &Options::withoutCodes, OfReports},
    {"", "path", "GLOB", "Only paths that match.", &Options::paths, BelowRoot},
    {"", "without", "GLOB", "No paths that match.", &Options::without, BelowRoot},
    {"q", "quiet", "", "Print only what is wrong.", &Options::quiet, {Clean, Undo, Keep}},
    {"h", "help", "", "Display this help.", &Options::help},
    {"v", "version", "", "Show the version, which is qln-fp-cleaner's.", &Options::version},
    {"", "completions", "", "", &Options::completions},
};

}  // namespace companion
