// The copy of a source that is written before it replaces the source.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <span>

#include "cleaner/edit_output.h"
#include "cleaner/file_turn.h"
#include "cleaner/source_file.h"
#include "descriptor.h"

/// A file for writing that other workers, and other processes, may want under the same path: its
/// name is the bare name of a source, and on real trees equal names are the rule. Users of one path
/// therefore take turns, from before the file is emptied until it is removed or closed.
///
/// Only a file of our own is written: an ordinary file with this one name, reached without a link,
/// that is not the source, and only when no source is kept in that directory. What a killed run
/// left there is ours. For use by one thread.
class TemporaryFile : public EditOutput {
 public:
  /// Creates the file, named like `sourcePath`, in the directory of faCleaner::GetTempDir(), or
  /// waits for its turn at the one that stands there, and empties it. The directory is created when
  /// it is not there. `source` is the open source, whose turn the caller has. Throws
  /// std::filesystem::filesystem_error when any of this fails or is refused.
  TemporaryFile(std::filesystem::path const& sourcePath, SourceFile const& source,
                FileTurns* turns);
  virtual ~TemporaryFile() = default;
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  [[nodiscard]] std::filesystem::path const& Path() const noexcept { return m_path; }

  /// The permissions of the file.
  [[nodiscard]] mode_t Mode() const noexcept { return m_mode; }

  /// Appends `bytes`; nothing once a piece could not be written: cut short, never garbled.
  void Keep(std::span<char const> bytes) noexcept override;
  void Drop(std::uint64_t /*begin*/, std::uint64_t /*end*/) noexcept override {}

  /// Why the file could not take all that was to be written; no error when it could.
  [[nodiscard]] std::error_code WriteError() const noexcept { return m_writeError; }

  /// Fills the front of `bytes` with what stands at `position`; returns how many bytes that are, 0
  /// at the end, and less than 0, with the reason in errno, when they cannot be read.
  [[nodiscard]] ssize_t ReadAt(off_t position, std::span<char> bytes) const noexcept;

  /// Removes the file. Throws std::filesystem::filesystem_error.
  void Remove();

 private:
  void OpenOrCreate(std::filesystem::path const& name);
  [[nodiscard]] int Create();  // These three return 0 or the reason, as errno has it.
  [[nodiscard]] int Open();
  [[nodiscard]] int TakeOver(int descriptor);
  [[noreturn]] void RefuseForeignFile() const;
  [[nodiscard]] bool IsStillAtPath() const noexcept;
  void Empty();
  [[noreturn]] void Refuse(int error) const;

  std::filesystem::path m_path;
  Descriptor m_file;
  std::optional<FileTurn> m_turn;  ///< Given back before the file is closed.
  bool m_wasThere = false;
  struct stat m_status{};
  mode_t m_mode = 0;
  std::error_code m_writeError;
};
