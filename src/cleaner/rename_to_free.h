// Renaming that replaces nothing.
#pragma once

#include <filesystem>

/// Renames only where nothing stands at `to`. False, with the reason in errno, when it cannot, also
/// where the file system knows no such rename. Any thread may call it.
[[nodiscard]] bool RenameToFree(std::filesystem::path const& from, std::filesystem::path const& to);

/// The same; but where the file system knows no such rename, looks first whether something stands
/// at `to`. False when something does. Throws std::filesystem::filesystem_error when it cannot
/// rename.
[[nodiscard]] bool MoveToFree(std::filesystem::path const& from, std::filesystem::path const& to);
