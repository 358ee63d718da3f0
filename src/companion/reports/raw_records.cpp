#include "companion/reports/raw_records.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "companion/reports/report_faults.h"

namespace companion {

void ReadRawRecords(std::filesystem::path const& report,
                    std::function<bool(File const&)> const& take) {
  ThrowIf(WhyNotOpened(report));
  ReportReader reader(report);
  reader.PassOverMark();
  if (reader.ReadStructured()) {
    throw std::runtime_error("structured report, which names no machine's paths: " +
                             report.string());
  }
  try {
    for (File record; reader.Next(record);) {
      if (take(record)) {
        reader.PassOverRepeats();
      }
    }
  } catch (nlohmann::json::exception const&) {
    ThrowIf(WhyNotWhole(reader));
    throw std::runtime_error(WhyNoReport(report).value_or("no marker report: " + report.string()));
  }
  ThrowIf(WhyNotRead(reader));
  ThrowIf(WhyNotWhole(reader));
}

}  // namespace companion
