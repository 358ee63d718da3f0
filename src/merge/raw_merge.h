// Merging one raw report into a collection.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "merge/file.h"
#include "merge/paths/source_paths.h"
#include "merge/reading/report_reader.h"

/// Reports saw different texts of one source.
class HashMismatch : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Merges each record of the report into `files`, with its path relative to `root`: adds it if
/// `files` has none of that path yet, and otherwise keeps of the one there the lines that both
/// have. `paths` remembers what it finds for the next report; everything else is forgotten in the
/// end. Throws HashMismatch when a known file has another hash, the JSON library's exceptions
/// for what is no file record, and the file system's from making paths canonical. What was merged
/// before the failure stays. `inOrder` may be null; otherwise it gets the records in `files` that
/// the report names, in the order in which it first does.
void MergeRawReport(FileSet& files, ReportReader& report, SourcePaths& paths,
                    std::filesystem::path const& root, std::vector<File const*>* inOrder);

/// Does the same with a single record whose path is relative to `root` already.
void MergeRecord(FileSet& files, File const& record, std::filesystem::path const& root);
