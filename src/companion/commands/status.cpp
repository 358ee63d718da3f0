#include <cstddef>
#include <filesystem>
#include <format>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "companion/backups/backup_pair.h"
#include "companion/backups/backups.h"
#include "companion/backups/source_tree.h"
#include "companion/commands/commands.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"

namespace companion {

namespace {

using State = BackupPair::State;

/// What has become of a source with a backup.
struct Judged {
  State state = State::Refused;
  Complaint complaint{};
};

Judged Judge(SourceTree const& tree, std::filesystem::path const& source) {
  BackupPair pair(tree, source);
  pair.Judge();
  return {pair.WhatIs(), pair.WhyNotCleaned()};
}

std::string_view Words(State state) {
  return state == State::Cleaned ? "cleaned" : state == State::Changed ? "changed" : "broken off";
}

/// "3 backups: 1 broken off, 2 cleaned".
std::string Sum(std::size_t backups, std::map<std::string_view, std::size_t> const& counts) {
  std::string text = Counted(backups, "backup");
  for (auto const& [words, count] : counts) {
    text += std::format("{} {} {}", words == counts.begin()->first ? ":" : ",",
                        WithSeparators(count), words);
  }
  return text;
}

}  // namespace

void Status(Options const& options, Console& console) {
  const SourceTree tree(options.root);
  const std::vector<std::filesystem::path> sources =
      FindBackups(options.root, FiltersOf(options).paths, console);
  std::map<std::string_view, std::size_t> counts;
  ParallelInOrder<Judged>(
      sources.size(), [&](std::size_t index) { return Judge(tree, sources[index]); },
      [&](std::size_t index, Judged const& judged) {
        if (judged.state == State::Refused) {
          console.Complain(judged.complaint.value_or(""));
        } else {
          ++counts[Words(judged.state)];
          console.Out() << std::format("{}: {}\n", Printable(tree.NameOf(sources[index])),
                                       Words(judged.state));
        }
        console.Progress(index + 1, sources.size());
        return console.IsHeard();
      });
  console.Out() << Sum(sources.size(), counts) << '\n';
}

}  // namespace companion
