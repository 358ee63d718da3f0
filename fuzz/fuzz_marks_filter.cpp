// Taking markers out of a source.
//
// Input: a source, and behind it, read from the end, the lines to clean and their markers: mostly
// small numbers, so that they meet the source, and in no particular order.
//
// What must hold:
// - the source gets the very bytes that the slow filter gives, one byte after the other;
// - the backup has the bytes that the source had, and no temporary file stays;
// - with another hash, nothing is touched;
// - a preview tells of the same change.

#include <stdlib.h>

#include <cstdint>
#include <stdexcept>

#include "cleaner/marks_filter.h"
#include "input_bytes.h"
#include "merge/hashing/sha1.h"
#include "reference_filter.h"
#include "require.h"
#include "scratch_directory.h"

namespace {

std::uint64_t Number(InputBytes& data) {
  const auto number = data.Take<std::uint8_t>();
  return number < 240 ? number % 60 : data.Take<std::uint64_t>();
}

std::vector<Line> ConsumeLines(InputBytes& data) {
  std::vector<Line> lines(1 + data.Take<std::uint8_t>() % 8);
  std::uint64_t number = 0;
  for (Line& line : lines) {
    number += Number(data) % 8;
    line.line = data.Take<std::uint8_t>() == 0 ? data.Take<std::uint32_t>()
                                               : static_cast<std::uint32_t>(number);
    line.markers.resize(data.Take<std::uint8_t>() % 5);
    std::uint64_t position = 0;
    for (Marker& marker : line.markers) {
      position += Number(data);
      marker.offsets.begin = position;
      position += Number(data);
      marker.offsets.end = position;
    }
  }
  return lines;
}

/// What a cleanup would make is what it makes, and each dropped piece is told once, in order.
void CheckPreview(File const& file, std::filesystem::path const& root, bool hasChanged,
                  std::string const& text) {
  if (hasChanged) {
    return;
  }
  const PlannedCut cut = MarksFilter(file).Preview(root);
  std::string after;
  std::uint64_t kept = 0;
  for (ByteRange const& range : cut.dropped) {
    Require(range.begin < range.end && (range.begin > kept || kept == 0), "the ranges ascend");
    after += text.substr(kept, range.begin - kept);
    kept = range.end;
  }
  Require(kept <= text.size(), "the ranges lie in the source");
  after += text.substr(kept);
  Require(cut.before == text && after == ReferenceFilter(text, file.lines), "the preview");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  namespace fs = std::filesystem;
  static const ScratchDirectory scratch;
  [[maybe_unused]] static const int isSet = ::setenv("TMPDIR", scratch.Path().c_str(), 1);

  InputBytes data(bytes, size);
  File file;
  file.path = "source";
  file.lines = ConsumeLines(data);
  const bool hasChanged = data.Take<std::uint8_t>() == 0;
  const std::string text = data.TakeRest();
  file.hash = HashOf(hasChanged ? text + "x" : text);

  const fs::path backup = scratch.Path() / "sourcetemp_qln_facleaner";
  fs::remove(backup);
  scratch.Write("source", text);
  CheckPreview(file, scratch.Path(), hasChanged, text);
  bool isRefused = false;
  try {
    MarksFilter(file).SaveFilteredFile(scratch.Path());
  } catch (std::runtime_error const& error) {
    isRefused =
        error.what() == "Hash mismatch for file '" + (scratch.Path() / "source").native() + "'.";
    Require(isRefused, "the only failure is the hash");
  }
  Require(isRefused == hasChanged, "a changed source, and no other, is refused");
  Require(!fs::exists(scratch.Path() / "qln_fp_cleaner/source"), "no temporary file stays");
  Require(fs::exists(backup) != isRefused, "a cleaned source, and no other, has a backup");
  Require(isRefused || scratch.Read(backup.filename().native()) == text, "the backup");
  Require(scratch.Read("source") == (isRefused ? text : ReferenceFilter(text, file.lines)),
          "the source");
  return 0;
}
