// What each report says of a single marker, as the page has it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tree/reports.h"
#include "tree/votes.h"

namespace tree {

/// Of the markers of one line, which goes or stays as a whole. `votes` and `reports` must outlive
/// it.
class MarkerVotes {
 public:
  MarkerVotes(LineVotes const& votes, Reports const& reports);

  /// A JSON array such as ["s","mV502 V503","n"]. First comes g for a marker that goes, s for one
  /// that stays; then what each report says:
  ///   l  lists it; then nobody lists other markers on its line
  ///   m  lists it, and with it on the line the codes that follow
  ///   p  lists its code there, but in another place
  ///   o  lists other markers there, with the codes that follow
  ///   n  does not list the line
  ///   x  does not name the file
  ///   r  does not name the file, and so takes it out of the cleanup
  [[nodiscard]] std::string Of(Marker const& marker) const;

 private:
  /// What a report lists on the line, also sorted: a line may have many thousand markers.
  struct Listed {
    std::vector<Marker> markers;
    std::vector<std::uint64_t> codes;
  };

  [[nodiscard]] std::string Said(std::size_t report, Marker const& marker) const;
  [[nodiscard]] std::string OfListed(std::size_t report, Marker const& marker) const;

  LineVotes const& m_votes;
  Reports const& m_reports;
  bool m_isDisputed;             ///< Whether a report lists others than are listed in all.
  std::vector<Listed> m_listed;  ///< By report; empty where there is no dispute.
};

}  // namespace tree
