#include "merge/files.h"

#include <format>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

#include "merge/input_file.h"
#include "merge/raw_record_reader.h"
#include "merge/report_json.h"
#include "merge/structured_report_writer.h"

namespace {

namespace fs = std::filesystem;
using FileSet = decltype(Files::files);

/// The records of a structured report, or nothing when the report is not one: whatever the JSON
/// library objects to makes it a raw report.
std::optional<FileSet> ReadStructuredReport(fs::path const& reportPath) {
  try {
    std::ifstream stream(reportPath);
    return nlohmann::json::parse(stream).get<Files>().files;
  } catch (nlohmann::json::exception const&) {
    return std::nullopt;
  } catch (std::ios_base::failure const&) {
    // Some standard libraries throw when a report cannot be read, a directory for one.
    return std::nullopt;
  }
}

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
  while (const auto text = reader.Next()) {
    auto record = nlohmann::json::parse(*text).get<File>();
    // A relative path is relative to the directory the tool runs in, not to the root.
    record.path =
        fs::weakly_canonical(record.path).lexically_relative(fs::weakly_canonical(sourceTreeRoot));
    MergeRawRecord(files, record, sourceTreeRoot);
  }
}

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  if (auto structured = ReadStructuredReport(reportPath)) {
    if (isFirstReport) {
      files = std::move(*structured);
    } else {
      KeepCommon(files, *structured);
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
        std::format("Parsing error for file '{}'.", fs::weakly_canonical(reportPath).string()));
  }
}

void Files::DeleteEmpty() {
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  std::ofstream stream(resultPath);
  WriteStructuredReport(*this, stream);
}
