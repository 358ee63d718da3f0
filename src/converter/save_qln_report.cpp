#include <cstdint>
#include <format>
#include <string>
#include <utility>

#include "converter/json_output.h"
#include "converter/mirex_errors.h"
#include "fill_template.h"
#include "merge/files.h"

namespace {

using TesselConverter::ProgramOptions;
using TesselConverter::Warning;

ProgramOptions OptionsFor(std::filesystem::path const& output) {
  ProgramOptions options;
  options.output = output.string();
  options.auxText = ".";
  options.auxMode = 2;
  return options;
}

Warning ToWarning(Marker const& marker, Line const& line, std::string const& fileText) {
  Warning warning;
  // The code is padded to three digits and the message is not, as the analyzer itself does.
  warning.code = std::format("V{:03}", static_cast<std::uint32_t>(marker.code));
  warning.message = FillTemplate(MirexErrors::RedundantFA(), {std::to_string(marker.code)});
  warning.positions.emplace_back(fileText, line.line);
  return warning;
}

}  // namespace

void Files::SaveQlnReport(std::filesystem::path const& output) {
  TesselConverter::JsonOutput writer(OptionsFor(output));
  writer.PrepareOutput();
  writer.Start();
  for (File const& file : files) {
    const std::string fileText = file.PathToString({});
    for (Line const& line : file.lines) {
      for (Marker const& marker : line.markers) {
        // A marker without a number is refused, and has no place in the report.
        static_cast<void>(writer.Write(ToWarning(marker, line, fileText)));
      }
    }
  }
  writer.Finish();
}
