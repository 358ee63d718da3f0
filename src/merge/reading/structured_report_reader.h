// Reading a structured report.
#pragma once

#include <filesystem>
#include <optional>

#include "merge/file.h"
#include "merge/reading/report_window.h"

/// The records of the structured report at the front of the window. Nothing when the report is no
/// structured one, or cannot be read to its end; the window then stands where it stood, to which it
/// must be able to return. Throws nothing but std::bad_alloc.
[[nodiscard]] std::optional<FileSet> ReadStructuredReport(ReportWindow& window);

/// The same for what can be read only once, a pipe, and without holding it: what was read is lost.
[[nodiscard]] std::optional<FileSet> ReadStructuredStream(std::filesystem::path const& path);
