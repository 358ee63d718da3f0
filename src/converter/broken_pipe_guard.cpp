#include "converter/broken_pipe_guard.h"

#include <pthread.h>

#include <ctime>

namespace TesselConverter {

namespace {

sigset_t BrokenPipe() noexcept {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  return signals;
}

}  // namespace

BrokenPipeGuard::BrokenPipeGuard() noexcept {
  const sigset_t signals = BrokenPipe();
  pthread_sigmask(SIG_BLOCK, &signals, &m_previous);
}

BrokenPipeGuard::~BrokenPipeGuard() {
  if (sigismember(&m_previous, SIGPIPE) != 0) {
    return;  // Someone else blocks the signal, and looks after it.
  }
  // A signal that came meanwhile is taken off, so that it does not strike when let through again.
  const sigset_t signals = BrokenPipe();
  const timespec atOnce{};
  sigtimedwait(&signals, nullptr, &atOnce);
  pthread_sigmask(SIG_SETMASK, &m_previous, nullptr);
}

}  // namespace TesselConverter
