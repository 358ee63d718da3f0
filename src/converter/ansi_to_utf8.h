// Conversion from the platform's narrow code page.
#pragma once

#include <string>

namespace TesselConverter {

/// Converts `text` from the platform's narrow code page to UTF-8, in place. On the platforms of
/// this tool that code page is UTF-8, so there is nothing to do; the function stands here for
/// writers that are also built for others.
inline void ANSItoUTF8([[maybe_unused]] std::string& text) {}

}  // namespace TesselConverter
