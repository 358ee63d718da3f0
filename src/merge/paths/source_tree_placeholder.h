// How reports write a path below the source-tree root.
#pragma once

#include <string>
#include <string_view>

/// Stands for the source-tree root at the beginning of a path in a report.
inline constexpr std::string_view SourceTreePlaceholder = "|?|";

/// A path of a report without the placeholder and the separator behind it; a path that does not
/// begin with the placeholder stays as it is. Two backslashes behind it count as one separator, and
/// two slashes do not, deliberately: an analyzer core on Windows escapes its backslashes twice.
[[nodiscard]] std::string_view WithoutPlaceholder(std::string_view path);

/// `path` behind the placeholder, with a slash between them unless it begins with a separator.
[[nodiscard]] std::string WithPlaceholder(std::string_view path);
