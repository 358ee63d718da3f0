// Says which listed lines of a tree are not safe to clean: a driver for the end-to-end tests.
//
// Usage: cut_safety_driver REPORT ROOT: prints FILE:LINE: why, of each; FILE is relative to the
// root.

#include <fstream>
#include <iostream>
#include <iterator>

#include "companion/safety/cut_safety.h"
#include "merge/files.h"

namespace {

void Judge(std::filesystem::path const& report, std::filesystem::path const& root) {
  Files files;
  files.ExtractFromReport(report, true, root);
  for (File const& file : files.files) {
    std::ifstream stream(root / file.path, std::ios::binary);
    const std::string source(std::istreambuf_iterator<char>(stream), {});
    for (companion::UnsafeLine const& line : companion::UnsafeLines(file.lines, source)) {
      std::cout << file.path.native() << ':' << line.line << ": " << Words(line.danger) << '\n';
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count == 3) {
      Judge(arguments[1], arguments[2]);
      return 0;
    }
  } catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
  }
  return 1;
}
