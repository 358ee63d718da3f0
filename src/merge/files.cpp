#include "merge/files.h"

#include <format>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "merge/input_file.h"
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

/// Adds one record of a raw report, or intersects it with the record that has its path.
void MergeRawRecord(FileSet& files, File const& record, fs::path const& sourceTreeRoot) {
  if (files.insert(record).second) {
    return;
  }
  const auto stored = files.find(record);
  if (stored == files.end()) {  // Cannot happen in a set; a guard against a change of container.
    throw std::runtime_error(
        std::format("Merge error for file '{}'.", record.PathToString(sourceTreeRoot)));
  }
  if (stored->hash != record.hash) {
    throw std::runtime_error(std::format("Hash mismatch while merging reports for file '{}'.",
                                         record.PathToString(sourceTreeRoot)));
  }
  stored->Intersect(record);
}

void MergeRawReport(FileSet& files, fs::path const& reportPath, fs::path const& sourceTreeRoot) {
  InputFile input(reportPath);
  RawRecordReader reader(input);
  File record;
  while (reader.Next(record)) {
    // A relative path is relative to the directory the tool runs in, not to the root.
    record.path = WeaklyCanonical(record.path).lexically_relative(WeaklyCanonical(sourceTreeRoot));
    MergeRawRecord(files, record, sourceTreeRoot);
  }
}

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  if (auto structured = ReadStructuredReport(reportPath)) {
    if (isFirstReport) {
      files = std::move(structured->files);
    } else {
      KeepCommon(files, structured->files);
    }
    return;
  }
  if (sourceTreeRoot.empty()) {
    throw std::runtime_error("Please specify the '--sourcetree-root' flag to merge raw reports.");
  }
  try {
    MergeRawReport(files, reportPath, sourceTreeRoot);
  } catch (nlohmann::json::exception const&) {
    throw std::runtime_error(
        std::format("Parsing error for file '{}'.", WeaklyCanonical(reportPath).string()));
  }
}

void Files::DeleteEmpty() {
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  std::ofstream stream(resultPath);
  WriteStructuredReport(*this, stream);
}
