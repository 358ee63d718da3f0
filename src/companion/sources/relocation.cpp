#include "companion/sources/relocation.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "companion/sources/line_end_forms.h"
#include "companion/sources/source_check.h"
#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

bool IsSource(fs::path const& path) {
  std::error_code ignored;
  return path.native().find('\0') == std::string::npos && fs::is_regular_file(path, ignored);
}

}  // namespace

Relocation::Source const& Relocation::Find(File const& record) {
  const auto [known, isNew] = m_sources.try_emplace(record.path.native());
  Source& source = known->second;
  if (source.complaint ||
      std::ranges::find(source.analyzed, record.hash) != source.analyzed.end()) {
    return source;
  }
  source.complaint = isNew ? Locate(record, source) : std::nullopt;
  if (!source.complaint) {
    source.complaint = Compare(record.hash, source);
  }
  if (source.complaint) {
    m_complaints.push_back(*source.complaint);
  }
  return source;
}

Complaint Relocation::Locate(File const& record, Source& source) {
  auto below = m_from.Below(record.path.native());
  if (!below) {
    m_others.Add(record.path.native());
    return "source outside of --from: " + record.path.native();
  }
  m_hasFoundAny = true;
  source.path = std::move(*below);
  const fs::path path = m_root / source.path;
  if (IsSource(path)) {
    return {};
  }
  const std::vector<fs::path> found = m_names.Find(source.path);
  if (found.empty()) {
    return WhyNotOpen(path).text;
  }
  if (found.size() > 1) {
    return "several sources have that name in another case: " + path.string();
  }
  source.path = found.front();
  return {};
}

Complaint Relocation::Compare(std::string const& hash, Source& source) const {
  const fs::path path = m_root / source.path;
  SourceFile file(path);
  const auto content = file.IsOpen() ? file.ReadWhole() : std::nullopt;
  if (!content) {
    return WhyNotOpen(path).text;
  }
  source.hash = HashOf(*content);
  if (source.hash != hash && !IsHashButForLineEnds(hash, *content)) {
    return NotAsAnalyzed(path);
  }
  source.analyzed.push_back(hash);
  return {};
}

}  // namespace companion
