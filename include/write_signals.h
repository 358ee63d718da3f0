// Writing where nobody reads any more, or more than is allowed.
#pragma once

#include <pthread.h>

#include <csignal>

/// From here on, a write to a closed pipe, or beyond the process's limit on file sizes, fails like
/// every other write, instead of ending the process half way through its work. To be called first
/// in `main`: threads inherit it when they are started. It is never taken back, because a signal
/// that came meanwhile would then strike after all. No signal is handled; the two are only blocked.
inline void LetWritesFailWithoutSignals() noexcept {
  sigset_t signals{};
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  sigaddset(&signals, SIGXFSZ);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}
