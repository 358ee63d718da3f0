// A SARIF 2.1.0 log.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "json/pretty_json_writer.h"

namespace companion {

/// The whole of some lines, or a part of one. Numbers are from 1, but for the offset.
struct SarifRegion {
  std::uint32_t line = 0;  ///< 0 when there is no region. So is endLine.
  std::uint32_t endLine = 0;
  std::uint64_t column = 0;  ///< In UTF-16 code units, as the next two; 0 for whole lines.
  std::uint64_t offset = 0;  ///< From the front of the file.
  std::uint64_t length = 0;
};

struct SarifPlace {
  std::string_view path;  ///< Relative to the root, or behind what stands for it.
  SarifRegion region;
};

struct SarifResult {
  std::string_view code;
  std::string_view message;
  std::vector<SarifPlace> places;
  bool isFixable = false;  ///< By taking out what is at the places, which have columns then.
};

/// Writes the log, whose format is that of the standard of that name (OASIS). Of very many results
/// it has several runs, since dashboards take so many of one. What goes wrong shows in the stream.
class SarifLog {
 public:
  /// `codes` are those of all results; `output` must outlive the log.
  SarifLog(std::ostream& output, std::set<std::string> const& codes);

  void Add(SarifResult const& result);

  /// To be called at the end.
  void Finish();

 private:
  void BeginRun();
  void EndRun();
  void WriteLocation(SarifPlace const& place);
  void WriteArtifact(SarifPlace const& place);
  void WriteRegion(std::string_view key, SarifRegion const& region);
  void WriteFix(SarifPlace const& place);
  void WriteTool();
  void WriteRule(std::string_view code);
  void WriteObject(std::string_view name, std::string_view key, std::string_view text);

  std::ostream& m_output;
  PrettyJsonWriter m_json;
  std::map<std::string, std::size_t, std::less<>> m_rules;  ///< Their codes, with their numbers.
  std::size_t m_runs = 0;
  std::size_t m_resultsOfRun = 0;
};

}  // namespace companion
