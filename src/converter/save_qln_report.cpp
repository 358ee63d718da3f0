#include <string>
#include <utility>

#include "converter/json_output.h"
#include "converter/mirex_errors.h"
#include "fill_template.h"
#include "merge/files.h"
#include "merge/marker_text.h"

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

/// Writes a warning for each marker of a file. They differ in little, so one record serves for all.
class WarningsOfFile {
 public:
  WarningsOfFile(TesselConverter::JsonOutput& writer, File const& file) : m_writer(writer) {
    m_warning.positions.emplace_back(file.PathToString({}), 0);
  }

  void Write(Marker const& marker, Line const& line) {
    // The code is padded to three digits and the message is not, as the analyzer itself does.
    m_warning.code = DiagnosticCode(marker.code);
    m_warning.message = FillTemplate(MirexErrors::RedundantFA(), {std::to_string(marker.code)});
    m_warning.positions.front().line = line.line;
    m_warning.positions.front().endLine = line.line;
    // A marker without a number is refused, and has no place in the report.
    static_cast<void>(m_writer.Write(m_warning));
  }

 private:
  TesselConverter::JsonOutput& m_writer;
  Warning m_warning;
};

}  // namespace

void Files::SaveQlnReport(std::filesystem::path const& output) {
  TesselConverter::JsonOutput writer(OptionsFor(output));
  writer.PrepareOutput();
  writer.Start();
  for (File const& file : files) {
    WarningsOfFile warnings(writer, file);
    for (Line const& line : file.lines) {
      for (Marker const& marker : line.markers) {
        warnings.Write(marker, line);
      }
    }
  }
  writer.Finish();
}
