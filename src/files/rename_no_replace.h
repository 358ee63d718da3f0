// Renaming that replaces nothing.
#pragma once

#include <fcntl.h>

#include <filesystem>
#include <system_error>

// Relative paths are looked up in the open directory `folder`. Any thread may call these.

/// Renames only where nothing stands at `to`. Fails, too, where the file system knows no such
/// rename.
[[nodiscard]] std::error_code RenameNoReplace(std::filesystem::path const& from,
                                              std::filesystem::path const& to,
                                              int folder = AT_FDCWD) noexcept;

/// The same; but where the file system knows no such rename, looks first whether something stands
/// at `to`. Fails with std::errc::file_exists when something does.
[[nodiscard]] std::error_code MoveNoReplace(std::filesystem::path const& from,
                                            std::filesystem::path const& to,
                                            int folder = AT_FDCWD) noexcept;
