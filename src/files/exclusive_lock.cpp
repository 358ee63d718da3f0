#include "files/exclusive_lock.h"

#include <sys/file.h>

#include <cerrno>

void WorkerLocks::Lock(FileIdentity const& file) {
  std::unique_lock lock(m_mutex);
  m_unlocked.wait(lock, [&] { return m_locked.insert(file).second; });
}

void WorkerLocks::Unlock(FileIdentity const& file) noexcept {
  {
    const std::scoped_lock lock(m_mutex);
    m_locked.erase(file);
  }
  m_unlocked.notify_all();
}

ExclusiveLock::ExclusiveLock(WorkerLocks* workers, Descriptor const& file,
                             FileIdentity const& identity)
    : m_workers(workers), m_descriptor(file.Get()), m_identity(identity) {
  if (m_workers != nullptr) {
    m_workers->Lock(m_identity);
  }
  // A file system without locks is no reason to stop.
  while (::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
  }
}

ExclusiveLock::ExclusiveLock(std::try_to_lock_t /*tag*/, Descriptor const& file) noexcept
    : m_workers(nullptr), m_descriptor(file.Get()) {
  m_isHeld = ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

ExclusiveLock::~ExclusiveLock() {
  // Not left to the closing of the file: should that fail, nobody would ever have the lock again.
  if (m_isHeld) {
    ::flock(m_descriptor, LOCK_UN);
  }
  if (m_workers != nullptr) {
    m_workers->Unlock(m_identity);
  }
}
