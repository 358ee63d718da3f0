// What the backup of a source is called.
#pragma once

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>

/// Appended to the source's name, with no separator.
inline constexpr std::string_view BackupSuffix = "temp_qln_facleaner";

/// The path of the source's backup, which stands beside it.
[[nodiscard]] inline std::filesystem::path BackupOf(std::filesystem::path source) {
  return source += BackupSuffix;
}

/// The path of the source that a backup at this path would be of; nothing when no backup is called
/// so.
[[nodiscard]] inline std::optional<std::filesystem::path> SourceOf(
    std::filesystem::path const& backup) {
  const std::string_view text = backup.native();
  const std::string_view source =
      text.substr(0, text.size() - std::min(text.size(), BackupSuffix.size()));
  if (!text.ends_with(BackupSuffix) || source.empty() || source.ends_with('/')) {
    return std::nullopt;
  }
  return source;
}
