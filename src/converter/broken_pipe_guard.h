// Writing to a pipe that nobody reads any more.
#pragma once

#include <csignal>

namespace TesselConverter {

/// While it lives, a write of this thread to a closed pipe fails instead of ending the process.
class BrokenPipeGuard {
 public:
  BrokenPipeGuard() noexcept;
  ~BrokenPipeGuard();
  BrokenPipeGuard(BrokenPipeGuard const&) = delete;
  BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;

 private:
  sigset_t m_previous{};
};

}  // namespace TesselConverter
