// Merging one raw report into a collection.
#pragma once

#include <filesystem>

#include "merge/file.h"
#include "merge/paths/source_paths.h"
#include "merge/reading/raw_record_reader.h"

/// Adds the records of the report whose path `files` does not have yet, and keeps of the others the
/// lines that both have; their paths become relative to `root`.
/// Throws std::runtime_error when a known file has another hash, the JSON library's exceptions for
/// what is no file record, and the file system's from making paths canonical. What was merged
/// before the failure stays.
void MergeRawReport(FileSet& files, RawRecordReader& report, SourcePaths& paths,
                    std::filesystem::path const& root);
