// What the reports of a command line say, each by itself and all together.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "cleaner/file_version.h"
#include "merge/files.h"

namespace tree {

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
  /// What a cleanup removes that is given the same reports: read by the same function, in the same
  /// order, without the files that are left with no lines.
  Files agreed;
};

/// The reports as they stood when the object was made. Each is read several times, and only if it
/// is the same each time do the results fit together. `paths` must outlive it.
class UnchangedReports {
 public:
  explicit UnchangedReports(std::vector<std::filesystem::path> const& paths);

  /// Throws std::runtime_error when one has changed.
  void Confirm() const;

 private:
  std::vector<std::filesystem::path> const& m_paths;
  std::vector<std::optional<FileVersion>> m_versions;
};

/// Reads every report twice, by itself and into what is agreed. Throws std::runtime_error for a
/// report that is not there, cannot be read to its end, changes meanwhile, or is no regular file,
/// which could be read only once; and what Files::ExtractFromReport throws.
[[nodiscard]] Reports ReadReports(std::vector<std::filesystem::path> const& paths,
                                  std::filesystem::path const& root);

/// Reads only what is agreed. Throws as ReadReports does.
[[nodiscard]] Files ReadAgreed(std::vector<std::filesystem::path> const& paths,
                               std::filesystem::path const& root);

/// Reads one report into `files` as Files::ExtractFromReport does, which passes over what it cannot
/// read; throws std::runtime_error for such a report. Throws as ReadReports does.
void ExtractWhole(Files& files, std::filesystem::path const& report, bool isFirst,
                  std::filesystem::path const& root);

/// Throws std::runtime_error for a report that ReadReports would not read.
void RefuseIrregular(std::filesystem::path const& report);

/// Every path that some report names, once, in the order of files; relative to the root.
[[nodiscard]] std::vector<std::filesystem::path> NamedSources(Reports const& reports);

/// The record of a path; null when there is none.
[[nodiscard]] File const* FindFile(Files const& files, std::filesystem::path const& path);

/// How many markers a record lists.
[[nodiscard]] std::size_t CountMarkers(File const& file);

}  // namespace tree
