#include "merge/raw_merge.h"

#include <format>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "merge/path_index.h"

namespace {

namespace fs = std::filesystem;

/// Whether to move a new record into the collection, and not to copy it.
///
/// Copying is mostly better: all parts of the copy are allocated at once, so that they stand close
/// together in memory and take no more of it than they need; and the next record can be read into
/// the memory of this one. Only where there are many lines does the copying itself take longer.
/// These are moved; but not if a far longer record was read before them, because the unused part of
/// its memory would move with them and stay in the collection to the end.
bool IsRatherMoved(std::vector<Line> const& lines) {
  constexpr std::size_t manyLines = 1000;
  return lines.size() >= manyLines && lines.capacity() <= 2 * lines.size();
}

std::string Display(fs::path const& path, fs::path const& root) {
  File file;
  file.path = path;
  return file.PathToString(root);
}

void Intersect(File const& stored, File const& record, fs::path const& root) {
  if (stored.hash != record.hash) {
    throw HashMismatch(std::format("Hash mismatch while merging reports for file '{}'.",
                                   Display(stored.path, root)));
  }
  stored.Intersect(record);
}

/// Lives for one report: it remembers where the files of the collection are, which anyone may
/// change before the next report is read.
class RawMerge {
 public:
  RawMerge(FileSet& files, SourcePaths& paths, fs::path const& root)
      : m_files(files), m_paths(paths), m_root(root), m_known(files.size()) {}

  void Merge(ReportReader& report, std::vector<File const*>* inOrder) {
    File record;
    while (report.Next(record)) {
      auto const& [number, relative] = m_paths.Relative(record.path, m_root);
      if (File const*& place = PlaceOf(number)) {
        Intersect(*place, record, m_root);
        report.PassOverRepeats();  // More repeats will follow, and change nothing.
      } else {
        place = Merge(record, relative);
        if (inOrder != nullptr) {
          inOrder->push_back(place);
        }
      }
    }
  }

 private:
  /// Where the record of the path stands, if this report had it before.
  File const*& PlaceOf(std::size_t path) {
    if (path >= m_places.size()) {
      m_places.resize(path + 1);
    }
    return m_places[path];
  }

  /// Merges the record in under `path`; returns where it is stored.
  File const* Merge(File& record, fs::path const& path) {
    if (File const* known = FindKnown(path.native())) {
      Intersect(*known, record, m_root);
      return known;
    }
    record.path = path;
    const auto place = m_files.lower_bound(record);
    if (place != m_files.end() && !(record < *place)) {
      Intersect(*place, record, m_root);
      return &*place;
    }
    const auto stored = IsRatherMoved(record.lines) ? m_files.insert(place, std::move(record))
                                                    : m_files.insert(place, record);
    if (stored == m_files.end()) {  // No set does that; kept as a guard should the type change.
      throw std::runtime_error(std::format("Merge error for file '{}'.", Display(path, m_root)));
    }
    return &*stored;
  }

  /// A file of earlier reports, if the index has it. To make the index takes less time than to
  /// search the collection for every eighth file; a report that has far fewer is spared it.
  File const* FindKnown(std::string_view path) {
    if (m_index) {
      return m_index->Find(path);
    }
    if (++m_searches == m_known / 16) {
      m_index.emplace(m_files);
    }
    return nullptr;
  }

  FileSet& m_files;
  SourcePaths& m_paths;
  fs::path const& m_root;
  std::vector<File const*> m_places;  ///< By the numbers of the paths.
  std::size_t m_known;                ///< How many files there were before this report.
  std::size_t m_searches = 0;         ///< Of files that this report did not have before.
  std::optional<PathIndex> m_index;
};

}  // namespace

void MergeRawReport(FileSet& files, ReportReader& report, SourcePaths& paths, fs::path const& root,
                    std::vector<File const*>* inOrder) {
  RawMerge(files, paths, root).Merge(report, inOrder);
}

void MergeRecord(FileSet& files, File const& record, fs::path const& root) {
  if (const auto [stored, isNew] = files.insert(record); !isNew) {
    Intersect(*stored, record, root);
  }
}
