#include "companion/formats/sarif_log.h"

#include <algorithm>
#include <format>
#include <string>
#include <string_view>

#include "merge/paths/source_tree_placeholder.h"

namespace companion {

namespace {

constexpr std::string_view Schema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";
constexpr auto InformationUri = std::string_view(QLN_INFORMATION_URI);
constexpr std::string_view Root = "%SRCROOT%";

/// What dashboards take of one run.
constexpr std::size_t MostResults = 25'000;

/// A path as a relative URI. What begins with two slashes would be the name of a host.
std::string ToUri(std::string_view path) {
  while (path.starts_with("//")) {
    path.remove_prefix(1);
  }
  constexpr std::string_view unreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~/";
  std::string uri;
  for (const char byte : path) {
    if (unreserved.find(byte) != std::string_view::npos) {
      uri += byte;
    } else {
      uri += std::format("%{:02X}", static_cast<unsigned char>(byte));
    }
  }
  return uri;
}

}  // namespace

SarifLog::SarifLog(std::ostream& output, std::set<std::string> const& codes)
    : m_output(output), m_json(output) {
  for (std::string const& code : codes) {
    m_rules.emplace(code, m_rules.size());
  }
  m_json.BeginObject();
  m_json.Text("$schema", Schema);
  m_json.Key("runs");
  m_json.BeginArray();
  BeginRun();
}

void SarifLog::Add(SarifResult const& result) {
  if (m_resultsOfRun == MostResults) {
    EndRun();
    BeginRun();
  }
  ++m_resultsOfRun;
  m_json.BeginObject();
  if (result.isFixable) {
    m_json.Key("fixes");
    m_json.BeginArray();
    std::ranges::for_each(result.places, [this](SarifPlace const& place) { WriteFix(place); });
    m_json.EndArray();
  }
  m_json.Text("level", "warning");
  m_json.Key("locations");
  m_json.BeginArray();
  std::ranges::for_each(result.places, [this](SarifPlace const& place) { WriteLocation(place); });
  m_json.EndArray();
  WriteObject("message", "text", result.message);
  m_json.Text("ruleId", result.code);
  m_json.Number("ruleIndex", m_rules.find(result.code)->second);
  m_json.EndObject();
}

void SarifLog::Finish() {
  EndRun();
  m_json.EndArray();
  m_json.Text("version", "2.1.0");
  m_json.EndObject();
  m_json.Flush();
  m_output << '\n';
}

void SarifLog::BeginRun() {
  ++m_runs;
  m_resultsOfRun = 0;
  m_json.BeginObject();
  WriteObject("automationDetails", "id",
              m_runs == 1 ? "redundant-markers/" : std::format("redundant-markers-{}/", m_runs));
  m_json.Text("columnKind", "utf16CodeUnits");
  m_json.Key("originalUriBaseIds");
  m_json.BeginObject();
  m_json.Key(Root);
  m_json.BeginObject();
  WriteObject("description", "text", "The source-tree root.");
  m_json.EndObject();
  m_json.EndObject();
  m_json.Key("results");
  m_json.BeginArray();
}

void SarifLog::EndRun() {
  m_json.EndArray();
  m_json.Key("tool");
  WriteTool();
  m_json.EndObject();
}

void SarifLog::WriteLocation(SarifPlace const& place) {
  m_json.BeginObject();
  m_json.Key("physicalLocation");
  m_json.BeginObject();
  WriteArtifact(place);
  if (place.region.line > 0) {
    WriteRegion("region", place.region);
  }
  m_json.EndObject();
  m_json.EndObject();
}

void SarifLog::WriteArtifact(SarifPlace const& place) {
  m_json.Key("artifactLocation");
  m_json.BeginObject();
  m_json.Text("uri", ToUri(WithoutPlaceholder(place.path)));
  m_json.Text("uriBaseId", Root);
  m_json.EndObject();
}

void SarifLog::WriteRegion(std::string_view key, SarifRegion const& region) {
  m_json.Key(key);
  m_json.BeginObject();
  if (region.column > 0) {
    m_json.Number("charLength", region.length);
    m_json.Number("charOffset", region.offset);
    m_json.Number("endColumn", region.column + region.length);
  }
  m_json.Number("endLine", std::max(region.line, region.endLine));
  if (region.column > 0) {
    m_json.Number("startColumn", region.column);
  }
  m_json.Number("startLine", region.line);
  m_json.EndObject();
}

void SarifLog::WriteFix(SarifPlace const& place) {
  m_json.BeginObject();
  m_json.Key("artifactChanges");
  m_json.BeginArray();
  m_json.BeginObject();
  WriteArtifact(place);
  m_json.Key("replacements");
  m_json.BeginArray();
  m_json.BeginObject();
  WriteRegion("deletedRegion", place.region);
  WriteObject("insertedContent", "text", "");
  m_json.EndObject();
  m_json.EndArray();
  m_json.EndObject();
  m_json.EndArray();
  WriteObject("description", "text", "Remove the marker.");
  m_json.EndObject();
}

void SarifLog::WriteTool() {
  m_json.BeginObject();
  m_json.Key("driver");
  m_json.BeginObject();
  if (!InformationUri.empty()) {
    m_json.Text("informationUri", InformationUri);
  }
  m_json.Text("name", "qln-fp-cleaner");
  m_json.Key("rules");
  m_json.BeginArray();
  for (auto const& [code, number] : m_rules) {
    WriteRule(code);
  }
  m_json.EndArray();
  m_json.Text("version", QLN_VERSION);
  m_json.EndObject();
  m_json.EndObject();
}

void SarifLog::WriteRule(std::string_view code) {
  m_json.BeginObject();
  WriteObject("fullDescription", "text",
              std::format("A comment on this line silences {}, which the analyzer no longer "
                          "reports there in any of the configurations that were merged.",
                          code));
  WriteObject("help", "text",
              std::format("Remove the comment, by hand or with 'qln-fp-tree clean'. A marker "
                          "that silences nothing tells readers of a problem that is not there, "
                          "and will hide the next {} on its line.",
                          code));
  m_json.Text("id", code);
  m_json.Text("name", std::format("RedundantMarker{}", code));
  WriteObject("shortDescription", "text",
              std::format("Redundant false alarm marker for {}.", code));
  m_json.EndObject();
}

void SarifLog::WriteObject(std::string_view name, std::string_view key, std::string_view text) {
  m_json.Key(name);
  m_json.BeginObject();
  m_json.Text(key, text);
  m_json.EndObject();
}

}  // namespace companion
