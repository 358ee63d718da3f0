#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include "companion/command_line.h"
#include "companion/output/console.h"
#include "standard_descriptors.h"
#include "write_signals.h"

namespace {

void Run(companion::CommandLine const& command, companion::Console& console) {
  std::filesystem::path const& root = command.options.root;
  std::error_code ignored;
  if (!root.empty() && !std::filesystem::is_directory(root, ignored)) {
    console.Complain("no such directory: " + root.string());
    return;
  }
  if (command.options.quiet) {
    console.BeQuiet();
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
  companion::Console console;
  int status = EXIT_SUCCESS;
  if (const auto command = companion::ParseCommandLine(argc, argv, console, status)) {
    Run(*command, console);
  }
  const int finished = console.Finish();
  return status != EXIT_SUCCESS ? status : finished;
}
