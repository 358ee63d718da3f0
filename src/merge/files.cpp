#include "merge/files.h"

#include <format>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "merge/raw_record_reader.h"
#include "merge/structured_report_reader.h"
#include "merge/structured_report_writer.h"
#include "merge/weakly_canonical.h"

namespace {

namespace fs = std::filesystem;
using FileSet = decltype(Files::files);

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

/// Merges one raw report: adds its records, or intersects them with those that have their path.
class RawMerge {
 public:
  RawMerge(FileSet& files, SourcePaths& paths, fs::path const& sourceTreeRoot)
      : m_files(files), m_paths(paths), m_root(sourceTreeRoot) {}

  void Merge(RawRecordReader& reader) {
    File record;
    while (reader.Next(record)) {
      Merge(record);
    }
  }

 private:
  void Merge(File& record) {
    const auto [stored, isNew] = Find(record);
    if (isNew) {
      return;
    }
    if (stored->hash != record.hash) {
      record.path = stored->path;
      throw std::runtime_error(std::format("Hash mismatch while merging reports for file '{}'.",
                                           record.PathToString(m_root)));
    }
    stored->Intersect(record);
  }

  /// The stored record for the path as written, which is looked up only once, and whether it is
  /// this very record, just stored.
  std::pair<FileSet::iterator, bool> Find(File& record) {
    const auto [known, isUnknown] = m_stored.try_emplace(record.path.native(), m_files.end());
    if (!isUnknown) {
      return {known->second, false};
    }
    record.path = m_paths.Relative(record.path, m_root);
    const auto [stored, isNew] = m_files.insert(record);
    if (stored == m_files.end()) {  // Cannot happen in a set; a guard against another container.
      throw std::runtime_error(
          std::format("Merge error for file '{}'.", record.PathToString(m_root)));
    }
    known->second = stored;
    return {stored, isNew};
  }

  FileSet& m_files;
  SourcePaths& m_paths;
  fs::path const& m_root;
  std::unordered_map<std::string, FileSet::iterator> m_stored;
};

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  RawRecordReader reader(reportPath);
  if (!reader.IsRawForCertain()) {
    if (auto structured = ReadStructuredReport(reportPath)) {
      if (isFirstReport) {
        files = std::move(structured->files);
      } else {
        KeepCommon(files, structured->files);
      }
      return;
    }
  }
  if (sourceTreeRoot.empty()) {
    throw std::runtime_error("Please specify the '--sourcetree-root' flag to merge raw reports.");
  }
  try {
    RawMerge(files, m_paths, sourceTreeRoot).Merge(reader);
  } catch (nlohmann::json::exception const&) {
    throw std::runtime_error(
        std::format("Parsing error for file '{}'.", WeaklyCanonical(reportPath).string()));
  }
}

void Files::DeleteEmpty() {
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  std::vector<char> buffer(std::size_t{64} * 1024);  // The default takes many more calls.
  std::ofstream stream;
  stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  stream.open(resultPath);
  WriteStructuredReport(*this, stream);
}
