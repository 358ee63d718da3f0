#include "merge/file.h"

#include <algorithm>
#include <format>

#include "merge/weakly_canonical.h"

void File::Intersect(File const& other) const {
  std::erase_if(lines, [&other](Line const& line) {
    return std::ranges::find(other.lines, line) == other.lines.end();
  });
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is the shared one.
std::string File::PathToString(std::filesystem::path sourceTreeRoot) const {
  if (!sourceTreeRoot.empty()) {
    return WeaklyCanonical(sourceTreeRoot / path).string();
  }
  const std::string text = path.string();
  const bool hasSeparator = text.starts_with('/') || text.starts_with('\\');
  return std::format("{}{}{}", SourceTreePlaceholder, hasSeparator ? "" : "/", text);
}
