// What each report says of each marked line of a source.
#pragma once

#include <cstdint>
#include <filesystem>
#include <tuple>
#include <vector>

#include "companion/reports/reports.h"
#include "merge/file.h"

namespace companion {

/// What one report says of the markers on one line.
struct Vote {
  enum class Kind : std::uint8_t {
    ListsThem,           ///< The same markers, and so agrees that they go.
    ListsOthers,         ///< Other markers on this line, which is not agreed then.
    DoesNotListTheLine,  ///< It names the file, and needs what stands there.
    DoesNotNameTheFile,
  };

  Kind kind = Kind::DoesNotNameTheFile;
  /// What it lists on the line; null when nothing. Belongs to the report.
  Line const* line = nullptr;
};

/// What all reports say of markers on one line that go or stay together: mostly all that it has.
struct LineVotes {
  std::uint32_t line = 0;  ///< 1-based.
  bool goes = false;       ///< Whether a cleanup removes the markers.
  /// What goes, as the reports list it; or everything else that some report lists there, each
  /// marker once and in the order of the line.
  std::vector<Marker> markers;
  std::vector<Vote> votes;  ///< One for each report, in their order.
  /// The markers before those of other codes were left out; empty when none were.
  std::vector<Marker> uncut{};

  /// The markers that the votes are on.
  [[nodiscard]] std::vector<Marker> const& VotedOn() const {
    return uncut.empty() ? markers : uncut;
  }
};

/// What markers are sorted by to come as they stand on their line.
[[nodiscard]] inline auto InOrderOfLine(Marker const& marker) {
  return std::tuple(marker.offsets.begin, marker.offsets.end, marker.columns.begin,
                    marker.columns.end, marker.code);
}

/// The votes on every line of a source that some report lists, in the order of lines. `path` is
/// relative to the root; `reports` must outlive the result.
///
/// What goes in all this is exactly what reports.agreed lists of the source, and what else some
/// report lists stays; markers of codes that were not asked for are left out. Of most lines that is
/// one LineVotes; there are several where a structured report took the file out and a raw report
/// behind it lists the line anew, with other markers.
[[nodiscard]] std::vector<LineVotes> VotesOn(Reports const& reports,
                                             std::filesystem::path const& path);

}  // namespace companion
