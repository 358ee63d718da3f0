// Conversion from the platform's narrow code page.
#pragma once

#include <string>

namespace TesselConverter {

/// Converts `text` from the narrow code page to UTF-8 in place. Here that code page is UTF-8, so
/// nothing changes; writers that also run elsewhere call it all the same.
inline void ANSItoUTF8([[maybe_unused]] std::string& text) {}

}  // namespace TesselConverter
