#include "tree/cleaned_source.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "tree/source_window.h"

namespace tree {

namespace {

constexpr std::string_view MarkerBegin = "//-V";
constexpr std::size_t MostDigits = 20;  // No number of a diagnostic has more.
constexpr std::size_t LookAhead = MarkerBegin.size() + MostDigits + 1;

bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// The marker that the text begins with; empty when there is none.
std::string_view MarkerAtFront(std::string_view text) {
  if (!text.starts_with(MarkerBegin)) {
    return {};
  }
  std::size_t length = MarkerBegin.size();
  while (length < text.size() && length < LookAhead - 1 && IsDigit(text[length])) {
    ++length;
  }
  return text.substr(0, length);
}

/// How much of the text comes before the next marker for certain; `text` holds at least LookAhead
/// bytes, or ends with the file.
std::size_t LengthBeforeMarker(std::string_view text) {
  const std::size_t marker = text.find(MarkerBegin);
  if (marker != std::string_view::npos) {
    return marker;
  }
  return text.size() < LookAhead ? text.size() : text.size() - (MarkerBegin.size() - 1);
}

/// Walks along both. A marker that the source has, too, is taken as kept: where one of two equal
/// markers next to each other is gone, it does not matter which.
class Comparison {
 public:
  Comparison(SourceFile& source, SourceFile& backup) : m_source(source), m_backup(backup) {}

  [[nodiscard]] SourceState Run() {
    const SourceState state = Walk();
    return m_source.Failed() || m_backup.Failed() ? SourceState::Unreadable : state;
  }

 private:
  SourceState Walk() {
    for (;;) {
      const std::string_view before = m_backup.Rest(LookAhead);
      if (before.empty()) {
        return m_source.Rest().empty() ? SourceState::Cleaned : Different();
      }
      const std::string_view marker = MarkerAtFront(before);
      if (!marker.empty()) {
        PassMarker(marker);
      } else if (m_source.Rest().empty()) {
        return SourceState::BrokenOff;
      } else if (!PassText(before.substr(0, LengthBeforeMarker(before)))) {
        return Different();
      }
    }
  }

  void PassMarker(std::string_view marker) {
    const std::string_view after = m_source.Rest(LookAhead);
    if (MarkerAtFront(after) == marker) {
      m_source.Consume(marker.size());
    } else if (!after.empty() && marker.starts_with(after)) {
      m_endsInMarker = true;  // All that is left of the source.
    }
    m_backup.Consume(marker.size());
  }

  bool PassText(std::string_view text) {
    const std::string_view after = m_source.Rest();
    const std::size_t length = std::min(text.size(), after.size());
    if (text.substr(0, length) != after.substr(0, length)) {
      return false;
    }
    m_source.Consume(length);
    m_backup.Consume(length);
    return true;
  }

  [[nodiscard]] SourceState Different() const {
    return m_endsInMarker ? SourceState::BrokenOff : SourceState::Changed;
  }

  SourceWindow m_source;
  SourceWindow m_backup;
  bool m_endsInMarker = false;  ///< The source's last bytes may be the beginning of a marker.
};

}  // namespace

SourceState StateOf(SourceFile& source, SourceFile& backup) {
  return Comparison(source, backup).Run();
}

}  // namespace tree
