#include "companion/reports/report_faults.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <format>
#include <istream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <system_error>

#include "files/last_error.h"
#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/plain_record.h"

namespace companion {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// What a file is that begins so; empty for what may be a report.
std::string_view FormatOf(std::string_view front) {
  constexpr std::size_t telling = 4096;
  front = front.substr(0, telling);
  const auto holds = [front](std::string_view text) {
    return front.find(text) != std::string_view::npos;
  };
  if (front.starts_with("\x1f\x8b")) {
    return "a gzip file";
  }
  if (front.starts_with("\xff\xfe") || front.starts_with("\xfe\xff")) {
    return "text in UTF-16";
  }
  const std::size_t begin = front.find_first_not_of("\xef\xbb\xbf \t\r\n");
  front.remove_prefix(std::min(begin, front.size()));
  if (front.starts_with('<')) {
    return "a web page";
  }
  if (!front.starts_with('{') || holds(R"("markers")")) {
    return {};
  }
  return holds(R"("warnings")")                    ? "a warnings report"
         : holds("sarif") && holds(R"("$schema")") ? "SARIF"
                                                   : "";
}

/// Where the record at the front stops being one, in bytes from the front of the report.
std::optional<std::uint64_t> MistakeInRecord(ReportWindow& window) {
  const std::uint64_t begin = window.Position();
  FramedRecord record(window);
  std::istream text(&record);
  try {
    static_cast<void>(json::parse(text).get<File>());
  } catch (json::parse_error const& error) {
    // The parser may have found the end of the record, which is not what is wrong.
    return record.Close() ? std::optional(std::min(begin + error.byte, window.Position()) - 1)
                          : std::nullopt;
  } catch (json::exception const&) {
    return begin;
  }
  static_cast<void>(record.Close());
  return std::nullopt;
}

std::optional<std::uint64_t> FindMistake(ReportWindow& window) {
  std::optional<std::uint64_t> mistake;
  File file;
  while (!mistake && window.SkipAny("\n")) {
    window.Mark();
    if (!ReadPlainRecord(window, file)) {
      window.Unmark();
      mistake = MistakeInRecord(window);
    }
  }
  return mistake;
}

/// The number of the line that holds the byte at the position.
std::uint64_t LineAt(fs::path const& report, std::uint64_t position) {
  ReportWindow window(report);
  std::uint64_t line = 1;
  while (window.ReadMore() && window.Position() <= position) {
    const std::string_view before = window.Rest().substr(0, position - window.Position());
    line += static_cast<std::uint64_t>(std::ranges::count(before, '\n'));
    window.Consume(window.Rest().size());
  }
  return line;
}

}  // namespace

Complaint WhyNotOpened(fs::path const& report) {
  std::error_code error;
  const fs::file_status status = fs::status(report, error);
  if (fs::is_directory(status)) {
    return "no marker report but a folder: " + report.string();
  }
  if (!fs::exists(status)) {
    return "no such report: " + report.string();
  }
  if (::faccessat(AT_FDCWD, report.c_str(), R_OK, AT_EACCESS) != 0) {
    return "cannot read the report " + report.string() + ": " + LastError().message();
  }
  return {};
}

Complaint WhyNotRead(ReportReader const& report) {
  return report.Failed() ? Complaint("cannot read the report to its end: " + report.Path().string())
                         : Complaint();
}

Complaint WhyNotWhole(ReportReader& report) {
  if (report.IsBlank()) {
    return "empty report: " + report.Path().string();
  }
  if (report.IsCutShort()) {
    return WhyNoReport(report.Path())
        .value_or("report cut short, or not to be checked: " + report.Path().string());
  }
  return {};
}

Complaint WhyNoReport(fs::path const& report) {
  if (std::error_code ignored; !fs::is_regular_file(report, ignored)) {
    return {};
  }
  ReportWindow window(report);
  static_cast<void>(window.ReadMore());
  if (const std::string_view kind = FormatOf(window.Rest()); !kind.empty()) {
    return std::format("no marker report but {}: {}", kind, report.string());
  }
  window.PassOverByteOrderMark();
  const auto mistake = FindMistake(window);
  if (!mistake || window.Failed()) {
    return {};
  }
  return std::format("no marker report from byte {}, line {} on: {}", *mistake + 1,
                     LineAt(report, *mistake), report.string());
}

}  // namespace companion
