// Whether a line is another one less some markers.
#pragma once

#include <string_view>

namespace companion {

/// What a cleaned line is, held against the line before the cleanup.
struct LineDifference {
  bool isWhole = false;      ///< It is that line less some markers, or that line itself.
  bool isBeginning = false;  ///< It is a beginning of such a text; so is the whole.
};

/// A marker is what a cleanup can take out of a line: "//-V", all digits behind it, and maybe more,
/// up to the end of the line at most, and then with it the blanks in front, all or none. Both lines
/// are without their ends. Any thread may call it.
///
/// An exact answer could take time that grows with the product of both lengths. For lines far
/// longer than people write it may therefore be that neither is the case, but never a false yes.
[[nodiscard]] LineDifference CompareLines(std::string_view cleaned, std::string_view before);

}  // namespace companion
