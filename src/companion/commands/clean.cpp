#include <cstddef>
#include <format>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/backups/backup_pair.h"
#include "companion/backups/source_tree.h"
#include "companion/cleaning/careful_cleaner.h"
#include "companion/commands/check.h"
#include "companion/commands/commands.h"
#include "companion/commands/keep.h"
#include "companion/output/complaints.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "companion/output/shell_word.h"
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

  /// With `left` that of what was skipped, too; then a sum of refused files matters only if there
  /// are some.
  [[nodiscard]] std::string Sum(Cleanable const& cleanable, bool doesSkip) const {
    std::string text =
        Counted(files, "file") + " cleaned, " + Counted(markers, "marker") + " removed";
    if (refused > 0 || !doesSkip) {
      text += std::format(", {} refused", Counted(refused, "file"));
    }
    if (before > 0) {
      text += std::format("; {} already clean", Counted(before, "file"));
    }
    for (std::string_view sign = "; left: "; auto const& [what, count] : cleanable.left) {
      text.append(std::exchange(sign, ", ")).append(Counted(count, what.first));
      text.append(" ").append(what.second);
    }
    return text + '\n';
  }
};

/// Whether a run was interrupted when it had put the original back, and not yet deleted what had
/// become of it; a cleanup then goes on as if there were no backup.
bool IsHalfPutBack(SourceTree const& tree, std::filesystem::path const& source) {
  BackupPair pair(tree, source);
  pair.Judge();
  return pair.WhatIs() == BackupPair::State::HalfPutBack;
}

Cleaned CleanAll(Files const& agreed, SourceTree const& tree, Options const& options,
                 Console& console) {
  const std::vector<File const*> files = FilesToClean(agreed);
  CarefulCleaner cleaner(tree, options.blanks);
  Cleaned cleaned;
  Complaints complaints(console, options.list);
  ParallelInOrder<CarefulCleaner::Result>(
      files.size(), [&](std::size_t index) { return cleaner.Clean(*files[index]); },
      [&](std::size_t index, CarefulCleaner::Result const& result) {
        cleaned.Add(*files[index], result);
        for (Complaint const& complaint : {result.complaint, result.leftover}) {
          if (complaint) {
            complaints.Add(*complaint);
          }
        }
        console.Progress(index + 1, files.size());
        return true;
      });
  complaints.Finish();
  return cleaned;
}

}  // namespace

void Clean(Options const& options, Console& console) {
  const SourceTree tree(options.root);
  const auto cleanable = CheckBefore(options, console, [&](File const& file) {
    return OutcomeOf(file, options.root, options.blanks).state != CleanupOutcome::State::Unknown ||
           IsHalfPutBack(tree, file.path);
  });
  if (!cleanable) {
    return;
  }
  Cleaned cleaned = CleanAll(cleanable->files, tree, options, console);
  cleaned.refused += cleanable->refused;
  console.Out() << cleaned.Sum(*cleanable, options.skip);
  if (options.keep && cleaned.refused > 0) {
    console.Complain("backups stay, because files were refused");
  } else if (options.keep) {
    KeepCleaned(options, cleaned.compared, console);
  } else if (cleaned.files > 0) {
    console.Out() << "undo or keep: qln-fp-tree keep -r "
                  << Printable(ShellWord(options.root.native())) << '\n';
  }
}

}  // namespace companion
