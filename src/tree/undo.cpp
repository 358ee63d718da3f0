#include "tree/undo.h"

#include <cstddef>
#include <string>
#include <vector>

#include "tree/backup_pair.h"
#include "tree/backups.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/printable.h"
#include "tree/put_back.h"

namespace tree {

namespace {

/// Returns why not; empty when the backup is put back.
std::string UndoOne(Backup const& backup) {
  const BackupPair pair(backup);
  if (pair.WhatIs() == BackupPair::State::Refused) {
    return pair.Complaint();
  }
  return PutBack(backup, pair.Source(), pair.BackupFile());
}

}  // namespace

void Undo(Options const& options, Console& console) {
  const std::vector<Backup> backups = FindBackups(options.root, console);
  std::size_t done = 0;
  InOrder<std::string>(
      backups.size(), [&](std::size_t index) { return UndoOne(backups[index]); },
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
