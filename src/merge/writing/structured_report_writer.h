// Writing the structured report.
#pragma once

#include <cstdint>
#include <ostream>

#include "merge/file.h"

/// Writes `files` in the bytes of a tree (files_to_json) dumped with an indent of 2, record by
/// record. Throws the JSON library's exception for a path that is not UTF-8, before anything is
/// written.
void WriteStructuredReport(std::uint32_t version, FileSet const& files, std::ostream& output);
