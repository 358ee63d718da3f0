#include "tree/undo.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "tree/backup_pair.h"
#include "tree/backups.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/printable.h"

namespace tree {

namespace {

/// Returns why not; empty when the backup is put back.
std::string PutBack(Backup const& backup) {
  const BackupPair pair(backup);
  if (pair.WhatIs() == BackupPair::State::Refused) {
    return pair.Complaint();
  }
  if (!pair.IsUnchanged()) {
    return "source has changed while it was looked at: " + backup.source.string();
  }
  if (std::rename(backup.backup.c_str(), backup.source.c_str()) != 0) {
    const std::error_code reason(errno, std::system_category());
    return "cannot undo: " + backup.source.string() + ": " + reason.message();
  }
  return {};
}

}  // namespace

void Undo(Options const& options, Console& console) {
  const std::vector<Backup> backups = FindBackups(options.root, console);
  std::size_t done = 0;
  InOrder<std::string>(
      backups.size(), [&](std::size_t index) { return PutBack(backups[index]); },
      [&](std::size_t index, std::string const& complaint) {
        if (complaint.empty()) {
          console.Out() << "put back: " << Printable(backups[index].source.native()) << '\n';
          ++done;
        } else {
          console.Complain(complaint);
        }
        console.Progress(index + 1, backups.size());
        return true;
      });
  console.Out() << (backups.empty() ? "nothing to put back"
                                    : DoneAndRefused(done, "put back", backups.size() - done))
                << '\n';
}

}  // namespace tree
