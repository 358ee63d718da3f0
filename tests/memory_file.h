// A file in memory alone, with a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "files/descriptor.h"

/// Holds a text for what opens files by their paths, without a name in any folder.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view text = {}) : m_file(::memfd_create("text", MFD_CLOEXEC)) {
    Write(text);
  }

  /// Replaces the text; the file stays the same.
  void Write(std::string_view text) {
    if (::ftruncate(m_file.Get(), 0) != 0 ||
        ::pwrite(m_file.Get(), text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
      throw std::system_error(errno, std::generic_category(), "cannot write in memory");
    }
  }

  [[nodiscard]] std::string Read() const {
    std::string text(static_cast<std::size_t>(::lseek(m_file.Get(), 0, SEEK_END)), '\0');
    const ssize_t size = ::pread(m_file.Get(), text.data(), text.size(), 0);
    return text.substr(0, static_cast<std::size_t>(size));
  }

  /// Good while the object lives, in this process.
  [[nodiscard]] std::filesystem::path Path() const {
    return "/proc/self/fd/" + std::to_string(m_file.Get());
  }

 private:
  Descriptor m_file;
};
