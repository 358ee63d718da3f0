// A source and its backup, looked at before anything is done to them.
#pragma once

#include <cstdint>
#include <string>

#include "cleaner/file_turn.h"
#include "cleaner/source_file.h"
#include "tree/backups.h"

namespace tree {

/// Both files, open, and the turn of the backup, for which a cleanup that is at work on the source
/// has it: such a one is waited for. Nothing here throws but std::bad_alloc.
class BackupPair {
 public:
  enum class State : std::uint8_t {
    Cleaned,    ///< The source is the backup less some markers.
    BrokenOff,  ///< It is a beginning of such a text, or gone: it holds nothing of its own.
    Refused,    ///< Anything else: nothing must be done.
  };

  explicit BackupPair(Backup const& backup);

  [[nodiscard]] State WhatIs() const { return m_state; }

  /// Why it is not Cleaned.
  [[nodiscard]] std::string const& Complaint() const { return m_complaint; }

  [[nodiscard]] SourceFile const& Source() const { return m_source; }
  [[nodiscard]] SourceFile const& BackupFile() const { return m_backupFile; }

 private:
  void Look();
  void Compare();

  Backup const& m_backup;
  SourceFile m_backupFile;
  FileTurn m_turn;
  SourceFile m_source;
  State m_state = State::Refused;
  std::string m_complaint;
};

}  // namespace tree
