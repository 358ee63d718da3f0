#include "tree/page_source.h"

#include <algorithm>
#include <format>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>

#include "cleaner/source_file.h"
#include "merge/hashing/sha1.h"
#include "tree/line_picker.h"
#include "tree/page_string.h"
#include "tree/picked_texts.h"
#include "window_size.h"

namespace tree {

namespace {

namespace fs = std::filesystem;
using Hunk = LinePicker::Hunk;

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

SourceState PickLines(fs::path const& path, std::string_view recordedHash, LinePicker& picker) {
  if (path.native().find('\0') != std::string::npos) {
    return SourceState::Missing;  // The system would take what stands before the NUL for the name.
  }
  SourceFile file(path);
  if (!file.IsOpen()) {
    std::error_code error;
    const bool isMissing = fs::status(path, error).type() == fs::file_type::not_found;
    return isMissing ? SourceState::Missing : SourceState::Unreadable;
  }
  SHA1 hash;
  if (!ReadThrough(file, hash, picker)) {
    return SourceState::Unreadable;
  }
  return hash.getHash() == recordedHash ? SourceState::AsAnalyzed : SourceState::Changed;
}

std::vector<Range> ShownPlaces(std::vector<LineVotes> const& lines,
                               std::vector<Hunk> const& hunks) {
  std::vector<Range> places;
  PickedTexts texts(hunks);
  for (LineVotes const& line : lines) {
    const std::string_view text = texts.Of(line.line);
    const std::size_t whole = ShownLength(text);
    const auto shown = [text, whole](std::uint64_t bytes) {
      return bytes < text.size() ? ShownLength(text.substr(0, bytes)) : whole;
    };
    for (Marker const& marker : line.markers) {
      places.push_back({shown(marker.offsets.begin), shown(marker.offsets.end)});
    }
  }
  return places;
}

std::string ToJson(std::vector<Hunk> const& hunks) {
  std::string json;
  for (Hunk const& hunk : hunks) {
    std::format_to(std::back_inserter(json), "{}{},", json.empty() ? "" : ",", hunk.first);
    AppendPageString(json, hunk.text);
  }
  return json;
}

}  // namespace

PageSource ReadPageSource(Reports const& reports, fs::path const& path, fs::path const& root,
                          std::uint32_t around) {
  PageSource source;
  source.lines = VotesOn(reports, path);
  if (source.lines.empty()) {
    return source;
  }
  std::vector<std::uint32_t> listed;
  std::ranges::transform(source.lines, std::back_inserter(listed), &LineVotes::line);
  LinePicker picker(listed, around);
  source.state = PickLines(root / path, RecordedHash(reports, path), picker);
  std::vector<Hunk> const none;
  auto const& hunks = source.state == SourceState::AsAnalyzed ? picker.Hunks() : none;
  source.places = ShownPlaces(source.lines, hunks);
  source.hunks = ToJson(hunks);
  return source;
}

}  // namespace tree
