#include "companion/selection/filters.h"

#include <algorithm>
#include <format>
#include <stdexcept>
#include <string_view>

namespace companion {

namespace {

/// A misspelt filter would leave out, or take in, what nobody meant.
void RefuseIf(std::optional<std::string> const& unmatched, std::string_view option) {
  if (unmatched) {
    throw std::runtime_error(std::format("matches nothing: {} {}", option, *unmatched));
  }
}

/// Codes come and go with each analysis: not every one that is listed must be there.
std::optional<std::string> Unmatched(CodeSet const& chosen, std::set<std::uint64_t> const& codes) {
  const bool isMatched =
      chosen.IsEmpty() ||
      std::ranges::any_of(codes, [&chosen](std::uint64_t code) { return chosen.Holds(code); });
  return isMatched ? std::nullopt : std::optional(chosen.Typed());
}

}  // namespace

void CodeFilter::RefuseUnmatched(std::set<std::uint64_t> const& codes) const {
  RefuseIf(Unmatched(only, codes), "--code");
  RefuseIf(Unmatched(without, codes), "--without-code");
}

bool PathFilter::Takes(std::filesystem::path const& path) {
  const bool isIn = only.Match(path);
  const bool isOut = without.Match(path);
  return (isIn || only.AreNone()) && !isOut;
}

void PathFilter::RefuseUnmatched() const {
  RefuseIf(only.Unmatched(), "--path");
  RefuseIf(without.Unmatched(), "--without");
}

}  // namespace companion
