// The warnings report as JSON, for the IDE plugin and the blame notifier.
#pragma once

#include <sstream>
#include <string_view>

#include "converter/basic_format_output.h"
#include "json/pretty_json_writer.h"

namespace TesselConverter {

/// Writes the warnings report, {"version": 3, "warnings": [<warning>, ...]}, indented by 2 and with
/// a newline at its end (docs/schema/warnings-report.schema.json has it whole).
///
/// Start comes first and Finish last. Without Start the document has no version; without Start and
/// without a warning it is null; another Start begins it anew. Into a file each warning is written
/// as it comes, because the warnings of a large report, kept until the end, would fill the memory
/// several times over. Throws the JSON library's exception for text that is not UTF-8. For use by
/// one thread.
class JsonOutput : public BasicFormatOutput<JsonOutput> {
 public:
  static constexpr std::string_view Name = "json";
  static constexpr std::string_view Suffix = "json";
  static constexpr bool IsFile = true;

  explicit JsonOutput(ProgramOptions const& options) : BasicFormatOutput(options) {}

  void Start() override;
  /// Refuses a warning whose code is not V and a number from 1 to 4294967295.
  bool Write(Warning const& warning) override;
  void Finish() override;
  [[nodiscard]] int GetFormatPathType() const override { return 3; }

 private:
  void OpenDocument();
  void WritePosition(WarningPosition const& position, bool isMain);
  void WriteNavigation(WarningPosition const& position);
  void WriteTexts(std::string_view key, std::set<std::string> const& texts);

  std::ostringstream m_held;  ///< The document for a console, which gives nothing back.
  PrettyJsonWriter m_json{m_buffer.Console() != nullptr ? m_held : m_stream};
  bool m_isStarted = false;
  bool m_isOpen = false;  ///< The beginning of the document is written.
};

}  // namespace TesselConverter
