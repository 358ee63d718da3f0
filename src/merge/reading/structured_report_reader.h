// Reading a structured report.
#pragma once

#include <filesystem>
#include <optional>

#include "merge/file.h"

/// The records of a structured report; nothing when `path` holds anything else, or cannot be read.
/// Throws nothing but std::bad_alloc.
[[nodiscard]] std::optional<FileSet> ReadStructuredReport(std::filesystem::path const& path);

/// The quick part of ReadStructuredReport: the records of a report of the usual form, read one by
/// one without a tree of the whole. Nothing when the report has any other form, which does not mean
/// that it is no structured report; only the JSON library can say that.
[[nodiscard]] std::optional<FileSet> ReadPlainStructuredReport(std::filesystem::path const& path);
