// Reading, merging and writing marker reports.
//
// Input: a byte that chooses the source-tree root, then one report; with its highest bit set, two
// reports, each with its root, of which the first ends at a byte 0xFF. They are merged in this
// order.
//
// What must hold:
// - counting braces through a window cuts the records that it cuts in the plain text;
// - what is read and merged, and the error it ends with, is what the plain ways give: the JSON
//   library for every record, canonical paths from the standard library, searches in order;
// - reading each report by itself out of a pipe, and merging it from memory, gives the same;
// - a report is told to be blank, or cut short, as a look at all of its bytes tells;
// - the report is written in the bytes of the library's dump;
// - reading that back gives the same files.
//
// It works in a directory of its own, so paths on its command line have to be absolute.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <format>
#include <iterator>
#include <set>
#include <sstream>
#include <utility>

#include "memory_file.h"
#include "merge/files.h"
#include "merge/paths/weakly_canonical.h"
#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/report_reader.h"
#include "merge/writing/structured_report_writer.h"
#include "require.h"
#include "scratch_directory.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct PlainOrder {
  bool operator()(File const& left, File const& right) const { return left.path < right.path; }
};
using PlainFiles = std::set<File, PlainOrder>;

std::vector<std::string_view> Frame(std::string_view text) {
  std::vector<std::string_view> records;
  for (std::size_t begin = 0; begin < text.size(); ++begin) {
    if (text[begin] == '\n') {
      continue;
    }
    std::size_t end = begin;
    int depth = 0;
    do {
      depth += text[end] == '{' ? 1 : text[end] == '}' ? -1 : 0;
    } while (++end < text.size() && depth != 0);
    if (depth != 0) {
      break;
    }
    records.push_back(text.substr(begin, end - begin));
    begin = end - 1;
  }
  return records;
}

void CheckFraming(std::string_view text, fs::path const& path) {
  ReportWindow window(path);
  for (const std::string_view expected : Frame(text)) {
    Require(window.SkipAny("\n"), "the framing finds as many records");
    FramedRecord record(window);
    const std::string found(std::istreambuf_iterator<char>(&record), {});
    Require(found == expected && record.Close(), "the framing finds the same record");
  }
  Require(!window.SkipAny("\n") || !FramedRecord(window).Close(), "the framing ends there");
}

void KeepCommonLines(File const& file, File const& other) {
  std::erase_if(file.lines,
                [&](Line const& line) { return !std::ranges::count(other.lines, line); });
}

void MergePlainly(PlainFiles& files, std::string_view text, fs::path const& path, bool isFirst,
                  fs::path const& root) {
  try {
    const json report = json::parse(text);
    static_cast<void>(FilesFromJson(report));
    PlainFiles others;
    for (json const& record : report["files"]) {
      others.insert(record.get<File>());
    }
    if (isFirst) {
      files = std::move(others);
      return;
    }
    std::erase_if(files, [&](File const& file) { return !others.contains(file); });
    for (File const& file : files) {
      KeepCommonLines(file, *others.find(file));
    }
    return;
  } catch (json::exception const&) {  // Then it is raw.
  }
  if (root.empty()) {
    throw std::runtime_error("Please specify the '--sourcetree-root' flag to merge raw reports.");
  }
  for (const std::string_view record : Frame(text)) {
    File file;
    try {
      json::parse(record).get_to(file);
    } catch (json::exception const&) {
      throw std::runtime_error(
          std::format("Parsing error for file '{}'.", WeaklyCanonical(path).string()));
    }
    file.path = WeaklyCanonical(file.path).lexically_relative(WeaklyCanonical(root));
    const auto [stored, isNew] = files.insert(file);
    if (!isNew && stored->hash != file.hash) {
      throw std::runtime_error(std::format("Hash mismatch while merging reports for file '{}'.",
                                           file.PathToString(root)));
    }
    KeepCommonLines(*stored, file);
  }
}

template <typename Action>
std::string ErrorOf(Action action) {
  try {
    action();
    return {};
  } catch (std::exception const& error) {
    return error.what();
  }
}

