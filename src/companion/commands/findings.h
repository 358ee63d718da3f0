// What a check finds, source by source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/commands/cleanable.h"
#include "companion/commands/options.h"
#include "companion/output/complaints.h"
#include "companion/reports/source_records.h"
#include "companion/sources/obstacles.h"
#include "companion/sources/source_check.h"

namespace companion {

/// Takes in what was found of each source, and complains. For the main thread; what it is made with
/// must outlive it.
class Findings {
 public:
  Findings(Options const& options, Reports const& reports, IsExcused const& isExcused,
           Console& console);

  /// Counts the source.
  void Add(SourceRecords const& records);

  /// Takes in what its file is like.
  void Add(SourceRecords const& records, CheckedSource const& source);

  /// After the last one.
  void Finish();

  /// Whether there was nothing to complain of.
  [[nodiscard]] bool IsGood() const { return m_isGood && m_complaints.AreNone(); }

  /// What can be cleaned; nothing when a cleanup is not to begin.
  [[nodiscard]] std::optional<Cleanable> TakeCleanable();

  /// Whether a cleanup could begin if it skipped what is wrong.
  [[nodiscard]] bool CouldSkip() const {
    return m_isGood && (!m_options.complete || m_silent == 0);
  }

  /// What was looked at. `areWhole` tells whether all reports could be read.
  void Print(bool areWhole) const;

 private:
  [[nodiscard]] bool IsExcusedBackup(File const& file) const;
  [[nodiscard]] MaybeProblem ProblemOf(File const* agreed, CheckedSource const& source);
  void Tell(SourceProblem const& problem);
  void Tell(std::string const& source, std::vector<UnsafeLine> const& unsafe);
  void TellLikelyCause();
  void AddSilence(SourceRecords const& records);

  Options const& m_options;
  Reports const& m_reports;
  IsExcused const& m_isExcused;
  Console& m_console;
  Complaints m_complaints;
  Obstacles m_obstacles;
  Cleanable m_cleanable;
  std::size_t m_sources = 0;
  std::size_t m_lookedAt = 0;
  std::size_t m_markers = 0;
  std::size_t m_silent = 0;
  std::map<SourceProblem::Kind, std::size_t> m_problems;
  std::vector<std::uint64_t> m_sizes;  ///< Of what is to be cleaned.
  std::string m_list;
  bool m_isGood = true;  ///< Apart from the sources.
};

}  // namespace companion
