#include "companion/backups/backup_pair.h"

#include <cerrno>

#include "cleaner/backup_name.h"
#include "companion/backups/marker_difference.h"

namespace companion {

namespace {

bool IsRegular(std::optional<struct stat> const& status) {
  return status && S_ISREG(status->st_mode);
}

bool IsOnlyMarkers(MarkerDifference difference) {
  return difference == MarkerDifference::OnlyMarkers ||
         difference == MarkerDifference::OnlyMarkersSoFar;
}

}  // namespace

BackupPair::BackupPair(SourceTree const& tree, std::filesystem::path const& source,
                       WorkerLocks* workers)
    : m_name(tree.NameOf(source)),
      m_folder(tree.FolderOf(source)),
      m_sourceName(source.filename()),
      m_backupName(BackupOf(m_sourceName)),
      m_backup(m_folder, m_backupName) {
  if (m_backup.IsOpen()) {
    m_lock.emplace(workers, m_backup.Handle(), m_backup.Identity());
  }
  m_source = SourceFile(m_folder, m_sourceName);
}

void BackupPair::Judge(std::optional<PairVersions> const& known) {
  m_state = State::Refused;
  m_complaint = WhyNotComparable();
  if (!m_complaint && known && Versions() == *known) {
    m_state = State::Cleaned;
  } else if (!m_complaint) {
    Compare();
  }
}

bool BackupPair::StandsUnchanged() const {
  return m_folder.VersionOf(m_sourceName) == m_source.Version() &&
         m_folder.VersionOf(m_backupName) == m_backup.Version();
}

Complaint BackupPair::WhyNotComparable() {
  const std::string backupName = BackupOf(m_name).string();
  if (!m_folder.IsOpen()) {
    return "cannot read the folder of " + m_name;
  }
  if (!IsRegular(m_folder.StatusOf(m_backupName))) {
    return "backup is no regular file: " + backupName;
  }
  const auto source = m_folder.StatusOf(m_sourceName);
  if (!IsRegular(source)) {
    m_state = !source && errno == ENOENT ? State::Gone : State::Refused;
    return "source of the backup is gone, or no regular file: " + m_name;
  }
  if (!m_source.IsOpen() || !m_backup.IsOpen()) {
    return "cannot read " + (m_source.IsOpen() ? backupName : m_name);
  }
  return std::nullopt;
}

void BackupPair::Compare() {
  const MarkerDifference difference = DifferenceOf(m_source, m_backup);
  if (difference == MarkerDifference::OnlyMarkers) {
    m_state = State::Cleaned;
  } else if (difference == MarkerDifference::OnlyMarkersSoFar) {
    m_state = State::BrokenOff;
    m_complaint = "source has changed since the cleanup: " + m_name;
  } else if (difference == MarkerDifference::Unknown) {
    m_complaint = "cannot read to its end, or its backup: " + m_name;
  } else if (m_source.Rewind() && m_backup.Rewind() &&
             IsOnlyMarkers(DifferenceOf(m_backup, m_source))) {
    m_state = State::HalfPutBack;
    m_complaint = "undo was interrupted, and is to be run again: " + m_name;
  } else {
    m_state = State::Changed;
    m_complaint = "source has changed since the cleanup: " + m_name;
  }
}

}  // namespace companion
