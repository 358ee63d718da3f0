#include "files/write_guard.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

namespace {

WriteGuard::State Take(Descriptor const& file) {
  // Whoever waits is told to us by a signal, and the usual one would end the process: one that is
  // ignored unless it is asked for takes its place.
  ::fcntl(file.Get(), F_SETSIG, SIGURG);
  if (::fcntl(file.Get(), F_SETLEASE, F_RDLCK) == 0) {
    return WriteGuard::State::Alone;
  }
  return errno == EAGAIN ? WriteGuard::State::Shared : WriteGuard::State::Unknown;
}

}  // namespace

WriteGuard::WriteGuard(Descriptor const& file) noexcept : m_file(file), m_atFirst(Take(file)) {}

WriteGuard::~WriteGuard() {
  if (m_atFirst == State::Alone) {
    ::fcntl(m_file.Get(), F_SETLEASE, F_UNLCK);
  }
}

WriteGuard::State WriteGuard::Look() const noexcept {
  const bool isBroken = m_atFirst == State::Alone && ::fcntl(m_file.Get(), F_GETLEASE) != F_RDLCK;
  return isBroken ? State::Shared : m_atFirst;
}
