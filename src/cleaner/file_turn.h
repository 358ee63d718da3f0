// Taking turns at a file.
#pragma once

#include <condition_variable>
#include <mutex>
#include <set>

#include "cleaner/file_identity.h"

/// The files that the workers of one process are at work on. One object is shared by all workers,
/// so that they keep apart without the file system's help: not every file system has locks. All
/// functions may be called from any thread.
class FileTurns {
 public:
  /// Waits until no other worker has the file, and takes it. Throws std::bad_alloc.
  void Take(FileIdentity const& file);
  void GiveBack(FileIdentity const& file) noexcept;

 private:
  std::mutex m_mutex;
  std::condition_variable m_givenBack;
  std::set<FileIdentity> m_taken;
};

/// The right to write or replace one open file while the object lives: against the other workers
/// of this process by FileTurns, against other processes by an advisory lock (flock). The lock
/// leaves nothing on disk, and is gone when its owner dies. Where the file system has no locks,
/// other processes are not kept away.
///
/// Nobody can wait in a circle: a worker takes at most two turns, always that of its source first
/// and that of its temporary file second, and whoever has the turn of a temporary file waits for
/// nothing more. The companion, when it puts back or deletes a backup, waits for one turn alone.
class FileTurn {
 public:
  /// Waits for the turn at the file that is open as `descriptor`, which must stay open while the
  /// turn is held. `turns` may be null when no other worker of this process is at work.
  FileTurn(FileTurns* turns, int descriptor, FileIdentity const& file);
  ~FileTurn();
  FileTurn(FileTurn const&) = delete;
  FileTurn& operator=(FileTurn const&) = delete;

 private:
  FileTurns* m_turns;
  int m_descriptor;
  FileIdentity m_file;
};
