#include "merge/files.h"

#include <format>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "merge/paths/weakly_canonical.h"
#include "merge/raw_merge.h"
#include "merge/reading/raw_record_reader.h"
#include "merge/reading/structured_report_reader.h"
#include "merge/writing/files_to_json.h"
#include "merge/writing/structured_report_writer.h"

namespace {

namespace fs = std::filesystem;

/// Takes away the files that `others` does not have, and of the rest the lines that it does not
/// have. Their hashes are not compared: only raw reports are refused for that.
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

}  // namespace

void Files::ExtractFromReport(fs::path const& reportPath, bool isFirstReport,
                              fs::path const& sourceTreeRoot) {
  RawRecordReader reader(reportPath);
  if (!reader.IsRawForCertain()) {
    if (auto structured = ReadStructuredReport(reportPath)) {
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
    MergeRawReport(files, reader, m_paths, sourceTreeRoot);
  } catch (nlohmann::json::exception const&) {
    throw std::runtime_error(
        std::format("Parsing error for file '{}'.", WeaklyCanonical(reportPath).string()));
  }
  m_hasUnreadReport |= reader.Failed();
}

void Files::DeleteEmpty() {
  std::erase_if(files, [](File const& file) { return file.lines.empty(); });
}

void Files::SaveStructuredReport(fs::path const& resultPath) {
  // The stream's own buffer is so small that a large report would take thousands of system calls.
  std::vector<char> buffer(std::size_t{64} * 1024);
  std::ofstream stream;
  stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  stream.open(resultPath);
  WriteStructuredReport(version, files, stream);
}

void to_json(nlohmann::json& j, Files const& files) {
  j = FilesToJson(files.version, files.files);
}
