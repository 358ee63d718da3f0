#include "tree/listed_source.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "cleaner/source_file.h"
#include "merge/hashing/sha1.h"
#include "window_size.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t WindowSize = WindowBytes(std::size_t{128} * 1024);

/// The hash that a cleanup asks for or, where nothing is agreed, that of the first report.
std::string RecordedHash(Reports const& reports, fs::path const& path) {
  File const* file = FindFile(reports.agreed, path);
  for (auto report = reports.each.begin(); file == nullptr && report != reports.each.end();) {
    file = FindFile(report++->files, path);
  }
  return file == nullptr ? std::string() : file->hash;
}

/// Reads the file once, for its hash and its lines. False when it cannot be read in full.
bool ReadThrough(SourceFile& file, SHA1& hash, LinePicker& picker) {
  std::uint64_t left = file.Size();
  const auto windowSize = static_cast<std::size_t>(std::min<std::uint64_t>(left, WindowSize));
  const auto window = std::make_unique_for_overwrite<char[]>(windowSize);
  while (left > 0) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left, windowSize));
    if (!file.Read(std::span(window.get(), size))) {
      return false;
    }
    hash.add(window.get(), size);
    picker.Add({window.get(), size});
    left -= size;
  }
  return true;
}

SourceCondition PickLines(fs::path const& path, std::string_view recordedHash, LinePicker& picker) {
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
  SHA1 hash;
  if (!ReadThrough(file, hash, picker)) {
    return SourceCondition::Unreadable;
  }
  return hash.getHash() == recordedHash ? SourceCondition::AsAnalyzed : SourceCondition::Changed;
}

}  // namespace

ListedSource ReadListedSource(Reports const& reports, fs::path const& path, fs::path const& root,
                              std::span<std::uint32_t const> listed, std::uint32_t around) {
  LinePicker picker(listed, around);
  const SourceCondition condition = PickLines(root / path, RecordedHash(reports, path), picker);
  return {condition, picker.Hunks()};
}

}  // namespace tree
