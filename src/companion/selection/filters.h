// What a command is narrowed to.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "companion/selection/code_set.h"
#include "companion/selection/globs.h"

namespace companion {

/// Chosen codes; all when none was named.
struct CodeFilter {
  CodeSet only{};
  CodeSet without{};

  [[nodiscard]] bool TakesAll() const { return only.IsEmpty() && without.IsEmpty(); }
  [[nodiscard]] bool Takes(std::uint64_t code) const {
    return (only.IsEmpty() || only.Holds(code)) && !without.Holds(code);
  }
  /// Throws std::runtime_error when no code that it names is one of these.
  void RefuseUnmatched(std::set<std::uint64_t> const& codes) const;
};

/// Chosen paths, relative to the root; all when none was named.
struct PathFilter {
  Globs only{};
  Globs without{};

  [[nodiscard]] bool TakesAll() const { return only.AreNone() && without.AreNone(); }
  /// Remembers which globs took the path in.
  [[nodiscard]] bool Takes(std::filesystem::path const& path);
  /// Throws std::runtime_error when a glob took in none of the paths so far.
  void RefuseUnmatched() const;
};

struct Filters {
  PathFilter paths{};
  CodeFilter codes{};
};

}  // namespace companion
