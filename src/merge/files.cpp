#include "merge/files.h"

#include <format>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "merge/paths/weakly_canonical.h"
#include "merge/reading/raw_record_reader.h"
#include "merge/reading/structured_report_reader.h"
#include "merge/writing/files_to_json.h"
#include "merge/writing/structured_report_writer.h"

namespace {

namespace fs = std::filesystem;

void KeepCommon(FileSet& files, FileSet const& others) {
  std::erase_if(files, [&others](File const& file) {
    const auto other = others.find(file);
    if (other == others.end()) {
      return true;
    }
    file.Intersect(*other);
    return false;
  });
}

/// A copy lies together in memory, has no room to spare, and leaves the record its own for the next
/// one to be read. Only many lines are better moved, unless a longer record left them much room.
bool IsRatherMoved(std::vector<Line> const& lines) {
  constexpr std::size_t manyLines = 1000;
  return lines.size() >= manyLines && lines.capacity() <= 2 * lines.size();
}

/// Merges one raw report: adds its records, or intersects them with those that have their path.
class RawMerge {
 public:
  RawMerge(FileSet& files, SourcePaths& paths, StoredRecords& stored, fs::path const& root)
      : m_files(files), m_paths(paths), m_stored(stored), m_root(root) {}

  void Merge(RawRecordReader& reader) {
    const std::uint32_t report = m_stored.BeginReport();
    File record;
    while (reader.Next(record)) {
      auto const& [number, path] = m_paths.Relative(record.path, m_root);
      auto& [place, lastReport] = m_stored[number];
      if (lastReport == 0) {
        place = Add(record, path);
      } else {
        Intersect(*place, record);
        if (lastReport == report) {
          reader.PassOverRepeats();
        }
      }
      lastReport = report;
    }
  }

 private:
  /// Merges the record in under `path`; returns where it is stored.
  StoredRecords::Place Add(File& record, fs::path const& path) {
    record.path = path;
    const auto place = m_files.lower_bound(record);
    if (place != m_files.end() && !(record < *place)) {
      Intersect(*place, record);
      return place;
    }
    const auto stored = IsRatherMoved(record.lines) ? m_files.insert(place, std::move(record))
                                                    : m_files.insert(place, record);
    if (stored == m_files.end()) {  // Cannot happen in a set; a guard against another container.
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
  StoredRecords& m_stored;
  fs::path const& m_root;
};

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  RawRecordReader reader(reportPath);
  if (!reader.IsRawForCertain()) {
    if (auto structured = ReadStructuredReport(reportPath)) {
      m_stored.Forget();
      if (isFirstReport) {
        files = std::move(*structured);
      } else {
        KeepCommon(files, *structured);
      }
      return;
    }
  }
  if (sourceTreeRoot.empty()) {
    throw std::runtime_error("Please specify the '--sourcetree-root' flag to merge raw reports.");
  }
  try {
    RawMerge(files, m_paths, m_stored, sourceTreeRoot).Merge(reader);
  } catch (nlohmann::json::exception const&) {
    throw std::runtime_error(
        std::format("Parsing error for file '{}'.", WeaklyCanonical(reportPath).string()));
  }
}

void Files::DeleteEmpty() {
  m_stored.Forget();
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  std::vector<char> buffer(std::size_t{64} * 1024);  // The default takes many more calls.
  std::ofstream stream;
  stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  stream.open(resultPath);
  WriteStructuredReport(version, files, stream);
}

void to_json(nlohmann::json& j, Files const& files) {
  j = FilesToJson(files.version, files.files);
}
