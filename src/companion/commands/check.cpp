#include "companion/commands/check.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/commands/findings.h"
#include "companion/output/parallel_in_order.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/sources/other_machine.h"

namespace companion {

namespace {

/// Whether a cleanup has something to remove from the source.
bool IsToBeCleaned(Reports const& reports, SourceRecords const& source) {
  File const* const agreed = FindFile(reports.agreed, *source.path);
  return agreed != nullptr && CountMarkers(*agreed) > 0;
}

/// Looks at each of them, on all workers.
void CheckSources(std::vector<SourceRecords> const& sources, Findings& findings,
                  Reports const& reports, Options const& options, Console& console) {
  ParallelInOrder<CheckedSource>(
      sources.size(),
      [&](std::size_t index) { return CheckSource(reports, sources[index], options.root); },
      [&](std::size_t index, CheckedSource const& source) {
        findings.Add(sources[index], source);
        console.Progress(index + 1, sources.size());
        return true;
      });
  if (const Complaint hint = HintOfOtherMachine(sources, options.root)) {
    console.Complain(*hint);
  }
}

CheckedReports ReadNarrowed(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  CheckedReports checked = CheckReports(options.reports, options.root, console);
  Narrow(checked.reports, filters, checked.areWhole);
  return checked;
}

/// Whether there was nothing to complain of. `tells` has it print what was looked at.
bool CheckAll(CheckedReports const& checked, Options const& options, Console& console, bool tells) {
  const IsExcused never = [](File const& /*file*/) { return false; };
  Findings findings(options, checked.reports, never, console);
  const std::vector<SourceRecords> sources = RecordsBySource(checked.reports);
  std::ranges::for_each(sources, [&](SourceRecords const& source) { findings.Add(source); });
  if (checked.areAllRead) {  // Else that is the one cause to be told.
    CheckSources(sources, findings, checked.reports, options, console);
  }
  findings.Finish();
  const bool isGood = checked.areWhole && findings.IsGood();
  if (tells && isGood) {
    console.Out() << "all is well\n";
  }
  if (tells) {
    findings.Print(checked.areAllRead);
  }
  return isGood;
}

}  // namespace

void Check(Options const& options, Console& console) {
  static_cast<void>(CheckAll(ReadNarrowed(options, console), options, console, true));
}

std::optional<Files> AgreedIfAllIsWell(Options const& options, Console& console) {
  CheckedReports checked = ReadNarrowed(options, console);
  return CheckAll(checked, options, console, false)
             ? std::optional(std::move(checked.reports.agreed))
             : std::nullopt;
}

std::optional<Cleanable> CheckBefore(Options const& options, Console& console,
                                     IsExcused const& isExcused) {
  const CheckedReports checked = ReadNarrowed(options, console);
  if (!checked.areWhole) {
    console.Complain("nothing was cleaned");
    return std::nullopt;
  }
  Findings findings(options, checked.reports, isExcused, console);
  std::vector<SourceRecords> sources = RecordsBySource(checked.reports);
  std::ranges::for_each(sources, [&](SourceRecords const& source) { findings.Add(source); });
  std::erase_if(sources, [&checked](SourceRecords const& source) {
    return !IsToBeCleaned(checked.reports, source);
  });
  CheckSources(sources, findings, checked.reports, options, console);
  findings.Finish();
  auto cleanable = findings.TakeCleanable();
  if (!cleanable) {
    console.Complain(!options.skip && findings.CouldSkip()
                         ? "nothing was cleaned; --skip cleans all else"
                         : "nothing was cleaned");
  }
  return cleanable;
}

}  // namespace companion
