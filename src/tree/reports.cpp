#include "tree/reports.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
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

void ExtractWhole(Files& files, fs::path const& report, bool isFirst, fs::path const& root) {
  RefuseIrregular(report);
  files.ExtractFromReport(report, isFirst, root);
  if (files.HasUnreadReport()) {
    throw std::runtime_error("cannot read the report to its end: " + report.string());
  }
}

UnchangedReports::UnchangedReports(std::vector<fs::path> const& paths) : m_paths(paths) {
  std::ranges::transform(paths, std::back_inserter(m_versions),
                         [](fs::path const& path) { return VersionOf(path); });
}

void UnchangedReports::Confirm() const {
  for (std::size_t i = 0; i < m_paths.size(); ++i) {
    if (VersionOf(m_paths[i]) != m_versions[i]) {
      throw std::runtime_error("report has changed while it was read: " + m_paths[i].string());
    }
  }
}

Reports ReadReports(std::vector<fs::path> const& paths, fs::path const& root) {
  Reports reports;
  const UnchangedReports unchanged(paths);
  for (fs::path const& path : paths) {
    Report& report = reports.each.emplace_back(path);
    ExtractWhole(report.files, path, true, root);
    const std::size_t before = reports.agreed.files.size();
    ExtractWhole(reports.agreed, path, reports.each.size() == 1, root);
    report.isRestricting = reports.agreed.files.size() < before;
  }
  unchanged.Confirm();
  reports.agreed.DeleteEmpty();
  return reports;
}

Files ReadAgreed(std::vector<fs::path> const& paths, fs::path const& root) {
  Files agreed;
  const UnchangedReports unchanged(paths);
  bool isFirst = true;
  for (fs::path const& path : paths) {
    ExtractWhole(agreed, path, isFirst, root);
    isFirst = false;
  }
  unchanged.Confirm();
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
