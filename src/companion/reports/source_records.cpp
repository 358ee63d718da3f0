#include "companion/reports/source_records.h"

#include <map>

#include "merge/paths/path_order.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

struct IsBefore {
  bool operator()(fs::path const* one, fs::path const* other) const {
    return ComparePaths(*one, *other) < 0;
  }
};

}  // namespace

std::vector<SourceRecords> RecordsBySource(Reports const& reports) {
  std::map<fs::path const*, SourceRecords, IsBefore> sources;
  for (std::size_t report = 0; report < reports.each.size(); ++report) {
    for (File const& file : reports.each[report].files.files) {
      const auto place = sources.try_emplace(&file.path, SourceRecords{&file.path, {}}).first;
      place->second.all.emplace_back(report, &file);
    }
  }
  std::vector<SourceRecords> records;
  records.reserve(sources.size());
  for (auto& [path, source] : sources) {
    records.push_back(std::move(source));
  }
  return records;
}

}  // namespace companion
