// The copy of a source that is written before it replaces the source.
#pragma once

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
  /// Waits for its turn, then creates or truncates `path`. Throws std::filesystem::filesystem_error
  /// when a file stands there that cannot be written: it holds the text of some other source.
  explicit TemporaryFile(std::filesystem::path path);
  ~TemporaryFile();
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  [[nodiscard]] std::filesystem::path const& Path() const noexcept { return m_path; }

  /// Appends `bytes`; nothing once a piece could not be written.
  void Write(std::span<char const> bytes) noexcept;

 private:
  void OpenAndLock();
  [[nodiscard]] bool IsGone() const noexcept;
  void Close() noexcept;

  std::filesystem::path m_path;
  int m_descriptor = -1;
  bool m_writable = false;
};
