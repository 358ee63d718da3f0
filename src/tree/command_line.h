// The command line of qln-fp-tree.
#pragma once

#include <optional>

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// What to run, and with what.
struct Command {
  void (*run)(Options const&, Console&) = nullptr;
  Options options;
};

/// Parses the command line. Nothing when there is no more to be done: after the help, the version,
/// or an error, which is complained of; then `status` is the one to exit with.
[[nodiscard]] std::optional<Command> ParseCommandLine(int argc, char const* const* argv,
                                                      Console& console, int& status);

}  // namespace tree
