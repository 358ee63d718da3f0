#include "cleaner/file_turn.h"

#include <sys/file.h>

#include <cerrno>

void FileTurns::Take(FileIdentity const& file) {
  std::unique_lock lock(m_mutex);
  m_givenBack.wait(lock, [&] { return m_taken.insert(file).second; });
}

void FileTurns::GiveBack(FileIdentity const& file) noexcept {
  {
    const std::scoped_lock lock(m_mutex);
    m_taken.erase(file);
  }
  m_givenBack.notify_all();
}

FileTurn::FileTurn(FileTurns* turns, int descriptor, FileIdentity const& file)
    : m_turns(turns), m_descriptor(descriptor), m_file(file) {
  if (m_turns != nullptr) {
    m_turns->Take(m_file);
  }
  // A file system without locks is no reason to stop.
  while (::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
  }
}

FileTurn::~FileTurn() {
  // Not left to the closing of the file: should that fail, nobody would ever have a turn again.
  ::flock(m_descriptor, LOCK_UN);
  if (m_turns != nullptr) {
    m_turns->GiveBack(m_file);
  }
}
