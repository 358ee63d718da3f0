// Rewriting one source file without its redundant markers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "cleaner/backup_name.h"
#include "cleaner/edit_window.h"
#include "cleaner/planned_cut.h"
#include "files/exclusive_lock.h"
#include "merge/file.h"

/// Takes the listed markers out of one source file: checks that the file is still the one the
/// analyzer core saw, copies it without the markers' bytes into a temporary file, and puts that in
/// place of the source. The source as it was stays beside it as a backup.
///
/// What is removed is what the records say, at line positions [offsets begin, offsets end); the
/// filter knows nothing of comments. It walks the lines, which must ascend, and the markers of a
/// line once, forwards, with one of four states for what comes next (ARCHITECTURE.md has them as a
/// table). Each use is for one file, on one thread: one call of SaveFilteredFile or Preview.
class MarksFilter {
 public:
  /// Appended to the source's name, with no separator, to name the backup.
  static constexpr std::string_view TempName = BackupSuffix;

  /// Takes the record over; opens nothing. `workers` are the locks of all workers of this process,
  /// and must outlive the filter; null when it works alone.
  explicit MarksFilter(File file, WorkerLocks* workers = nullptr);

  /// Does the whole rewrite of `root` / path; with no lines listed, nothing. Throws
  /// std::runtime_error when the content is not the recorded one or cannot be read, or for want of
  /// memory, and std::filesystem::filesystem_error when a step of the replacement fails. At every
  /// moment the bytes of the source stand at its path or at its backup's.
  void SaveFilteredFile(std::filesystem::path const& root);

  /// After SaveFilteredFile: why the copy that it put in place of the source is cut short, which a
  /// full disk does; no error when it is whole.
  [[nodiscard]] std::error_code CopyError() const { return m_copyError; }

  /// What SaveFilteredFile would do to the source, without doing it: nothing on disk is touched,
  /// and the source, which must have lines listed, is read once and held in memory whole. Throws
  /// what SaveFilteredFile throws for a content that is not the recorded one.
  [[nodiscard]] PlannedCut Preview(std::filesystem::path const& root);

 private:
  using State = void (MarksFilter::*)(EditWindow&);

  [[nodiscard]] SourceFile OpenSource(std::filesystem::path const& root) const;
  void CheckContent(EditWindow& window) const;
  void Rewrite(SourceFile& input, EditWindow& window);
  [[nodiscard]] bool StandsUnchanged(SourceFile& input) const;

  void Filter(EditWindow& window);
  void StateInterestedLine(EditWindow& window);
  void StateNotInterestedLine(EditWindow& window);
  void StatePassSymbols(EditWindow& window);
  void StateWriteAll(EditWindow& window);

  void BeginLine();
  void KeepLineEnd(EditWindow& window);
  void NextMarker();
  [[nodiscard]] bool AtListedLine() const;
  [[nodiscard]] Range const& CurrentOffsets() const;

  File m_file;
  WorkerLocks* m_workers;
  std::filesystem::path m_source;  ///< The root joined with the record's path.
  std::error_code m_copyError;
  State m_state = nullptr;
  std::uint64_t m_column = 0;      ///< 0-based byte position within the line.
  std::uint64_t m_lineNumber = 1;  ///< 1-based.
  std::size_t m_lineIndex = 0;     ///< The next listed line.
  std::size_t m_markerIndex = 0;   ///< The next marker of that line.
};
