// What the command line asked for.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "companion/selection/filters.h"

namespace companion {

/// What --stat alone stands for: that preview counts by file.
inline constexpr std::string_view StatByFile = "file";

/// The arguments of all commands; each fills those that it has. Paths are as typed.
struct Options {
  std::filesystem::path root;                  ///< A directory that exists.
  std::vector<std::filesystem::path> reports;  ///< For sarif the warnings report.
  std::filesystem::path output;                ///< Of select, page and relocate.
  std::filesystem::path from;                  ///< Of relocate: the root on another machine.
  std::string source;                          ///< Of explain: FILE, FILE:LINE or FILE:LINE:COLUMN.
  std::vector<std::string> codes;              ///< The filters, and so the next three.
  std::vector<std::string> withoutCodes;
  std::vector<std::string> paths;
  std::vector<std::string> without;
  std::string stat;              ///< Of preview: what is counted by; empty for a patch.
  std::filesystem::path prefix;  ///< Of sarif: the root as seen from the repository's.
  bool list = false;             ///< Of check, relocate, and of what is to be cleaned.
  bool complete = false;
  bool stays = false;     ///< Of list.
  bool exitCode = false;  ///< Of preview.
  bool blanks = false;    ///< Of preview and clean.
  bool keep = false;      ///< Of clean.
  bool skip = false;
  bool quiet = false;  ///< Of clean, undo and keep.
  bool help = false;   ///< In place of a command, as are the next two.
  bool version = false;
  bool completions = false;
};

/// Throws std::runtime_error for a code that is none.
[[nodiscard]] inline Filters FiltersOf(Options const& options) {
  return {{Globs(options.paths, options.root), Globs(options.without, options.root)},
          {CodeSet(options.codes), CodeSet(options.withoutCodes)}};
}

}  // namespace companion
