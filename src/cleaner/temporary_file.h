// The copy of a source that is written before it replaces the source.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <span>

/// A file for writing that other workers, and other processes, may want under the same path: its
/// name is the bare name of a source, and on real trees equal names are the rule. Users of one
/// path therefore take turns: the file carries an advisory lock from before it is truncated until
/// it is removed or the owner is destroyed. The lock leaves nothing on disk and frees itself when
/// its owner dies. Where the file system has no locks, all go on as if they had one.
///
/// Writing never reports a failure: what could not be opened or written is found by the copy onto
/// the source, or by the backup that stays beside it.
class TemporaryFile {
 public:
  /// Waits for its turn, then creates or truncates the file `name` in the directory of
  /// faCleaner::GetTempDir(), which is created when it is not there. Throws
  /// std::filesystem::filesystem_error when that fails, or when a file stands there that cannot be
  /// written: it holds the text of some other source.
  explicit TemporaryFile(std::filesystem::path const& name);
  ~TemporaryFile();
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  [[nodiscard]] std::filesystem::path const& Path() const noexcept { return m_path; }

  /// The permissions of the file.
  [[nodiscard]] mode_t Mode() const noexcept { return m_mode; }

  /// Whether it could be opened. If not, what stands at its path is another's: not to be read or
  /// removed.
  [[nodiscard]] bool IsOpen() const noexcept { return m_descriptor >= 0; }

  /// Appends `bytes`; nothing once a piece could not be written.
  void Write(std::span<char const> bytes) noexcept;

  /// Whether the file is open and has taken all that was written.
  [[nodiscard]] bool IsWhole() const noexcept { return m_isWhole; }

 private:
  void Open(std::filesystem::path const& name);
  void OpenAndLock();
  [[nodiscard]] bool IsStillAtPath() noexcept;
  [[nodiscard]] bool MakeEmpty() const noexcept;
  void RefuseForeignText();
  void Close() noexcept;

  std::filesystem::path m_path;
  int m_descriptor = -1;
  bool m_isRegular = false;
  off_t m_foundSize = 0;  ///< Of what stood there before.
  mode_t m_mode = 0;
  bool m_isWhole = false;
};
