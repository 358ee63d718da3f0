// What a report writer is told when it is made.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "converter/warning.h"

namespace TesselConverter {

/// See BasicFormatOutput for how these choose the targets of a report.
struct ProgramOptions {
  std::vector<std::string> inputFiles{};
  std::string output{};  ///< The file itself or, when a name is derived, its directory.
  std::vector<std::function<void()>> outputCallbacks{};
  std::vector<SecurityCodeMapping> securityMappings{};
  std::string auxText{};      ///< Read by no writer here.
  std::string outputName{};   ///< Base name of the file.
  std::uint32_t auxMode = 0;  ///< Read by no writer here.
  bool toConsole = false;     ///< Write to a console stream as well.
  bool useStderr = false;     ///< The console stream is the standard error stream.
};

}  // namespace TesselConverter
