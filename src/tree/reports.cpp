#include "tree/reports.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "merge/paths/path_order.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

struct PathLess {
  bool operator()(fs::path const* left, fs::path const* right) const {
    return ComparePaths(*left, *right) < 0;
  }
};

/// The merge itself takes such a report for one that says nothing.
void RefuseUnreadable(fs::path const& report) {
  std::error_code error;
  const fs::file_status status = fs::status(report, error);
  if (!fs::exists(status) || fs::is_directory(status)) {
    throw std::runtime_error("no such report: " + report.string());
  }
  if (::faccessat(AT_FDCWD, report.c_str(), R_OK, AT_EACCESS) != 0) {
    const std::error_code reason(errno, std::system_category());
    throw std::runtime_error("cannot read the report " + report.string() + ": " + reason.message());
  }
}

}  // namespace

void RefuseIrregular(fs::path const& report) {
  RefuseUnreadable(report);
  if (!fs::is_regular_file(report)) {
    throw std::runtime_error("report is no regular file, and may be readable only once: " +
                             report.string());
  }
}

Reports ReadReports(std::vector<fs::path> const& paths, fs::path const& root) {
  Reports reports;
  for (fs::path const& path : paths) {
    RefuseIrregular(path);
    Report& report = reports.each.emplace_back(path);
    report.files.ExtractFromReport(path, true, root);
    const std::size_t before = reports.agreed.files.size();
    reports.agreed.ExtractFromReport(path, reports.each.size() == 1, root);
    report.isRestricting = reports.agreed.files.size() < before;
  }
  reports.agreed.DeleteEmpty();
  return reports;
}

Files ReadAgreed(std::vector<fs::path> const& paths, fs::path const& root) {
  Files agreed;
  bool isFirst = true;
  for (fs::path const& path : paths) {
    RefuseUnreadable(path);
    agreed.ExtractFromReport(path, isFirst, root);
    isFirst = false;
  }
  agreed.DeleteEmpty();
  return agreed;
}

std::vector<fs::path> NamedSources(Reports const& reports) {
  std::set<fs::path const*, PathLess> named;
  for (Report const& report : reports.each) {
    for (File const& file : report.files.files) {
      named.insert(named.end(), &file.path);
    }
  }
  std::vector<fs::path> sources;
  sources.reserve(named.size());
  for (fs::path const* path : named) {
    sources.push_back(*path);
  }
  return sources;
}

File const* FindFile(Files const& files, fs::path const& path) {
  File key;
  key.path = path;
  const auto found = files.files.find(key);
  return found == files.files.end() ? nullptr : &*found;
}

std::size_t CountMarkers(File const& file) {
  std::size_t count = 0;
  for (Line const& line : file.lines) {
    count += line.markers.size();
  }
  return count;
}

}  // namespace tree
