// Reading the reports of a command line, each of them once, so that any may be a pipe.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/output/complaint.h"
#include "companion/output/console.h"
#include "companion/reports/reports.h"

namespace companion {

/// Which of the paths lead to a report that one before them leads to, too, by their places. A
/// report that is given twice has one vote, and one that was meant has none.
[[nodiscard]] std::vector<std::size_t> GivenAgain(std::vector<std::filesystem::path> const& paths);

/// What is said of one.
[[nodiscard]] std::string GivenTwice(std::filesystem::path const& report);

/// Throws std::runtime_error when one is.
void RefuseGivenAgain(std::vector<std::filesystem::path> const& paths);

/// Throws std::runtime_error for a report that is given twice, is not there or cannot be read to
/// its end, for what cannot be parsed, and for reports of one source in different states.
[[nodiscard]] Reports ReadReports(std::vector<std::filesystem::path> const& paths,
                                  std::filesystem::path const& root);

/// Does the same, but leaves out each report that saw another text of a source than those before
/// it, and adds to `leftOut` what is the matter with it. Reads the others anew for each such.
[[nodiscard]] Reports ReadThoseThatAgree(std::vector<std::filesystem::path> paths,
                                         std::filesystem::path const& root,
                                         std::vector<std::string>& leftOut);

/// Reads only what is agreed, in the memory that this takes; Narrow then deletes the files that are
/// left with no lines. Throws as ReadReports does.
[[nodiscard]] Files ReadAgreed(std::vector<std::filesystem::path> const& paths,
                               std::filesystem::path const& root);

/// What CheckReports could read.
struct CheckedReports {
  Reports reports;         ///< Without what is agreed if not all are whole.
  bool areWhole = true;    ///< Each could be read whole, so that a cleanup removes what is agreed.
  bool areAllRead = true;  ///< The same, but they may disagree on the text of a source.
  std::vector<Complaint> wrong;  ///< With each report, in the order of the paths.
};

/// Reads the reports as ReadReports does, but goes on to the next where that would throw, with a
/// complaint; and complains, too, of a report that is empty or breaks off within a record.
[[nodiscard]] CheckedReports CheckReports(std::vector<std::filesystem::path> const& paths,
                                          std::filesystem::path const& root, Console& console);

}  // namespace companion
