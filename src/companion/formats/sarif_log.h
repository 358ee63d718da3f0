// A warnings report as a SARIF 2.1.0 log.
#pragma once

#include <ostream>

#include "companion/formats/warnings.h"

namespace companion {

/// Writes the log, whose format is that of the standard of that name (OASIS). Of very many warnings
/// it has several runs, since dashboards take so many of one.
void WriteSarif(Warnings const& warnings, std::ostream& output);

}  // namespace companion
