// Reading the JSON form of the report records.
//
// A file record, the same in both kinds of report:
//
//   {"path": "|?|/src/a.cpp", "hash": "<40 hexadecimal digits>", "lines": [
//     {"line": 12, "markers": [
//       {"code": 501, "columns": {"begin": 20, "end": 27}, "offsets": {"begin": 19, "end": 26}}]}]}
//
// A raw report, as the analyzer core writes it, is a sequence of such records with line feeds
// between them (see report_reader.h). A structured report is one object:
//
//   {"files": [<file record>, ...], "version": 1}
#pragma once

#include <nlohmann/json.hpp>

#include "merge/file.h"

/// Fills `file` from one file record; "version" may be absent and then keeps its value, and so may
/// a marker's "code", which is then 0. Unknown keys are ignored. Throws the JSON library's
/// exceptions for a missing key or a wrong type and leaves `file` partly filled.
void from_json(nlohmann::json const& j, File& file);

/// The records of a structured report; of two records for a path the first wins. Throws the JSON
/// library's exceptions for anything that is no structured report.
[[nodiscard]] FileSet FilesFromJson(nlohmann::json const& j);
