// What keeps a report from being read whole.
#pragma once

#include <filesystem>

#include "companion/output/complaint.h"
#include "merge/reading/report_reader.h"

namespace companion {

/// Of what a merge takes for a report that says nothing: no such file, a folder, or one that may
/// not be read.
[[nodiscard]] Complaint WhyNotOpened(std::filesystem::path const& report);

/// Whether reading it failed.
[[nodiscard]] Complaint WhyNotRead(ReportReader const& report);

/// Of one that could be read: it is empty, or breaks off within a record.
[[nodiscard]] Complaint WhyNotWhole(ReportReader& report);

/// What the file is, where its front tells, or else where it stops being a report: at which byte
/// and line, from 1. Nothing for a report, and for what cannot be read again, a pipe.
[[nodiscard]] Complaint WhyNoReport(std::filesystem::path const& report);

}  // namespace companion
