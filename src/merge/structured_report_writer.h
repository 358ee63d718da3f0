// Writing the structured report.
#pragma once

#include <ostream>

#include "merge/files.h"

/// Writes `files` in the bytes of to_json and a dump with an indent of 2, record by record. Throws
/// the JSON library's exception for a path that is not UTF-8, before anything is written.
void WriteStructuredReport(Files const& files, std::ostream& output);
