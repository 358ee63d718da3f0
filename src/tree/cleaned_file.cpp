#include "tree/cleaned_file.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <system_error>

#include "cleaner/marks_filter.h"
#include "cleaner/source_file.h"
#include "merge/hashing/sha1.h"
#include "tree/restored_source.h"
#include "tree/source_window.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

/// Reads the source along the pieces of text that a cleanup keeps.
class Comparison {
 public:
  explicit Comparison(SourceFile& source) : m_window(source) {}

  [[nodiscard]] CleanedState With(FilteredSource const& wanted) {
    const std::string_view text = wanted.before;
    std::size_t at = 0;
    for (ByteRange const& range : wanted.dropped) {
      Pass(text.substr(at, range.begin - at));
      at = range.end;
    }
    Pass(text.substr(at));
    if (m_isOther || m_window.Failed() || (!m_isAtEnd && !m_window.Rest().empty())) {
      return CleanedState::Other;
    }
    return m_isAtEnd ? CleanedState::BrokenOff : CleanedState::AsItShouldBe;
  }

 private:
  void Pass(std::string_view piece) {
    while (!piece.empty() && !m_isAtEnd && !m_isOther) {
      const std::string_view there = m_window.Rest();
      const std::size_t length = std::min(piece.size(), there.size());
      m_isAtEnd = length == 0;
      m_isOther = piece.substr(0, length) != there.substr(0, length);
      m_window.Consume(length);
      piece.remove_prefix(length);
    }
  }

  SourceWindow m_window;
  bool m_isAtEnd = false;  ///< The source ended before what it should be.
  bool m_isOther = false;
};

File RecordOfBackup(File const& file) {
  File backup = file;
  backup.path += MarksFilter::TempName;
  return backup;
}

/// A cleaned source without a backup is one that was kept.
bool IsKept(File const& file, fs::path const& source) {
  SourceFile opened(source);
  std::string cleaned(opened.IsOpen() ? opened.Size() : 0, '\0');
  if (!opened.IsOpen() || !opened.Read(cleaned)) {
    return false;
  }
  const auto before = Restored(cleaned, file.lines);
  SHA1 sha1;
  sha1.add(before ? before->data() : nullptr, before ? before->size() : 0);
  return before && sha1.getHash() == file.hash;
}

}  // namespace

CleanedState StateOf(File const& file, fs::path const& root) {
  const File backup = RecordOfBackup(file);
  std::error_code ignored;
  const fs::file_type type = fs::symlink_status(root / backup.path, ignored).type();
  if (type == fs::file_type::not_found && IsKept(file, root / file.path)) {
    return CleanedState::AsItShouldBe;
  }
  if (type != fs::file_type::regular) {
    return CleanedState::Other;
  }
  try {
    const FilteredSource wanted = MarksFilter(backup).Preview(root);
    const fs::path source = root / file.path;
    if (fs::symlink_status(source, ignored).type() == fs::file_type::not_found) {
      return CleanedState::BrokenOff;
    }
    SourceFile opened(source);
    return opened.IsOpen() ? Comparison(opened).With(wanted) : CleanedState::Other;
  } catch (std::exception const&) {  // The backup is not the source that was analyzed.
    return CleanedState::Other;
  }
}

}  // namespace tree
