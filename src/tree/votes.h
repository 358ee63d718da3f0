// What each report says of each marked line of a source.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "merge/file.h"
#include "tree/reports.h"

namespace tree {

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

/// What all reports say of one line. The whole line goes or stays: if reports differ in one of its
/// markers, all of them stay.
struct LineVotes {
  std::uint32_t line = 0;  ///< 1-based.
  bool goes = false;       ///< Whether a cleanup removes the markers.
  /// What goes; or, if they stay, every marker that some report lists there, in the order of the
  /// line.
  std::vector<Marker> markers;
  std::vector<Vote> votes;  ///< One for each report, in their order.
};

/// The votes on every line of a source that some report lists, in the order of lines. `path` is
/// relative to the root; `reports` must outlive the result.
///
/// What goes in all this is exactly what reports.agreed lists of the source, and what else some
/// report lists stays. Of most lines that is one LineVotes. Where different markers of one line go
/// and stay, because a report between took out what a report before it said, there are several.
[[nodiscard]] std::vector<LineVotes> VotesOn(Reports const& reports,
                                             std::filesystem::path const& path);

/// The codes of the markers as they are written in the warnings report: "V501 V502".
[[nodiscard]] std::string CodesOf(std::vector<Marker> const& markers);

/// A report's vote as a phrase behind the report's name: "lists other markers there: V502".
/// `markers` are the LineVotes' own.
[[nodiscard]] std::string Phrase(Vote const& vote, Report const& report,
                                 std::vector<Marker> const& markers);

}  // namespace tree
