#include <cstddef>
#include <format>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "companion/backups/backup_pair.h"
#include "companion/backups/source_tree.h"
#include "companion/cleaning/careful_cleaner.h"
#include "companion/commands/check.h"
#include "companion/commands/commands.h"
#include "companion/commands/keep.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/reports/reports.h"

namespace companion {

namespace {

/// Those with something to remove.
std::vector<File const*> FilesToClean(Files const& files) {
  std::vector<File const*> toClean;
  for (File const& file : files.files) {
    if (CountMarkers(file) > 0) {
      toClean.push_back(&file);
    }
  }
  return toClean;
}

/// What was done, in sums.
struct Cleaned {
  std::size_t files = 0;
  std::size_t markers = 0;
  std::size_t refused = 0;
  std::size_t before = 0;  ///< Files that an earlier run had cleaned.
  ComparedPairs compared{};

  void Add(File const& file, CarefulCleaner::Result const& result) {
    refused += result.complaint ? 1 : 0;
    before += result.wasCleanBefore ? 1 : 0;
    if (!result.complaint && !result.wasCleanBefore) {
      ++files;
      markers += CountMarkers(file);
    }
    if (result.versions) {
      compared.emplace(file.path, *result.versions);
    }
  }

  [[nodiscard]] std::string Sum() const {
    return std::format(
        "{} cleaned, {} removed, {} refused{}\n", Counted(files, "file"),
        Counted(markers, "marker"), Counted(refused, "file"),
        before == 0 ? "" : std::format("; {} already clean", Counted(before, "file")));
  }
};

/// Whether a run was interrupted when it had put the original back, and not yet deleted what had
/// become of it; a cleanup then goes on as if there were no backup.
bool IsHalfPutBack(SourceTree const& tree, std::filesystem::path const& source) {
  BackupPair pair(tree, source);
  pair.Judge();
  return pair.WhatIs() == BackupPair::State::HalfPutBack;
}

Cleaned CleanAll(Files const& agreed, SourceTree const& tree, Console& console) {
  const std::vector<File const*> files = FilesToClean(agreed);
  CarefulCleaner cleaner(tree);
  Cleaned cleaned;
  ParallelInOrder<CarefulCleaner::Result>(
      files.size(), [&](std::size_t index) { return cleaner.Clean(*files[index]); },
      [&](std::size_t index, CarefulCleaner::Result const& result) {
        cleaned.Add(*files[index], result);
        for (Complaint const& complaint : {result.complaint, result.leftover}) {
          if (complaint) {
            console.Complain(*complaint);
          }
        }
        console.Progress(index + 1, files.size());
        return true;
      });
  return cleaned;
}

}  // namespace

void Clean(Options const& options, Console& console) {
  const SourceTree tree(options.root);
  const auto reports = CheckBefore(options, console, [&](File const& file) {
    return OutcomeOf(file, options.root).state != CleanupOutcome::State::Unknown ||
           IsHalfPutBack(tree, file.path);
  });
  if (!reports) {
    console.Complain("nothing was cleaned");
    return;
  }
  const Cleaned cleaned = CleanAll(reports->agreed, tree, console);
  console.Out() << cleaned.Sum();
  if (options.keep && cleaned.refused > 0) {
    console.Complain("backups stay, because files were refused");
  } else if (options.keep) {
    KeepCleaned(options, cleaned.compared, console);
  }
}

}  // namespace companion
