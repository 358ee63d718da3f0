// What the reports of a command line say, each by itself and all together.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "companion/selection/filters.h"
#include "merge/files.h"

namespace companion {

/// One report.
struct Report {
  std::filesystem::path path;  ///< As given on the command line.
  /// What it says, read as if it were the only one; also the files that it names without lines.
  Files files;
  /// Whether it took out files that reports before it name and it does not. Only a structured
  /// report that is not the first one does so; to all others such files are none of their business.
  bool isRestricting = false;
};

struct Reports {
  std::vector<Report> each;  ///< In the order of the command line.
  /// What a cleanup removes that is given the same reports: merged by the same functions, in the
  /// same order, without the files that are left with no lines.
  Files agreed;
  /// The codes that were asked for; of others nothing is told.
  CodeFilter codes{};
  /// What is agreed of all codes, if some were asked for.
  Files uncut{};

  /// What all reports agree on, whatever was asked for.
  [[nodiscard]] Files const& AllAgreed() const { return codes.TakesAll() ? agreed : uncut; }
};

/// Every path that some report names, once, in the order of files; relative to the root.
[[nodiscard]] std::vector<std::filesystem::path> NamedSources(Reports const& reports);

/// The record of a path; null when there is none.
[[nodiscard]] File const* FindFile(Files const& files, std::filesystem::path const& path);

/// How many markers a record lists.
[[nodiscard]] std::size_t CountMarkers(File const& file);

}  // namespace companion
