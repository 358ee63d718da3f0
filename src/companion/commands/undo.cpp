#include <cstddef>
#include <filesystem>
#include <vector>

#include "companion/backups/backups.h"
#include "companion/backups/put_back.h"
#include "companion/backups/source_tree.h"
#include "companion/commands/commands.h"
#include "companion/output/complaints.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"

namespace companion {

namespace {

/// Returns why the backup is not put back.
Complaint UndoOne(SourceTree const& tree, std::filesystem::path const& source) {
  BackupPair pair(tree, source);
  pair.Judge();
  return PutBack(pair);
}

}  // namespace

void Undo(Options const& options, Console& console) {
  const SourceTree tree(options.root);
  const std::vector<std::filesystem::path> sources =
      FindBackups(options.root, FiltersOf(options).paths, console);
  std::size_t done = 0;
  Complaints complaints(console, options.list);
  ParallelInOrder<Complaint>(
      sources.size(), [&](std::size_t index) { return UndoOne(tree, sources[index]); },
      [&](std::size_t index, Complaint const& complaint) {
        if (complaint) {
          complaints.Add(*complaint);
        } else {
          console.Out() << "put back: " << Printable(tree.NameOf(sources[index])) << '\n';
          ++done;
        }
        console.Progress(index + 1, sources.size());
        return true;
      });
  complaints.Finish();
  console.Out() << (sources.empty() ? "nothing to put back"
                                    : DoneAndRefused(done, "put back", sources.size() - done))
                << '\n';
}

}  // namespace companion
