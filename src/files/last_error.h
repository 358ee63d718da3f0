// The reason of a failed system call.
#pragma once

#include <cerrno>
#include <system_error>

/// What errno says, to be asked for right behind the call that failed.
[[nodiscard]] inline std::error_code LastError() noexcept {
  return {errno, std::system_category()};
}
