#include "companion/commands/output_check.h"

#include <algorithm>
#include <stdexcept>

#include "companion/output/result_file.h"
#include "files/file_version.h"
#include "merge/paths/weakly_canonical.h"

namespace companion {

namespace fs = std::filesystem;

void RefuseAsOutput(Options const& options, std::function<bool(fs::path const&)> const& isSource) {
  if (options.output == StandardOutput) {
    return;
  }
  const auto there = VersionOf(options.output);
  const bool isReport = there && std::ranges::any_of(options.reports, [&](fs::path const& report) {
                          const auto version = VersionOf(report);
                          return version && version->file == there->file;
                        });
  if (isReport) {
    throw std::runtime_error("the output is one of the reports: " + options.output.string());
  }
  if (isSource(WeaklyCanonical(options.output).lexically_relative(WeaklyCanonical(options.root)))) {
    throw std::runtime_error("the output is a source that a report names: " +
                             options.output.string());
  }
}

}  // namespace companion
