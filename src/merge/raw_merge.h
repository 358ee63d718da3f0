// Merging one raw report into a collection.
#pragma once

#include <filesystem>

#include "merge/file.h"
#include "merge/paths/source_paths.h"
#include "merge/reading/raw_record_reader.h"

/// Merges each record of the report into `files`, with its path relative to `root`: adds it if
/// `files` has none of that path yet, and otherwise keeps of the one there the lines that both
/// have. `paths` remembers what it finds for the next report; everything else is forgotten in the
/// end. Throws std::runtime_error when a known file has another hash, the JSON library's exceptions
/// for what is no file record, and the file system's from making paths canonical. What was merged
/// before the failure stays.
void MergeRawReport(FileSet& files, RawRecordReader& report, SourcePaths& paths,
                    std::filesystem::path const& root);
