// Writing to a pipe that nobody reads any more.
#pragma once

#include <pthread.h>

#include <csignal>
#include <ctime>

/// While it lives, a write of this thread to a closed pipe fails instead of ending the process. The
/// process itself keeps its way with signals.
class BrokenPipeGuard {
 public:
  BrokenPipeGuard() noexcept {
    sigemptyset(&m_brokenPipe);
    sigaddset(&m_brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_previous);
  }

  ~BrokenPipeGuard() {
    if (sigismember(&m_previous, SIGPIPE) != 0) {
      return;  // Someone else blocks the signal, and looks after it.
    }
    // A signal that came meanwhile is taken off, so that it does not strike when let through again.
    const timespec atOnce{};
    sigtimedwait(&m_brokenPipe, nullptr, &atOnce);
    pthread_sigmask(SIG_SETMASK, &m_previous, nullptr);
  }

  BrokenPipeGuard(BrokenPipeGuard const&) = delete;
  BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;

 private:
  sigset_t m_brokenPipe{};
  sigset_t m_previous{};
};
