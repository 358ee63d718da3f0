#include "cleaner/marks_filter.h"

#include <format>
#include <new>
#include <stdexcept>
#include <utility>

#include "cleaner/source_replacement.h"
#include "cleaner/temporary_file.h"
#include "files/file_version.h"
#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace fs = std::filesystem;

namespace {

/// A path with a NUL would name another file to the system than the one that it names here, and
/// without a root a path is in its display form, which names none.
bool NamesFile(fs::path const& source, fs::path const& root) {
  return !root.empty() && source.native().find('\0') == std::string::npos;
}

std::runtime_error HashMismatch(fs::path const& source) {
  return std::runtime_error(std::format("Hash mismatch for file '{}'.", source.native()));
}

/// Takes down what is read and what of it is dropped, and leaves alone what is kept.
class CutPlanner : public EditOutput {
 public:
  explicit CutPlanner(PlannedCut& cut) : m_cut(cut) {}
  virtual ~CutPlanner() = default;
  void Show(std::span<char const> window) override {
    m_cut.before.append(window.begin(), window.end());
  }
  void Keep(std::span<char const> /*bytes*/) override {}
  void Drop(std::uint64_t begin, std::uint64_t end) override {
    if (!m_cut.dropped.empty() && m_cut.dropped.back().end == begin) {
      m_cut.dropped.back().end = end;
    } else {
      m_cut.dropped.push_back({begin, end});
    }
  }

 private:
  PlannedCut& m_cut;
};

}  // namespace

MarksFilter::MarksFilter(File file, WorkerLocks* workers)
    : m_file(std::move(file)), m_workers(workers) {}

void MarksFilter::SaveFilteredFile(fs::path const& root) {
  if (m_file.lines.empty()) {
    return;
  }
  try {
    m_source = root / m_file.path;
    SourceFile input = OpenSource(root);
    const ExclusiveLock lock(m_workers, input.Handle(), input.Identity());
    EditWindow window(input);
    CheckContent(window);
    Rewrite(input, window);
  } catch (std::bad_alloc const&) {
    throw std::runtime_error(
        std::format("Not enough memory for file '{}'.", (root / m_file.path).native()));
  }
}

PlannedCut MarksFilter::Preview(fs::path const& root) {
  m_source = root / m_file.path;
  SourceFile input = OpenSource(root);
  EditWindow window(input);
  PlannedCut cut;
  cut.before.reserve(input.Size());
  CutPlanner planner(cut);
  window.BeginEditing(planner);
  Filter(window);
  if (window.Failed() || HashOf(cut.before) != m_file.hash ||
      VersionOf(m_source) != input.Version()) {
    throw HashMismatch(m_source);
  }
  return cut;
}

SourceFile MarksFilter::OpenSource(fs::path const& root) const {
  SourceFile input(NamesFile(m_source, root) ? m_source : fs::path());
  if (!input.IsOpen()) {
    // Making the path canonical may have more to say on why.
    static_cast<void>(m_file.PathToString(root));
    throw HashMismatch(m_source);
  }
  return input;
}

void MarksFilter::CheckContent(EditWindow& window) const {
  if (window.HashSource() != m_file.hash) {
    throw HashMismatch(m_source);
  }
}

void MarksFilter::Rewrite(SourceFile& input, EditWindow& window) {
  TemporaryFile temporary(m_source, input, m_workers);
  window.BeginEditing(temporary);
  Filter(window);
  // A copy that a full disk cuts short is put in place all the same, on purpose, beside the backup
  // that holds the whole. But a file beyond the process's size limit can never be whole.
  if (temporary.WriteError() == std::errc::file_too_large) {
    temporary.Remove();
    throw fs::filesystem_error("cannot write the temporary file", temporary.Path(),
                               temporary.WriteError());
  }
  if (window.Failed() || !StandsUnchanged(input)) {
    temporary.Remove();
    throw HashMismatch(m_source);
  }
  m_copyError = temporary.WriteError();
  // A rewritten file has the permissions of a new one, because it is a copy of one.
  ReplaceSource(input, m_source, BackupOf(m_source), temporary, window.WholeResult());
}

/// The last look before the source is replaced. Our lock may have been long in coming, and another
/// run may have cleaned the file meanwhile, or an editor saved it: that text must not become the
/// backup in place of the original. Times alone also differ after a cleanup of another name of the
/// same file; then its text decides.
bool MarksFilter::StandsUnchanged(SourceFile& input) const {
  const SourceFile::Standing standing = input.StandingAt(m_source);
  if (standing == SourceFile::Standing::OtherTimesOnly) {
    return input.Rewind() && EditWindow(input).HashSource() == m_file.hash;
  }
  return standing == SourceFile::Standing::Unchanged;
}
