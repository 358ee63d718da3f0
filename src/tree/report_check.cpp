#include "tree/report_check.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

#include "merge/reading/input_file.h"
#include "merge/reading/structured_report_reader.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

/// What the bytes of a report tell before it is read.
struct Shape {
  bool isBlank = true;
  std::ptrdiff_t openBraces = 0;  ///< How many more than are closed.
  bool isReadable = true;
};

Shape ShapeOf(fs::path const& report) {
  Shape shape;
  std::vector<char> bytes(std::size_t{256} * 1024);
  InputFile file(report);
  while (const std::size_t size = file.Read(bytes)) {
    const std::string_view text(bytes.data(), size);
    shape.isBlank &= text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
    shape.openBraces += std::ranges::count(text, '{') - std::ranges::count(text, '}');
  }
  shape.isReadable = !file.Failed();
  return shape;
}

/// Whole records are balanced, and one that is cut is not. In a structured report, and in no other
/// that can be read, names may hold braces.
bool BreaksOff(Shape const& shape, fs::path const& report) {
  return shape.openBraces != 0 && !ReadStructuredReport(report);
}

/// Empty when the report is whole; `files` gets what could be read.
std::string WhatIsWrong(fs::path const& report, fs::path const& root, Files& files) {
  try {
    RefuseIrregular(report);
    const Shape shape = ShapeOf(report);
    if (!shape.isReadable) {
      return "cannot read the report to its end: " + report.string();
    }
    if (shape.isBlank) {
      return "empty report: " + report.string();
    }
    ExtractWhole(files, report, true, root);
    return BreaksOff(shape, report) ? "report cut short, or not to be checked: " + report.string()
                                    : std::string();
  } catch (std::exception const& error) {
    return error.what();
  }
}

}  // namespace

CheckedReports CheckReports(std::vector<fs::path> const& paths, fs::path const& root,
                            Console& console) {
  CheckedReports checked;
  const UnchangedReports unchanged(paths);
  for (fs::path const& path : paths) {
    Report& report = checked.reports.each.emplace_back(path);
    if (const std::string wrong = WhatIsWrong(path, root, report.files); !wrong.empty()) {
      console.Complain(wrong);
      checked.areWhole = false;
    }
  }
  if (checked.areWhole) {
    try {
      checked.reports.agreed = ReadAgreed(paths, root);
      unchanged.Confirm();
    } catch (std::exception const& error) {  // Reports of one source in different states.
      console.Complain(error.what());
      checked.areWhole = false;
    }
  }
  return checked;
}

}  // namespace tree
