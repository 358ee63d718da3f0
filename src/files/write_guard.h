// Knowing whether somebody has a file open for writing.
#pragma once

#include <cstdint>

#include "files/descriptor.h"

/// While the object lives, whoever wants to open the file for writing waits, and can be noticed. It
/// is a lease (fcntl, F_SETLEASE); not every file system has them, and of files of others only root
/// gets one. Nothing here throws. For use by one thread.
class WriteGuard {
 public:
  enum class State : std::uint8_t {
    Alone,    ///< Nobody has the file open for writing, and nobody waits to.
    Shared,   ///< Somebody has, or waits to.
    Unknown,  ///< The system cannot tell.
  };

  /// `file` must be open for reading only, and outlive the guard.
  explicit WriteGuard(Descriptor const& file) noexcept;
  ~WriteGuard();
  WriteGuard(WriteGuard const&) = delete;
  WriteGuard& operator=(WriteGuard const&) = delete;

  /// How it is now.
  [[nodiscard]] State Look() const noexcept;

 private:
  Descriptor const& m_file;
  State m_atFirst;
};
