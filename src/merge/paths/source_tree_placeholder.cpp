#include "merge/paths/source_tree_placeholder.h"

std::string_view WithoutPlaceholder(std::string_view path) {
  if (!path.starts_with(SourceTreePlaceholder)) {
    return path;
  }
  path.remove_prefix(SourceTreePlaceholder.size());
  if (path.starts_with('/') || path.starts_with('\\')) {
    path.remove_prefix(1);
    if (path.starts_with('\\')) {
      path.remove_prefix(1);
    }
  }
  return path;
}

std::string WithPlaceholder(std::string_view path) {
  const bool hasSeparator = path.starts_with('/') || path.starts_with('\\');
  return std::string(SourceTreePlaceholder).append(hasSeparator ? "" : "/").append(path);
}
