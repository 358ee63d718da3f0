#include "converter/warning.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace TesselConverter {

WarningPosition::WarningPosition(std::string fileText, std::uint64_t lineNumber)
    : file(std::move(fileText)),
      line(static_cast<std::uint32_t>(lineNumber)),
      endLine(static_cast<std::uint32_t>(lineNumber)) {}

std::uint64_t Warning::GetErrorCode() const {
  if (!code.starts_with('V')) {
    return 0;
  }
  std::int64_t number = 0;
  const char* const end = code.data() + code.size();
  const auto [stop, error] = std::from_chars(code.data() + 1, end, number);
  if (error != std::errc() || stop != end) {
    return 0;
  }
  return std::min(static_cast<std::uint64_t>(number), InvalidErrorCode);
}

}  // namespace TesselConverter
