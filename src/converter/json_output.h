// The warnings report as JSON, for the IDE plugin and the blame notifier.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "converter/basic_format_output.h"

namespace TesselConverter {

/// Writes the warnings report:
///
///   {"version": 3, "warnings": [<warning>, ...]}
///
/// Throws the JSON library's exception for text that is not UTF-8.
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
  nlohmann::json m_document;
};

}  // namespace TesselConverter
