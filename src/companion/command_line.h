// The command line of qln-fp-tree.
#pragma once

#include <optional>

#include "companion/commands/commands.h"
#include "companion/commands/options.h"
#include "companion/output/console.h"

namespace companion {

/// What to run, and with what.
struct CommandLine {
  Command* run = nullptr;
  Options options;
};

/// Parses the command line. Nothing when there is no more to be done: after the help, the version,
/// or an error, which is complained of; then `status` is the one to exit with.
[[nodiscard]] std::optional<CommandLine> ParseCommandLine(int argc, char const* const* argv,
                                                          Console& console, int& status);

}  // namespace companion
