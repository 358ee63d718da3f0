// A source file as it was when it was opened.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "files/descriptor.h"
#include "files/file_identity.h"
#include "files/file_version.h"
#include "files/folder.h"

/// An ordinary file open for reading; closed by the destructor. Nothing here throws but ReadWhole.
/// For use by one thread.
class SourceFile {
 public:
  /// What stands at a path, compared with the open file.
  enum class Standing {
    Unchanged,       ///< This very file, with its size and times as when it was opened.
    OtherTimesOnly,  ///< This very file in its old size, touched since. Its text may be the same.
    Changed,         ///< Another file, another size, or nothing.
  };

  SourceFile() = default;  ///< Not open.

  /// Links are followed. Nothing else than an ordinary file is opened for good: a directory cannot
  /// be read, a pipe or a device has no end to rely on, and none is waited for.
  explicit SourceFile(std::filesystem::path const& path) noexcept;

  /// The same of a name in a folder, where no link is followed.
  SourceFile(Folder const& folder, std::filesystem::path const& name) noexcept;

  [[nodiscard]] bool IsOpen() const noexcept { return m_file.IsOpen(); }
  [[nodiscard]] Descriptor const& Handle() const noexcept { return m_file; }
  [[nodiscard]] FileIdentity Identity() const noexcept { return FileIdentity(m_status); }

  /// When it was opened.
  [[nodiscard]] FileVersion Version() const { return FileVersion(m_status); }

  /// In bytes, when it was opened.
  [[nodiscard]] std::uint64_t Size() const noexcept {
    return static_cast<std::uint64_t>(m_status.st_size);
  }

  /// Fills `bytes` from the current position on; false when that many cannot be read.
  [[nodiscard]] bool Read(std::span<char> bytes) noexcept;

  /// The whole content, from the front on; nothing when it cannot be read in full. Throws
  /// std::bad_alloc.
  [[nodiscard]] std::optional<std::string> ReadWhole();

  /// Goes back to the first byte.
  [[nodiscard]] bool Rewind() noexcept;

  /// Looks at what stands at `path` now.
  [[nodiscard]] Standing StandingAt(std::filesystem::path const& path) const noexcept;

  /// Whether `path` itself is a name of this file, and not of a link to it.
  [[nodiscard]] bool IsNamed(std::filesystem::path const& path) const noexcept;

 private:
  explicit SourceFile(int descriptor) noexcept;

  Descriptor m_file;
  struct stat m_status{};
};
