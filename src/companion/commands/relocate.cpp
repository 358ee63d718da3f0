#include <cstddef>
#include <string>

#include "companion/commands/commands.h"
#include "companion/commands/output_check.h"
#include "companion/output/complaints.h"
#include "companion/output/result_file.h"
#include "companion/reports/raw_records.h"
#include "companion/reports/read_reports.h"
#include "companion/sources/relocation.h"
#include "merge/paths/weakly_canonical.h"
#include "merge/raw_merge.h"
#include "merge/writing/raw_record_writer.h"

namespace companion {

namespace {

/// Merges the records of all reports, as they are to stand in the new one.
Files RelocatedRecords(Options const& options, Relocation& relocation) {
  Files relocated;
  for (std::filesystem::path const& report : options.reports) {
    ReadRawRecords(report, [&](File const& record) {
      Relocation::Source const& source = relocation.Find(record);
      const std::size_t before = relocated.files.size();
      if (!source.complaint) {
        MergeRecord(relocated.files, {record.version, source.path, source.hash, record.lines},
                    options.root);
      }
      return relocated.files.size() == before;  // Then more repeats will follow.
    });
  }
  return relocated;
}

void ComplainOf(Relocation const& relocation, Options const& options, Console& console) {
  if (!relocation.HasFoundAny()) {
    const std::string others = relocation.Others();
    console.Complain("no path of the reports is below " + options.from.string() +
                     (others.empty() ? "" : "; they begin with " + others));
    return;
  }
  Complaints complaints(console, options.list);
  for (std::string const& complaint : relocation.Complaints()) {
    complaints.Add(complaint);
  }
  complaints.Finish();
}

void Write(Files const& relocated, Options const& options, Console& console) {
  const std::filesystem::path root = WeaklyCanonical(options.root);
  ResultFile output(options.output, console);
  for (File const& file : relocated.files) {
    WriteRawRecord(file, root / file.path, output.Stream());
  }
  output.Finish();
}

}  // namespace

void Relocate(Options const& options, Console& console) {
  RefuseGivenAgain(options.reports);
  Relocation relocation(options.from, options.root);
  const Files relocated = RelocatedRecords(options, relocation);
  RefuseAsOutput(options, [&relocated](std::filesystem::path const& path) {
    return FindFile(relocated, path) != nullptr;
  });
  if (relocation.Complaints().empty()) {
    Write(relocated, options, console);
  } else {
    ComplainOf(relocation, options, console);
    console.Complain("nothing was written");
  }
}

}  // namespace companion
