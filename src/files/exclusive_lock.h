// Locks on files.
#pragma once

#include <condition_variable>
#include <mutex>
#include <set>

#include "files/descriptor.h"
#include "files/file_identity.h"

/// The files that the workers of one process have locked. One object is shared by all workers, so
/// that they keep apart without the file system's help: not every file system has locks. All
/// functions may be called from any thread.
class WorkerLocks {
 public:
  /// Waits until no other worker has the file, and takes it. Throws std::bad_alloc.
  void Lock(FileIdentity const& file);

  /// Lets the next worker have it.
  void Unlock(FileIdentity const& file) noexcept;

 private:
  std::mutex m_mutex;
  std::condition_variable m_unlocked;
  std::set<FileIdentity> m_locked;
};

/// The right to write or replace one open file while the object lives: against the other workers
/// of this process by WorkerLocks, against other processes by an advisory lock (flock). The latter
/// leaves nothing on disk, and is gone when its owner dies. Where the file system has no locks,
/// other processes are not kept away.
///
/// Nobody can wait in a circle: a worker waits for at most two locks, always for that of its source
/// first and for that of its temporary file second, and whoever has the lock of a temporary file
/// waits for nothing more. The companion, when it puts back or deletes a backup, waits for one lock
/// alone, and takes a second one only where it need not wait.
class ExclusiveLock {
 public:
  /// Waits for the lock on `file`, which must be open, and stay so while the lock is held.
  /// `workers` may be null when no other worker of this process is at work.
  ExclusiveLock(WorkerLocks* workers, Descriptor const& file, FileIdentity const& identity);

  /// Does not wait: where another process has the lock, it is not held. For a process of which no
  /// other worker is at work on the file.
  ExclusiveLock(std::try_to_lock_t /*tag*/, Descriptor const& file) noexcept;

  ~ExclusiveLock();
  ExclusiveLock(ExclusiveLock const&) = delete;
  ExclusiveLock& operator=(ExclusiveLock const&) = delete;

  /// False where another process has the file. Where the file system has no locks, nobody is taken
  /// to have it.
  [[nodiscard]] bool IsHeld() const noexcept { return m_isHeld; }

 private:
  WorkerLocks* m_workers;
  int m_descriptor;
  FileIdentity m_identity;
  bool m_isHeld = true;
};
