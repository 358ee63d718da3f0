#include "tree/clean.h"

#include <cstddef>
#include <exception>
#include <format>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cleaner/file_turn.h"
#include "cleaner/marks_filter.h"
#include "cleaner/source_file.h"
#include "tree/backups.h"
#include "tree/check.h"
#include "tree/cleaned_file.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/keep.h"
#include "tree/put_back.h"
#include "tree/reports.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

/// Cleans one source after the other. Any thread may call it.
class Cleaner {
 public:
  explicit Cleaner(fs::path const& root) : m_root(root) {}

  /// Returns why the file was refused; empty when it was cleaned, by this run or one before it.
  [[nodiscard]] std::string Clean(File const& file) {
    std::string failure = TryToClean(file);
    CleanedState state = StateOf(file, m_root);
    if (!failure.empty() && state == CleanedState::BrokenOff) {
      // Another run was interrupted just there, or is just at work there and waited for.
      if (PutBackBrokenOff(file)) {
        failure = TryToClean(file);
      }
      state = StateOf(file, m_root);
    }
    if (state == CleanedState::AsItShouldBe) {
      return {};
    }
    return state == CleanedState::BrokenOff ? Repair(file, failure) : WhyOther(file, failure);
  }

 private:
  std::string TryToClean(File const& file) {
    try {
      MarksFilter(file, &m_turns).SaveFilteredFile(m_root);
      return {};
    } catch (std::exception const& error) {
      return error.what();
    }
  }

  /// A source that has come out too short, which a full disk does without a word.
  [[nodiscard]] std::string Repair(File const& file, std::string const& failure) {
    const std::string why = failure.empty() ? "came out too short" : failure;
    return PutBackBrokenOff(file)
               ? std::format("put back: {}: {}", (m_root / file.path).string(), why)
               : std::format("cannot put back: {}: {}", (m_root / file.path).string(), why);
  }

  [[nodiscard]] std::string WhyOther(File const& file, std::string const& failure) const {
    const std::string source = (m_root / file.path).string();
    if (failure.empty()) {
      return "came out other than it should: " + source;
    }
    return failure.find(source) == std::string::npos ? source + ": " + failure : failure;
  }

  [[nodiscard]] bool PutBackBrokenOff(File const& file) {
    Backup backup{m_root / file.path, m_root / file.path};
    backup.backup += MarksFilter::TempName;
    const SourceFile backupFile(backup.backup);
    const FileTurn turn(&m_turns, backupFile.Handle(), backupFile.Identity());
    const SourceFile source(backup.source);
    return StateOf(file, m_root) == CleanedState::BrokenOff &&
           PutBack(backup, source, backupFile).empty();
  }

  fs::path const& m_root;
  FileTurns m_turns;
};

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

/// Returns how many files were refused.
std::size_t CleanAll(Files const& agreed, fs::path const& root, Console& console) {
  const std::vector<File const*> files = FilesToClean(agreed);
  std::size_t markers = 0;
  std::size_t refused = 0;
  Cleaner cleaner(root);
  InOrder<std::string>(
      files.size(), [&](std::size_t index) { return cleaner.Clean(*files[index]); },
      [&](std::size_t index, std::string const& complaint) {
        if (complaint.empty()) {
          markers += CountMarkers(*files[index]);
        } else {
          console.Complain(complaint);
          ++refused;
        }
        console.Progress(index + 1, files.size());
        return true;
      });
  console.Out() << std::format("{} cleaned, {} removed, {} refused\n",
                               Counted(files.size() - refused, "file"), Counted(markers, "marker"),
                               Counted(refused, "file"));
  return refused;
}

}  // namespace

void Clean(Options const& options, Console& console) {
  const auto reports = CheckBefore(options, console, [&options](File const& file) {
    return StateOf(file, options.root) != CleanedState::Other;
  });
  if (!reports) {
    console.Complain("nothing was cleaned");
    return;
  }
  const std::size_t refused = CleanAll(reports->agreed, options.root, console);
  if (options.keep && refused > 0) {
    console.Complain("backups stay, because files were refused");
  } else if (options.keep) {
    Keep(options, console);
  }
}

}  // namespace tree
