// What a cleanup has before it.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "merge/files.h"

namespace companion {

/// Whether a source that is not the one that was analyzed is none the less in order, or one that
/// is, and has a backup beside it.
using IsExcused = std::function<bool(File const&)>;

/// What a cleanup has before it.
struct Cleanable {
  Files files;
  /// What stays with options.skip, counted by "file" or "line", and what is the matter with it.
  std::map<std::pair<std::string, std::string>, std::size_t> left;
  std::size_t refused = 0;  ///< Files that stay for what cannot be skipped.
};

}  // namespace companion
