// The merged collection of marker reports that every command works on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "merge/file.h"
#include "merge/paths/source_paths.h"

class ReportReader;

/// At most one record for each source path, in path order. Filled on the main thread, before any
/// worker exists; not safe to change from several threads.
struct Files {
  std::uint32_t version = 1;  ///< Format version to write; reading reports never changes it.
  FileSet files;

  /// Reads one report and merges it in. The structured form is tried first, then the raw one:
  /// - structured, first report of the run: replaces the collection;
  /// - structured, any later report: keeps the files that both name, with the lines that both have;
  /// - raw: adds files not yet known and keeps the common lines of those that are.
  /// A report that is missing or unreadable reads as an empty raw one.
  /// Throws std::runtime_error when a raw report meets an empty `sourceTreeRoot`, is malformed, or
  /// gives a known file another hash; and the file system's errors from making paths canonical.
  /// What was merged before the failure stays.
  void ExtractFromReport(std::filesystem::path const& reportPath, bool isFirstReport,
                         std::filesystem::path const& sourceTreeRoot);

  /// Does the same with an opened report that is read only once, as a pipe has to be. `inOrder`, if
  /// given, gets the records of `files` that a raw report names, in the order in which it first
  /// does. What else shows of the report, its reader tells.
  void Extract(ReportReader& report, bool isFirst, std::filesystem::path const& root,
               std::vector<File const*>* inOrder = nullptr);

  /// Merges records of a raw report, whose paths are relative to `root` already. Throws as
  /// ExtractFromReport does.
  void MergeRecords(std::vector<File const*> const& records, std::filesystem::path const& root);

  /// Merges a structured report that is not the first one: takes away the files that `others` does
  /// not have, and of the rest the lines that it does not have. Hashes are not compared: only raw
  /// reports are refused for these.
  void KeepCommon(FileSet const& others);

  /// Removes the files that have no lines left.
  void DeleteEmpty();

  /// Writes the collection as a structured report, replacing `resultPath`. An output that cannot
  /// be written is not reported. Throws the JSON library's exception for a path that is not UTF-8.
  void SaveStructuredReport(std::filesystem::path const& resultPath);

  /// Writes the warnings report, one warning for each marker, replacing `output`.
  /// Throws TesselConverter::FilesystemException when `output` cannot be opened, and the JSON
  /// library's exception for a path that is not UTF-8. (Defined beside the report writers.)
  void SaveQlnReport(std::filesystem::path const& output);

 private:
  void MergeStructured(FileSet&& report, bool isFirst);

  /// How the paths of the raw reports so far are written relative to the root. About paths only:
  /// what is done to `files` between two reports does not make it wrong.
  SourcePaths m_paths;
};

/// Sets the keys of a structured report in `j`, and leaves every other key that it has.
void to_json(nlohmann::json& j, Files const& files);
