#include "tree/backup_pair.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tree/cleaned_source.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

bool IsRegular(fs::path const& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsGone(fs::path const& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

}  // namespace

BackupPair::BackupPair(Backup const& backup)
    : m_backup(backup),
      m_backupFile(backup.backup),
      m_turn(nullptr, m_backupFile.Handle(), m_backupFile.Identity()),
      m_source(backup.source) {
  Look();
}

void BackupPair::Look() {
  if (!IsRegular(m_backup.backup)) {
    m_complaint = "backup is no regular file: " + m_backup.backup.string();
  } else if (!IsRegular(m_backup.source)) {
    m_state = IsGone(m_backup.source) ? State::BrokenOff : State::Refused;
    m_complaint = "source of the backup is gone, or no regular file: " + m_backup.source.string();
  } else if (!m_source.IsOpen() || !m_backupFile.IsOpen()) {
    m_complaint = "cannot read " + (m_source.IsOpen() ? m_backup.backup : m_backup.source).string();
  } else {
    Compare();
  }
}

void BackupPair::Compare() {
  m_complaint = "source has changed since the cleanup: " + m_backup.source.string();
  switch (StateOf(m_source, m_backupFile)) {
    case SourceState::Cleaned:
      m_state = State::Cleaned;
      m_complaint.clear();
      break;
    case SourceState::BrokenOff:
      m_state = State::BrokenOff;
      break;
    case SourceState::Unreadable:
      m_complaint = "cannot read to its end, or its backup: " + m_backup.source.string();
      break;
    case SourceState::Changed:
      break;
  }
}

}  // namespace tree
