// What the command line asked for.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// The arguments of all commands; each fills those that it has. Paths are as typed.
struct Options {
  std::filesystem::path root;                  ///< A directory that exists.
  std::vector<std::filesystem::path> reports;  ///< For sarif the warnings report.
  std::filesystem::path output;                ///< Of select and page.
  std::string source;                          ///< Of explain: FILE or FILE:LINE.
  std::vector<std::string> codes;              ///< Of select, and so the next two.
  std::vector<std::string> paths;
  std::vector<std::string> without;
  bool list = false;  ///< Of check.
  bool stat = false;  ///< Of preview.
  bool keep = false;  ///< Of clean.
  bool help = false;  ///< In place of a command, as are the next two.
  bool version = false;
  bool completions = false;
};

}  // namespace companion
