// How reports write a path below the source-tree root.
#pragma once

#include <string>
#include <string_view>

/// Stands for the source-tree root at the beginning of a path in a report.
inline constexpr std::string_view SourceTreePlaceholder = "|?|";

/// `path` as reports write it without the placeholder and the separator behind it; a path that has
/// no placeholder as it is. Of doubled separators only the backslash is taken as one, deliberately:
/// a core on Windows escapes it twice.
[[nodiscard]] std::string_view WithoutPlaceholder(std::string_view path);

/// `path` behind the placeholder, with a slash between them unless it begins with a separator.
[[nodiscard]] std::string WithPlaceholder(std::string_view path);
