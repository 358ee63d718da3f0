// The JSON tree of the structured report.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "merge/file.h"

/// The structured report of `files` as a tree; structured_report_writer writes the same text
/// without one.
[[nodiscard]] nlohmann::json FilesToJson(std::uint32_t version, FileSet const& files);
