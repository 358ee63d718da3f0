// An open file of the system.
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <span>
#include <system_error>
#include <utility>

/// How many bytes were read or written, and why not all.
struct Transfer {
  std::size_t size = 0;
  std::error_code error;
};

/// Owns a file descriptor, and closes it. Move-only; nothing here throws. For use by one thread at
/// a time.
class Descriptor {
 public:
  Descriptor() = default;
  /// Takes over what a system call returned: a descriptor, or -1 for none.
  explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
  }
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  [[nodiscard]] bool IsOpen() const noexcept { return m_descriptor >= 0; }
  [[nodiscard]] int Get() const noexcept { return m_descriptor; }

  /// Fills `bytes` from the current position on. Fewer without an error: the file ended.
  [[nodiscard]] Transfer Read(std::span<char> bytes) const noexcept;

  /// Writes all of `bytes` at the current position; fewer only with an error.
  [[nodiscard]] Transfer Write(std::span<char const> bytes) const noexcept;

  /// Goes to `position`, in bytes from the front.
  [[nodiscard]] std::error_code SeekTo(off_t position) const noexcept;

  /// False, with the reason in errno, when the system says that what was written is not kept.
  bool Close() noexcept {
    return m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0;
  }

 private:
  int m_descriptor = -1;
};
