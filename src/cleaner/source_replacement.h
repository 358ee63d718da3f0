// Putting a rewritten copy in place of its source.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "cleaner/temporary_file.h"
#include "files/source_file.h"

/// Renames the source at `path`, which is open as `source`, to `backup`, copies `rewritten` to
/// `path`, and removes `rewritten`. When the copy fails, the backup is renamed back. At every
/// moment the bytes of the source stand at one of its two paths. An older backup is replaced;
/// nothing else is ever written over: what comes to `path` meanwhile is someone's work, and stays.
///
/// `content`, if given, is all that is in `rewritten`, which then need not be read. The caller has
/// locked both files.
///
/// Throws std::filesystem::filesystem_error, which says where the original is if it is not at its
/// own path.
void ReplaceSource(SourceFile const& source, std::filesystem::path const& path,
                   std::filesystem::path const& backup, TemporaryFile& rewritten,
                   std::optional<std::string_view> content);