/// False when either step throws.
bool MergeFromMemory(Files& files, std::string_view text, bool isFirst, fs::path const& root) {
  int ends[2];
  Require(::pipe(ends) == 0 && ::write(ends[1], text.data(), text.size()) == std::ssize(text),
          "the report fits into a pipe");
  ::close(ends[1]);
  ReportReader report(std::format("/dev/fd/{}", ends[0]));
  ::close(ends[0]);
  Files single;
  std::vector<File const*> records;
  const bool isRead = ErrorOf([&] { single.Extract(report, true, root, &records); }).empty();
  const bool isBalanced = std::ranges::count(text, '{') == std::ranges::count(text, '}');
  Require(!isRead || report.IsStructured() || report.IsCutShort() != isBalanced,
          "a raw report that breaks off is told");
  Require(report.IsBlank() == (text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos),
          "a blank report is told");
  if (isRead && report.IsStructured()) {
    if (isFirst) {
      files.files.swap(single.files);
    } else {
      files.KeepCommon(single.files);
    }
  }
  return isRead && ErrorOf([&] { files.MergeRecords(records, root); }).empty();
}

bool Same(File const& left, File const& right) {
  return left.path.native() == right.path.native() && left.hash == right.hash &&
         left.lines == right.lines;
}

void CheckWriting(Files const& files, MemoryFile& report) {
  std::ostringstream written;
  WriteStructuredReport(files.version, files.files, written);
  json tree = {{"files", nullptr}, {"kept", true}};
  to_json(tree, files);
  Require(tree.erase("kept") == 1, "keys that are not the report's stay");
  Require(written.view() == tree.dump(2), "the report is written as the library writes it");
  // A path from the file system's root on is shown as one below the source tree's.
  if (std::ranges::any_of(files.files, [](File const& file) {
        return file.path.native().starts_with('/') || file.path.native().starts_with('\\');
      })) {
    return;
  }
  Files again;
  report.Write(written.view());
  again.ExtractFromReport(report.Path(), true, {});
  Require(std::ranges::equal(again.files, files.files, Same), "what is written reads back");
}

/// A source tree with what makes paths hard.
void WorkInTree() {
  static const ScratchDirectory scratch;
  [[maybe_unused]] static const bool isFilled = [] {
    fs::create_directories(scratch.Path() / "root/d/e");
    fs::create_symlink("d", scratch.Path() / "root/link");
    fs::create_symlink("..", scratch.Path() / "root/up");
    fs::create_symlink("loop", scratch.Path() / "root/loop");
    fs::create_symlink("none", scratch.Path() / "root/dangling");
    scratch.Write("root/a", "");
    fs::current_path(scratch.Path());
    return true;
  }();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  WorkInTree();
  static MemoryFile report;
  constexpr char const* roots[] = {"root", "root/link/",   "",          ".",
                                   "/",    "none/../root", "root/loop", "root/a"};
  fs::path root = roots[*data % std::size(roots)];
  std::string_view rest(reinterpret_cast<char const*>(data) + 1, size - 1);
  const std::string_view first = *data < 0x80 ? rest : rest.substr(0, rest.find('\xff'));
  rest.remove_prefix(std::min(first.size() + 1, rest.size()));

  Files files;
  Files fromMemory;
  PlainFiles expected;
  bool isFirst = true;
  for (const std::string_view text : {first, rest}) {
    report.Write(text);
    const fs::path path = report.Path();
    CheckFraming(text, path);
    const std::string error = ErrorOf([&] { files.ExtractFromReport(path, isFirst, root); });
    const std::string expectedError =
        ErrorOf([&] { MergePlainly(expected, text, path, isFirst, root); });
    Require(error == expectedError, "both ways end with the same error");
    Require(std::ranges::equal(files.files, expected, Same), "both ways find the same files");
    const bool isMerged = MergeFromMemory(fromMemory, text, isFirst, root);
    Require(isMerged == error.empty(), "a report by itself is refused if it is refused at once");
    Require(!isMerged || std::ranges::equal(fromMemory.files, expected, Same),
            "what is merged from memory is the same");
    if (*data < 0x80 || !error.empty()) {
      break;
    }
    isFirst = false;
    root = roots[*data / 8 % std::size(roots)];
  }
  CheckWriting(files, report);
  return 0;
}
