// The failure to open a report for writing.
#pragma once

#include <stdexcept>

namespace TesselConverter {

class FilesystemException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace TesselConverter
