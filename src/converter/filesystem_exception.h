// The failure to open a report for writing.
#pragma once

#include <stdexcept>

namespace TesselConverter {

/// Thrown when the file of a report cannot be opened; the text names the file.
class FilesystemException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace TesselConverter
