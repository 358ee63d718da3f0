// Writing the records of a raw report.
#pragma once

#include <filesystem>
#include <ostream>

#include "merge/file.h"

/// Writes `file` as one line of a raw report, with `path` as its path. A brace in the path is
/// escaped, so that whoever counts braces finds the end of the record. Throws the JSON library's
/// exception for a path that is not UTF-8.
void WriteRawRecord(File const& file, std::filesystem::path const& path, std::ostream& output);
