#include "merge/raw_merge.h"

#include <format>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

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

/// Lives for one report: it remembers iterators into the collection, which anyone may change before
/// the next report is read.
class RawMerge {
 public:
  RawMerge(FileSet& files, SourcePaths& paths, fs::path const& root)
      : m_files(files), m_paths(paths), m_root(root) {}

  void Merge(RawRecordReader& report) {
    File record;
    while (report.Next(record)) {
      auto const& [number, relative] = m_paths.Relative(record.path, m_root);
      if (std::optional<Place>& place = PlaceOf(number)) {
        Intersect(**place, record);
        report.PassOverRepeats();  // More repeats will follow, and change nothing.
      } else {
        place = Add(record, relative);
      }
    }
  }

 private:
  using Place = FileSet::const_iterator;

  /// Where the record of the path stands, if this report had it before.
  std::optional<Place>& PlaceOf(std::size_t path) {
    if (path >= m_places.size()) {
      m_places.resize(path + 1);
    }
    return m_places[path];
  }

  /// Merges the record in under `path`; returns where it is stored.
  Place Add(File& record, fs::path const& path) {
    record.path = path;
    const auto place = m_files.lower_bound(record);
    if (place != m_files.end() && !(record < *place)) {
      Intersect(*place, record);
      return place;
    }
    const auto stored = IsRatherMoved(record.lines) ? m_files.insert(place, std::move(record))
                                                    : m_files.insert(place, record);
    if (stored == m_files.end()) {  // No set does that; kept as a guard should the type change.
      throw std::runtime_error(std::format("Merge error for file '{}'.", Display(path)));
    }
    return stored;
  }

  void Intersect(File const& stored, File const& record) const {
    if (stored.hash != record.hash) {
      throw std::runtime_error(
          std::format("Hash mismatch while merging reports for file '{}'.", Display(stored.path)));
    }
    stored.Intersect(record);
  }

  [[nodiscard]] std::string Display(fs::path const& path) const {
    File file;
    file.path = path;
    return file.PathToString(m_root);
  }

  FileSet& m_files;
  SourcePaths& m_paths;
  fs::path const& m_root;
  std::vector<std::optional<Place>> m_places;  ///< By the numbers of the paths.
};

}  // namespace

void MergeRawReport(FileSet& files, RawRecordReader& report, SourcePaths& paths,
                    fs::path const& root) {
  RawMerge(files, paths, root).Merge(report);
}
