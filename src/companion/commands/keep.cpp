#include "companion/commands/keep.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

#include "companion/backups/backups.h"
#include "companion/backups/put_back.h"
#include "companion/backups/source_tree.h"
#include "companion/commands/commands.h"
#include "companion/output/complaints.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "files/attributes.h"
#include "files/last_error.h"
#include "files/write_guard.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

std::string CannotKeep(std::string const& name, std::error_code error) {
  return "cannot keep: " + name + ": " + error.message();
}

/// What a worker found and did.
struct Prepared {
  Complaint complaint{};  ///< None when the backup may be deleted, if both are still as seen.
  PairVersions seen{};
};

Prepared Prepare(SourceTree const& tree, fs::path const& source, ComparedPairs const& compared) {
  BackupPair pair(tree, source);
  const auto known = compared.find(source);
  pair.Judge(known == compared.end() ? std::nullopt : std::optional(known->second));
  if (pair.WhatIs() != BackupPair::State::Cleaned) {
    return {.complaint = pair.WhyNotCleaned()};
  }
  if (const auto error = CopyAttributes(pair.BackupFile().Handle(), pair.Source().Handle())) {
    return {.complaint = CannotKeep(pair.Name(), error)};
  }
  return {.seen = pair.Versions()};
}

/// Deletes the backup, unless somebody has been at work on either file since: for many files it is
/// some time that they take to be written to the disk. Returns why not.
Complaint Delete(SourceTree const& tree, fs::path const& source, PairVersions const& seen) {
  const BackupPair pair(tree, source);
  if (!pair.Source().IsOpen() || !pair.BackupFile().IsOpen() || pair.Versions() != seen) {
    return ChangedMeanwhile(pair);
  }
  // A cleanup of the source would make another backup of this one; without the lock, it waits.
  std::optional<ExclusiveLock> lock;
  const bool isOneFile = pair.Source().Identity() == pair.BackupFile().Identity();
  if (!isOneFile && !lock.emplace(std::try_to_lock, pair.Source().Handle()).IsHeld()) {
    return ChangedMeanwhile(pair);
  }
  // Whoever opened the source before it was cleaned has the backup, and may yet save into it.
  const WriteGuard guard(pair.BackupFile().Handle());
  if (guard.Look() == WriteGuard::State::Shared) {
    return OpenForWriting(pair);
  }
  if (!pair.StandsUnchanged()) {
    return ChangedMeanwhile(pair);
  }
  const std::error_code error = pair.Place().Unlink(pair.BackupName());
  return error ? Complaint(CannotKeep(pair.Name(), error)) : std::nullopt;
}

/// The file systems that hold the cleaned sources, each by an open folder in it.
class FileSystems {
 public:
  explicit FileSystems(SourceTree const& tree) : m_tree(tree) {}

  void Add(dev_t fileSystem, fs::path const& source) {
    if (!m_folders.contains(fileSystem)) {
      m_folders.emplace(fileSystem, m_tree.FolderOf(source));
    }
  }

  /// Returns when all that was written to them is on the disk, or why it is not.
  [[nodiscard]] std::error_code Sync() const {
    for (auto const& [fileSystem, folder] : m_folders) {
      if (::syncfs(folder.Handle().Get()) != 0) {
        return LastError();
      }
    }
    return {};
  }

 private:
  SourceTree const& m_tree;
  std::map<dev_t, Folder> m_folders;
};

using Doomed = std::vector<std::pair<fs::path const*, PairVersions>>;

/// Gives the sources what their backups have beside the content; returns which backups may go.
Doomed PrepareAll(SourceTree const& tree, std::vector<fs::path> const& sources,
                  ComparedPairs const& compared, Complaints& complaints, Console& console) {
  Doomed doomed;
  ParallelInOrder<Prepared>(
      sources.size(), [&](std::size_t index) { return Prepare(tree, sources[index], compared); },
      [&](std::size_t index, Prepared const& one) {
        if (one.complaint) {
          complaints.Add(*one.complaint);
        } else {
          doomed.emplace_back(&sources[index], one.seen);
        }
        console.Progress(index + 1, sources.size());
        return true;
      });
  return doomed;
}

/// Returns how many were deleted.
std::size_t DeleteAll(SourceTree const& tree, Doomed const& doomed, Complaints& complaints,
                      Console& console) {
  std::size_t done = 0;
  for (auto const& [source, seen] : doomed) {
    if (const Complaint complaint = Delete(tree, *source, seen)) {
      complaints.Add(*complaint);
      continue;
    }
    console.Out() << "kept: " << Printable(tree.NameOf(*source)) << '\n';
    ++done;
  }
  return done;
}

}  // namespace

void KeepCleaned(Options const& options, ComparedPairs const& compared, Console& console) {
  const SourceTree tree(options.root);
  const std::vector<fs::path> sources =
      FindBackups(options.root, FiltersOf(options).paths, console);
  Complaints complaints(console, options.list);
  const Doomed doomed = PrepareAll(tree, sources, compared, complaints, console);
  FileSystems fileSystems(tree);
  for (auto const& [source, seen] : doomed) {
    fileSystems.Add(seen.source.file.device, *source);
  }
  if (const std::error_code error = fileSystems.Sync()) {
    complaints.Finish();
    console.Complain("cannot write the cleaned files to the disk, so that every backup stays: " +
                     error.message());
    return;
  }
  const std::size_t done = DeleteAll(tree, doomed, complaints, console);
  complaints.Finish();
  console.Out() << (sources.empty() ? "nothing to keep"
                                    : DoneAndRefused(done, "kept", sources.size() - done))
                << '\n';
}

void Keep(Options const& options, Console& console) {
  KeepCleaned(options, {}, console);
}

}  // namespace companion
