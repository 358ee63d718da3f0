#include "companion/reports/read_reports.h"

#include <algorithm>
#include <exception>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "companion/output/complaint.h"
#include "companion/reports/report_faults.h"
#include "files/file_version.h"
#include "merge/raw_merge.h"
#include "merge/reading/report_reader.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

template <typename Action>
Complaint FailureOf(Action const& action) {
  try {
    action();
    return {};
  } catch (std::exception const& error) {
    return error.what();
  }
}

/// What `merge` throws of texts that reports saw is told with the report that saw another one.
template <typename Merge>
Complaint DisagreementWith(fs::path const& report, Merge const& merge) {
  try {
    merge();
    return {};
  } catch (HashMismatch const& error) {
    return std::string(error.what()) + " Another text than before was seen by " + report.string();
  }
}

/// Throws std::runtime_error with what the report is in place of what it is not.
void Extract(Files& files, ReportReader& report, bool isFirst, fs::path const& root,
             std::vector<File const*>* inOrder = nullptr) {
  report.PassOverMark();
  try {
    files.Extract(report, isFirst, root, inOrder);
  } catch (std::exception const&) {
    ThrowIf(report.Failed() ? std::nullopt : WhyNoReport(report.Path()));
    throw;
  }
}

/// Reads each report by itself, and merges it from memory into what is agreed.
class ReportsReader {
 public:
  explicit ReportsReader(fs::path const& root) : m_root(root) {}

  /// Adds what can be read of a report. With `mustBeWhole`, one that is empty or cut short is
  /// complained of, too.
  Complaint Read(fs::path const& path, bool mustBeWhole) {
    Report& added = m_reports.each.emplace_back(path);
    if (const Complaint wrong = WhyNotOpened(path)) {
      return wrong;
    }
    ReportReader report(path);
    m_inOrder.clear();
    const Complaint failure =
        FailureOf([&] { Extract(m_single, report, true, m_root, &m_inOrder); });
    added.files.files = std::exchange(m_single.files, {});
    m_isStructured = report.IsStructured();
    if (const Complaint wrong = WhyNotRead(report)) {
      return wrong;
    }
    const Complaint notWhole = mustBeWhole ? WhyNotWhole(report) : std::nullopt;
    return notWhole ? notWhole : failure;
  }

  /// Merges in the report last read. Throws std::runtime_error where it has a source in another
  /// state than those before it; what is agreed is then of no use.
  void Agree() {
    FileSet const& last = m_reports.each.back().files.files;
    Files& agreed = m_reports.agreed;
    if (!m_isStructured) {
      ThrowIf(DisagreementWith(m_reports.each.back().path,
                               [&] { agreed.MergeRecords(m_inOrder, m_root); }));
    } else if (m_reports.each.size() == 1) {
      agreed.files = last;
    } else {
      const std::size_t before = agreed.files.size();
      agreed.KeepCommon(last);
      m_reports.each.back().isRestricting = agreed.files.size() < before;
    }
  }

  Reports TakeAll() {
    m_reports.agreed.DeleteEmpty();
    return std::move(m_reports);
  }

 private:
  fs::path const& m_root;
  Reports m_reports;
  Files m_single;  ///< Holds no records, but remembers the paths of one report for the next.
  std::vector<File const*> m_inOrder;  ///< The records of the report last read, if it is raw.
  bool m_isStructured = false;         ///< The report last read.
};

}  // namespace

std::vector<std::size_t> GivenAgain(std::vector<fs::path> const& paths) {
  std::set<FileIdentity> given;
  std::vector<std::size_t> again;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const auto version = VersionOf(paths[i]);
    if (version && !given.insert(version->file).second) {
      again.push_back(i);
    }
  }
  return again;
}

std::string GivenTwice(fs::path const& report) {
  return "report given twice: " + report.string();
}

void RefuseGivenAgain(std::vector<fs::path> const& paths) {
  if (const std::vector<std::size_t> again = GivenAgain(paths); !again.empty()) {
    throw std::runtime_error(GivenTwice(paths[again.front()]));
  }
}

Reports ReadReports(std::vector<fs::path> const& paths, fs::path const& root) {
  RefuseGivenAgain(paths);
  ReportsReader reader(root);
  for (fs::path const& path : paths) {
    ThrowIf(reader.Read(path, false));
    reader.Agree();
  }
  return reader.TakeAll();
}

Reports ReadThoseThatAgree(std::vector<fs::path> paths, fs::path const& root,
                           std::vector<std::string>& leftOut) {
  for (;;) {
    ReportsReader reader(root);
    const auto other = std::ranges::find_if(paths, [&](fs::path const& path) {
      ThrowIf(reader.Read(path, false));
      const Complaint disagreement = FailureOf([&] { reader.Agree(); });
      leftOut.insert(leftOut.end(), disagreement ? 1 : 0, disagreement.value_or(""));
      return disagreement.has_value();
    });
    if (other == paths.end()) {
      return reader.TakeAll();
    }
    paths.erase(other);
  }
}

Files ReadAgreed(std::vector<fs::path> const& paths, fs::path const& root) {
  RefuseGivenAgain(paths);
  Files agreed;
  for (bool isFirst = true; fs::path const& path : paths) {
    ThrowIf(WhyNotOpened(path));
    ReportReader report(path);
    ThrowIf(DisagreementWith(
        path, [&] { Extract(agreed, report, std::exchange(isFirst, false), root); }));
    ThrowIf(WhyNotRead(report));
  }
  return agreed;
}

CheckedReports CheckReports(std::vector<fs::path> const& paths, fs::path const& root,
                            Console& console) {
  CheckedReports checked;
  for (const std::size_t again : GivenAgain(paths)) {
    console.Complain(GivenTwice(paths[again]));
    checked.areWhole = false;
  }
  ReportsReader reader(root);
  Complaint disagreement;
  for (fs::path const& path : paths) {
    if (Complaint const& wrong = checked.wrong.emplace_back(reader.Read(path, true))) {
      console.Complain(*wrong);
      checked.areWhole = false;
    } else if (checked.areWhole && !disagreement) {
      disagreement = FailureOf([&] { reader.Agree(); });
    }
  }
  checked.areAllRead = checked.areWhole;
  if (checked.areWhole && disagreement) {
    console.Complain(*disagreement);
    checked.areWhole = false;
  }
  checked.reports = reader.TakeAll();
  if (!checked.areWhole) {
    checked.reports.agreed.files.clear();
  }
  return checked;
}

}  // namespace companion
