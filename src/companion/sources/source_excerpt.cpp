#include "companion/sources/source_excerpt.h"

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

/// The hash that a cleanup asks for or, where nothing is agreed, that of the first report.
std::string RecordedHash(Reports const& reports, fs::path const& path) {
  File const* file = FindFile(reports.agreed, path);
  for (auto report = reports.each.begin(); file == nullptr && report != reports.each.end();) {
    file = FindFile(report++->files, path);
  }
  return file == nullptr ? std::string() : file->hash;
}

SourceCondition ConditionOf(fs::path const& path, std::optional<std::string>& content) {
  if (path.native().find('\0') != std::string::npos) {
    // The system would take what stands before the NUL for the name.
    return SourceCondition::Missing;
  }
  SourceFile file(path);
  if (!file.IsOpen()) {
    std::error_code error;
    const bool isMissing = fs::status(path, error).type() == fs::file_type::not_found;
    return isMissing ? SourceCondition::Missing : SourceCondition::Unreadable;
  }
  content = file.ReadWhole();
  return content ? SourceCondition::AsAnalyzed : SourceCondition::Unreadable;
}

}  // namespace

SourceExcerpt ReadExcerpt(Reports const& reports, fs::path const& path, fs::path const& root,
                          std::span<std::uint32_t const> listed, LinePicker::Around around,
                          std::size_t mostOfLine) {
  std::optional<std::string> content;
  SourceExcerpt excerpt{.condition = ConditionOf(root / path, content), .hunks = {}, .unsafe = {}};
  if (!content) {
    return excerpt;
  }
  LinePicker picker(listed, around, mostOfLine);
  picker.Add(*content);
  excerpt.hunks = picker.Hunks();
  if (HashOf(*content) != RecordedHash(reports, path)) {
    excerpt.condition = SourceCondition::Changed;
  } else if (File const* const agreed = FindFile(reports.agreed, path)) {
    excerpt.unsafe = UnsafeLines(agreed->lines, *content);
  }
  return excerpt;
}

}  // namespace companion
