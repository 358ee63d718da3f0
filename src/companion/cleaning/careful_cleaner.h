// Cleaning one source, and looking at what came of it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "companion/backups/backup_pair.h"
#include "companion/backups/source_tree.h"
#include "companion/cleaning/cleanup_outcome.h"
#include "companion/output/complaint.h"
#include "files/exclusive_lock.h"
#include "merge/file.h"

namespace companion {

/// Cleans one source after the other as a cleanup does, and holds each result against the record.
/// Where a run was interrupted, or the disk was full, the backup is put back first, or in the end.
/// Any thread may call it.
class CarefulCleaner {
 public:
  /// What became of one source.
  struct Result {
    Complaint complaint{};        ///< Why it is not clean now.
    Complaint leftover{};         ///< It is clean, but its copy in the temporary directory stays.
    bool wasCleanBefore = false;  ///< An earlier run had cleaned it.
    /// Of the source and the backup, which were looked at whole, where both are there.
    std::optional<PairVersions> versions{};
  };

  CarefulCleaner(SourceTree const& tree, bool takesBlanks)
      : m_tree(tree), m_takesBlanks(takesBlanks) {}

  [[nodiscard]] Result Clean(File const& file);

 private:
  struct Attempt {
    Complaint failure{};   ///< Why the source is as it was.
    Complaint leftover{};  ///< The failure was only that the copy cannot be deleted.
    std::string lack{};    ///< Why its copy is cut short, behind a colon; empty when it is not.
  };

  [[nodiscard]] Attempt TryToClean(File const& file);
  [[nodiscard]] Complaint WhyUnsafe(File const& file) const;
  [[nodiscard]] Complaint PutBackBrokenOff(File const& file);
  [[nodiscard]] std::string Repair(File const& file, std::string const& why);
  [[nodiscard]] std::string WhyNotClean(File const& file, Complaint const& failure,
                                        CleanupOutcome const& outcome) const;

  [[nodiscard]] File WhatToCut(File const& file) const;
  [[nodiscard]] CleanupOutcome Outcome(File const& file) const {
    return OutcomeOf(file, m_tree.Path(), m_takesBlanks);
  }

  SourceTree const& m_tree;
  bool m_takesBlanks;
  WorkerLocks m_workers;
};

}  // namespace companion
