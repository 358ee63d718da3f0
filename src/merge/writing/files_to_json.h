// The JSON tree of report records.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "merge/file.h"

/// The array of file records that a structured report of `files` holds; structured_report_writer
/// writes the same text without a tree.
[[nodiscard]] nlohmann::json FilesToJson(FileSet const& files);
