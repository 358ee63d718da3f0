#include "merge/files.h"

#include <format>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "merge/paths/weakly_canonical.h"
#include "merge/raw_merge.h"
#include "merge/reading/report_reader.h"
#include "merge/reading/structured_report_reader.h"
#include "merge/writing/files_to_json.h"
#include "merge/writing/structured_report_writer.h"

namespace {

namespace fs = std::filesystem;

void RequireRoot(fs::path const& root) {
  if (root.empty()) {
    throw std::runtime_error("Please specify the '--sourcetree-root' flag to merge raw reports.");
  }
}

std::runtime_error ParsingError(fs::path const& report) {
  return std::runtime_error(std::format("Parsing error for file '{}'.", report.string()));
}

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  if (std::error_code ignored; fs::is_regular_file(reportPath, ignored)) {
    ReportReader report(reportPath);
    Extract(report, isFirstReport, sourceTreeRoot);
  } else if (auto structured = ReadStructuredStream(reportPath)) {
    MergeStructured(std::move(*structured), isFirstReport);
  } else {
    // Of a pipe, the first try has taken the front, and the raw form gets what is left.
    RequireRoot(sourceTreeRoot);
    ReportReader report(reportPath);
    try {
      MergeRawReport(files, report, m_paths, sourceTreeRoot, nullptr);
    } catch (nlohmann::json::exception const&) {
      throw ParsingError(WeaklyCanonical(reportPath));
    }
  }
}

void Files::Extract(ReportReader& report, bool isFirst, fs::path const& root,
                    std::vector<File const*>* inOrder) {
  if (auto structured = report.ReadStructured()) {
    MergeStructured(std::move(*structured), isFirst);
    return;
  }
  RequireRoot(root);
  try {
    MergeRawReport(files, report, m_paths, root, inOrder);
  } catch (nlohmann::json::exception const&) {
    // The name that a shell gives to a pipe leads nowhere, and has no canonical form.
    std::error_code ignored;
    throw ParsingError(fs::is_fifo(report.Path(), ignored) ? report.Path()
                                                           : WeaklyCanonical(report.Path()));
  }
}

void Files::MergeRecords(std::vector<File const*> const& records, fs::path const& root) {
  for (File const* record : records) {
    MergeRecord(files, *record, root);
  }
}

void Files::KeepCommon(FileSet const& others) {
  std::erase_if(files, [&others](File const& file) {
    const auto other = others.find(file);
    if (other == others.end()) {
      return true;
    }
    file.Intersect(*other);
    return false;
  });
}

void Files::MergeStructured(FileSet&& report, bool isFirst) {
  if (isFirst) {
    files = std::move(report);
  } else {
    KeepCommon(report);
  }
}

void Files::DeleteEmpty() {
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  // The stream's own buffer is so small that a large report would take thousands of system calls.
  constexpr std::size_t size = std::size_t{64} * 1024;
  const auto buffer = std::make_unique_for_overwrite<char[]>(size);
  std::ofstream stream;
  stream.rdbuf()->pubsetbuf(buffer.get(), size);
  stream.open(resultPath);
  WriteStructuredReport(version, files, stream);
}

void to_json(nlohmann::json& j, Files const& files) {
  j["version"] = files.version;
  j["files"] = FilesToJson(files.files);
}
