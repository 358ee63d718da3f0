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

#include "descriptor.h"
#include "tree/attributes.h"
#include "tree/backup_pair.h"
#include "tree/backups.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/printable.h"

namespace tree {

namespace {

std::error_code LastError() {
  return {errno, std::system_category()};
}

std::string CannotKeep(Backup const& backup, std::error_code const& reason) {
  return "cannot keep: " + backup.source.string() + ": " + reason.message();
}

/// What a worker found and did.
struct Prepared {
  std::string complaint{};  ///< Empty when the backup may be deleted.
  dev_t fileSystem = 0;
};

Prepared Prepare(Backup const& backup) {
  const BackupPair pair(backup);
  if (pair.WhatIs() != BackupPair::State::Cleaned) {
    return {.complaint = pair.Complaint()};
  }
  if (const auto error = CopyAttributes(pair.BackupFile().Handle(), pair.Source().Handle())) {
    return {.complaint = CannotKeep(backup, error)};
  }
  return {.fileSystem = pair.Source().Identity().device};
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
  std::vector<Backup const*> prepared;
  FileSystems fileSystems;
  InOrder<Prepared>(
      backups.size(), [&](std::size_t index) { return Prepare(backups[index]); },
      [&](std::size_t index, Prepared const& one) {
        if (one.complaint.empty()) {
          fileSystems.Add(one.fileSystem, backups[index]);
          prepared.push_back(&backups[index]);
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
  for (Backup const* backup : prepared) {
    if (::unlink(backup->backup.c_str()) != 0) {
      console.Complain(CannotKeep(*backup, LastError()));
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
