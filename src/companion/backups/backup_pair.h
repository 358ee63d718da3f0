// A source and its backup, looked at before anything is done to them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "companion/backups/source_tree.h"
#include "companion/output/complaint.h"
#include "files/exclusive_lock.h"
#include "files/source_file.h"

namespace companion {

/// Both files as they were at one time.
struct PairVersions {
  FileVersion source;
  FileVersion backup;

  friend bool operator==(PairVersions const&, PairVersions const&) = default;
};

/// Both files, open, and the lock of the backup. A cleanup goes on holding the lock of its source
/// after it has renamed that to the backup, and so one that is at work is waited for. Nothing here
/// throws but std::bad_alloc. For use by one thread.
class BackupPair {
 public:
  /// What has become of a source since it was cleaned.
  enum class State : std::uint8_t {
    Cleaned,      ///< It is the backup less some markers.
    BrokenOff,    ///< It is a beginning of such a text: it holds nothing of its own.
    Gone,         ///< Nothing stands in its place.
    HalfPutBack,  ///< It is the original, and the backup what had become of it: putting back broke
                  ///< off.
    Changed,      ///< It holds other text: nothing must be done.
    Refused,      ///< Anything else, and so here.
  };

  /// Opens both, and takes the lock; `source` is relative to the root. `workers` may be null when
  /// no cleanup of this process is at work.
  BackupPair(SourceTree const& tree, std::filesystem::path const& source,
             WorkerLocks* workers = nullptr);

  /// Reads and compares both. If they are still those of `known`, which was Cleaned, that need not
  /// be done again.
  void Judge(std::optional<PairVersions> const& known = std::nullopt);

  [[nodiscard]] State WhatIs() const { return m_state; }

  /// Why it is not Cleaned.
  [[nodiscard]] Complaint const& WhyNotCleaned() const { return m_complaint; }

  /// Of both when they were opened.
  [[nodiscard]] PairVersions Versions() const { return {m_source.Version(), m_backup.Version()}; }

  /// Whether both stand in their places as they were when they were opened.
  [[nodiscard]] bool StandsUnchanged() const;

  [[nodiscard]] Folder const& Place() const { return m_folder; }
  [[nodiscard]] std::filesystem::path const& SourceName() const { return m_sourceName; }
  [[nodiscard]] std::filesystem::path const& BackupName() const { return m_backupName; }
  [[nodiscard]] SourceFile const& Source() const { return m_source; }
  [[nodiscard]] SourceFile const& BackupFile() const { return m_backup; }

  /// What the source is called in what is told to the user.
  [[nodiscard]] std::string const& Name() const { return m_name; }

 private:
  [[nodiscard]] Complaint WhyNotComparable();
  void Compare();

  std::string m_name;
  Folder m_folder;
  std::filesystem::path m_sourceName;
  std::filesystem::path m_backupName;
  SourceFile m_backup;
  std::optional<ExclusiveLock> m_lock;
  SourceFile m_source;
  State m_state = State::Refused;
  Complaint m_complaint;
};

}  // namespace companion
