// The copy of a source that is written before it replaces the source.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <span>

#include "cleaner/edit_output.h"
#include "files/descriptor.h"
#include "files/exclusive_lock.h"
#include "files/source_file.h"

/// A file for writing that other workers, and other processes, may want under the same path: its
/// name is the bare name of a source, and on real trees equal names are the rule. Users of one path
/// therefore lock it, from before the file is emptied until it is removed or closed.
///
/// Only a file of our own is written: an ordinary file with this one name, reached without a link,
/// that is not the source, and only when no source is kept in that directory. What a killed run
/// left there is ours. For use by one thread.
class TemporaryFile : public EditOutput {
 public:
  /// Creates the file, named like `sourcePath`, in the directory of faCleaner::GetTempDir(), or
  /// waits for the lock on the one that stands there, and empties it. The directory is created when
  /// it is not there. `source` is the open source, which the caller has locked. Throws
  /// std::filesystem::filesystem_error when any of this fails or is refused.
  TemporaryFile(std::filesystem::path const& sourcePath, SourceFile const& source,
                WorkerLocks* workers);
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

  /// Goes back to the front, to Read what was written.
  [[nodiscard]] std::error_code Rewind() const noexcept { return m_file.SeekTo(0); }
  [[nodiscard]] Transfer Read(std::span<char> bytes) const noexcept { return m_file.Read(bytes); }

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
  std::optional<ExclusiveLock> m_lock;  ///< Given back before the file is closed.
  bool m_wasThere = false;
  struct stat m_status{};
  mode_t m_mode = 0;
  std::error_code m_writeError;
};
