// Reading a structured report.
#pragma once

#include <filesystem>
#include <optional>

#include "merge/file.h"

/// The content of a structured report; nothing when `path` holds anything else, or cannot be read.
/// Throws std::bad_alloc.
[[nodiscard]] std::optional<FileSet> ReadStructuredReport(std::filesystem::path const& path);

/// The same for reports of the usual form, read record by record without a tree of the whole.
/// Nothing for all others, of which the JSON library decides.
[[nodiscard]] std::optional<FileSet> ReadPlainStructuredReport(std::filesystem::path const& path);
