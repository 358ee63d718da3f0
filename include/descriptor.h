// The owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

/// Owns an open file of the system, and closes it. Move-only; for use by one thread at a time.
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

  /// False, with the reason in errno, when the system says that what was written is not kept.
  bool Close() noexcept {
    return m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0;
  }

 private:
  int m_descriptor = -1;
};
