#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include "standard_descriptors.h"
#include "tree/command_line.h"
#include "tree/console.h"
#include "write_signals.h"

namespace {

void Run(tree::Command const& command, tree::Console& console) {
  std::filesystem::path const& root = command.options.root;
  std::error_code ignored;
  if (!root.empty() && !std::filesystem::is_directory(root, ignored)) {
    console.Complain("no such directory: " + root.string());
    return;
  }
  try {
    command.run(command.options, console);
  } catch (std::exception const& error) {
    console.Complain(error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  OccupyStandardDescriptors();
  // Work on files goes on when nobody reads any more what is printed of it.
  LetWritesFailWithoutSignals();
  tree::Console console;
  int status = EXIT_SUCCESS;
  if (const auto command = tree::ParseCommandLine(argc, argv, console, status)) {
    Run(*command, console);
  }
  const int finished = console.Finish();
  return status != EXIT_SUCCESS ? status : finished;
}
