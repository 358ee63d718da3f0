// What the command line asked for.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "companion/selection/filters.h"

namespace companion {

/// The arguments of all commands; each fills those that it has. Paths are as typed.
struct Options {
  std::filesystem::path root;                  ///< A directory that exists.
  std::vector<std::filesystem::path> reports;  ///< For sarif the warnings report.
  std::filesystem::path output;                ///< Of select and page.
  std::string source;                          ///< Of explain: FILE or FILE:LINE.
  std::vector<std::string> codes;              ///< The filters, and so the next three.
  std::vector<std::string> withoutCodes;
  std::vector<std::string> paths;
  std::vector<std::string> without;
  bool list = false;  ///< Of check, and of what is to be cleaned.
  bool complete = false;
  bool stat = false;    ///< Of preview.
  bool blanks = false;  ///< Of preview and clean.
  bool keep = false;    ///< Of clean.
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
