#include "companion/backups/marker_difference.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "companion/backups/line_difference.h"
#include "files/line_ends.h"
#include "files/source_window.h"

namespace companion {

namespace {

/// How much of a line stands before its end.
std::size_t ContentLength(std::string_view line) {
  return std::min(line.find_first_of(LineEndBytes), line.size());
}

/// Walks along both. No marker goes beyond its line, and so each line of the one belongs to the
/// line of the same number of the other.
class Comparison {
 public:
  Comparison(SourceFile& source, SourceFile& backup) : m_source(source), m_backup(backup) {}

  [[nodiscard]] MarkerDifference Run() {
    const MarkerDifference difference = Walk();
    return m_source.Failed() || m_backup.Failed() ? MarkerDifference::Unknown : difference;
  }

 private:
  MarkerDifference Walk() {
    for (;;) {
      PassEqualLines();
      const std::string_view cleaned = m_source.Line();
      const std::string_view before = m_backup.Line();
      if (before.empty()) {
        return cleaned.empty() ? MarkerDifference::OnlyMarkers : MarkerDifference::MoreThanMarkers;
      }
      if (!PassLine(cleaned, before)) {
        return IsCutShort(cleaned, before) ? MarkerDifference::OnlyMarkersSoFar
                                           : MarkerDifference::MoreThanMarkers;
      }
    }
  }

  /// Most lines have no marker, and are passed over many at a time.
  void PassEqualLines() {
    for (;;) {
      const std::string_view source = m_source.Rest();
      const std::string_view backup = m_backup.Rest();
      const std::string_view equal = source.substr(
          0, static_cast<std::size_t>(std::ranges::mismatch(source, backup).in1 - source.begin()));
      // Not the last byte: the second one of its line end may follow.
      const std::size_t end = equal.substr(0, equal.size() - std::min<std::size_t>(equal.size(), 1))
                                  .find_last_of(LineEndBytes);
      if (end == std::string_view::npos) {
        return;
      }
      const std::size_t length = end + LineEndLength(equal.substr(end));
      m_source.Consume(length);
      m_backup.Consume(length);
    }
  }

  /// Takes both lines off, if the one is the other less some markers.
  bool PassLine(std::string_view cleaned, std::string_view before) {
    const std::size_t length = ContentLength(cleaned);
    const std::size_t lengthBefore = ContentLength(before);
    const bool isPassed =
        cleaned.substr(length) == before.substr(lengthBefore) &&
        CompareLines(cleaned.substr(0, length), before.substr(0, lengthBefore)).isWhole;
    if (isPassed) {
      m_source.Consume(cleaned.size());
      m_backup.Consume(before.size());
    }
    return isPassed;
  }

  /// Whether the source ends within a line that, so far, could become the other less some markers.
  bool IsCutShort(std::string_view cleaned, std::string_view before) {
    const std::size_t length = ContentLength(cleaned);
    const std::size_t lengthBefore = ContentLength(before);
    if (!m_source.IsAtEnd(cleaned.size())) {
      return false;
    }
    const LineDifference difference =
        CompareLines(cleaned.substr(0, length), before.substr(0, lengthBefore));
    return length == cleaned.size()
               ? difference.isBeginning
               : difference.isWhole &&
                     before.substr(lengthBefore).starts_with(cleaned.substr(length));
  }

  SourceWindow m_source;
  SourceWindow m_backup;
};

}  // namespace

MarkerDifference DifferenceOf(SourceFile& source, SourceFile& backup) {
  return Comparison(source, backup).Run();
}

}  // namespace companion
