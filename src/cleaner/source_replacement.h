// Putting a rewritten copy in place of its source.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "cleaner/temporary_file.h"

/// Renames `source` to `backup`, copies `rewritten` to `source`, and removes `rewritten`. When the
/// copy fails, the backup is renamed back. At every moment the bytes of the source stand at one of
/// its two paths.
///
/// `content`, if given, is all that is in `rewritten`, which then need not be read.
///
/// Throws std::filesystem::filesystem_error. The system is called directly, for a fraction of the
/// standard library's calls; where that fails, the library's function is called after all, so that
/// its words are those that appear.
void ReplaceSource(std::filesystem::path const& source, std::filesystem::path const& backup,
                   TemporaryFile const& rewritten, std::optional<std::string_view> content);
