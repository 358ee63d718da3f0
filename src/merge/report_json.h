// The JSON form of the report records.
//
// A file record, the same in both kinds of report:
//
//   {"path": "|?|/src/a.cpp", "hash": "<40 hexadecimal digits>", "lines": [
//     {"line": 12, "markers": [
//       {"code": 501, "columns": {"begin": 20, "end": 27}, "offsets": {"begin": 19, "end": 26}}]}]}
//
// A raw report, as the analyzer core writes it, is a sequence of such records with line feeds
// between them (see raw_record_reader.h). A structured report is one object:
//
//   {"files": [<file record>, ...], "version": 1}
#pragma once

#include <nlohmann/json.hpp>

#include "merge/file.h"
#include "merge/files.h"

/// `path` as reports write it without the placeholder of the source-tree root and the separator
/// behind it. Of doubled separators only the backslash is taken as one, deliberately: a core on
/// Windows escapes it twice.
[[nodiscard]] std::string_view WithoutPlaceholder(std::string_view path);

/// Fills `file` from one file record; "version" may be absent and then keeps its value, and so may
/// a marker's "code", which is then 0. Unknown keys are ignored. Throws the JSON library's
/// exceptions for a missing key or a wrong type and leaves `file` partly filled.
void from_json(nlohmann::json const& j, File& file);

/// Adds the records of a structured report; of two records for a path the first wins. Throws the
/// JSON library's exceptions for anything that is no structured report.
void from_json(nlohmann::json const& j, Files& files);

/// Makes the structured report of `files`.
void to_json(nlohmann::json& j, Files const& files);
