// The run: from a parsed command line to merged reports and cleaned sources.
#pragma once

#include "driver/configuration.h"

namespace faCleaner {

/// The one configuration of the process; created on first use. Written on the main thread before
/// StartProgram, read by any thread afterwards.
[[nodiscard]] Configuration& GetConfiguration();

/// Reads and merges the reports, writes the result file if one is configured and, for a cleanup,
/// rewrites every listed source file on a pool of `threads` workers; 0, or more than the hardware
/// has, means as many as the hardware has.
///
/// A source file that fails prints one line on the standard error stream and stops no other. All
/// other failures leave as exceptions; see Files and the report writers.
void StartProgram(Configuration const& config, unsigned int threads);

}  // namespace faCleaner
