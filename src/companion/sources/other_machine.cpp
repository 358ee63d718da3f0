#include "companion/sources/other_machine.h"

#include <algorithm>
#include <cstddef>
#include <format>
#include <string>
#include <string_view>

#include "companion/output/counted.h"
#include "companion/sources/foreign_path.h"
#include "files/file_status.h"
#include "merge/paths/weakly_canonical.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

bool IsBelow(fs::path const& folder, fs::path const& path) {
  return std::ranges::mismatch(folder, path).in1 == folder.end();
}

/// The path from a Windows machine's drive or host on, which a system that knows neither takes for
/// a name in the current folder; empty when there is none.
std::string_view WindowsPart(std::string_view path) {
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const std::string_view name = path.substr(0, slash);
    const bool hasDrive = BeginsWithDrive(name) && (name.size() == 2 || name[2] == '\\');
    if (hasDrive || name.starts_with("\\\\")) {
      return path;
    }
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  }
  return path;
}

}  // namespace

Complaint HintOfOtherMachine(std::vector<SourceRecords> const& sources, fs::path const& root) {
  const fs::path canonicalRoot = WeaklyCanonical(root);
  const fs::path here = fs::current_path();
  CommonFolder common;
  std::size_t count = 0;
  for (SourceRecords const& records : sources) {
    fs::path const& source = *records.path;
    if (StatusAt(root / source)) {
      continue;
    }
    const fs::path path = (canonicalRoot / source).lexically_normal();
    const std::string_view windows = WindowsPart(source.native());
    if (!windows.empty() || !(IsBelow(canonicalRoot, path) || IsBelow(here, path))) {
      common.Add(windows.empty() ? path.native() : windows);
      ++count;
    }
  }
  if (common.Text().empty()) {
    return {};
  }
  return std::format(
      "{} of {} sources are not there; their paths begin with {}: see qln-fp-tree relocate",
      WithSeparators(count), WithSeparators(sources.size()), common.Text());
}

}  // namespace companion
