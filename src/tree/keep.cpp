#include "tree/keep.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <map>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cleaner/file_turn.h"
#include "cleaner/file_version.h"
#include "cleaner/source_file.h"
#include "descriptor.h"
#include "tree/attributes.h"
#include "tree/backup_pair.h"
#include "tree/backups.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/printable.h"
#include "tree/put_back.h"

namespace tree {

namespace {

std::error_code LastError() {
  return {errno, std::system_category()};
}

std::string CannotKeep(Backup const& backup, std::error_code const& reason) {
  return "cannot keep: " + backup.source.string() + ": " + reason.message();
}

/// The source and the backup as they were when they were opened to be looked at.
struct Seen {
  FileVersion source;
  FileVersion backup;
};

/// What a worker found and did.
struct Prepared {
  std::string complaint{};  ///< Empty when the backup may be deleted, if both are still as seen.
  Seen seen{};
};

Prepared Prepare(Backup const& backup) {
  const BackupPair pair(backup);
  if (pair.WhatIs() != BackupPair::State::Cleaned) {
    return {.complaint = pair.Complaint()};
  }
  if (const auto error = CopyAttributes(pair.BackupFile().Handle(), pair.Source().Handle())) {
    return {.complaint = CannotKeep(backup, error)};
  }
  return {.seen = {pair.Source().Version(), pair.BackupFile().Version()}};
}

/// Deletes the backup, unless somebody has been at work on either file since: for many files it is
/// some time that they take to be written to the disk. Returns why not.
std::string Delete(Backup const& backup, Seen const& seen) {
  const SourceFile source(backup.source);
  // A cleanup of the source would make another backup of this one; without the turn, it waits.
  const FileTurn turn(nullptr, source.Handle(), source.Identity());
  if (!source.IsOpen() || source.Version() != seen.source ||
      VersionOf(backup.source) != seen.source || VersionOf(backup.backup) != seen.backup) {
    return ChangedMeanwhile(backup);
  }
  return ::unlink(backup.backup.c_str()) == 0 ? std::string() : CannotKeep(backup, LastError());
}

/// The file systems that hold the cleaned sources, each by an open file of it.
class FileSystems {
 public:
  void Add(dev_t fileSystem, Backup const& backup) {
    if (!m_files.contains(fileSystem)) {
      m_files.emplace(fileSystem, Descriptor(::open(backup.backup.c_str(), O_RDONLY | O_CLOEXEC)));
    }
  }

  /// Returns when all that was written to them is on the disk, or why it is not.
  [[nodiscard]] std::error_code Sync() const {
    for (auto const& [fileSystem, file] : m_files) {
      if (::syncfs(file.Get()) != 0) {
        return LastError();
      }
    }
    return {};
  }

 private:
  std::map<dev_t, Descriptor> m_files;
};

}  // namespace

void Keep(Options const& options, Console& console) {
  const std::vector<Backup> backups = FindBackups(options.root, console);
  std::vector<std::pair<Backup const*, Seen>> doomed;
  FileSystems fileSystems;
  InOrder<Prepared>(
      backups.size(), [&](std::size_t index) { return Prepare(backups[index]); },
      [&](std::size_t index, Prepared const& one) {
        if (one.complaint.empty()) {
          fileSystems.Add(one.seen.source.file.device, backups[index]);
          doomed.emplace_back(&backups[index], one.seen);
        } else {
          console.Complain(one.complaint);
        }
        console.Progress(index + 1, backups.size());
        return true;
      });
  if (const std::error_code error = fileSystems.Sync()) {
    console.Complain("cannot write the cleaned files to the disk, so that every backup stays: " +
                     error.message());
    return;
  }
  std::size_t done = 0;
  for (auto const& [backup, seen] : doomed) {
    if (const std::string complaint = Delete(*backup, seen); !complaint.empty()) {
      console.Complain(complaint);
      continue;
    }
    console.Out() << "kept: " << Printable(backup->source.native()) << '\n';
    ++done;
  }
  console.Out() << (backups.empty() ? "nothing to keep"
                                    : DoneAndRefused(done, "kept", backups.size() - done))
                << '\n';
}

}  // namespace tree
