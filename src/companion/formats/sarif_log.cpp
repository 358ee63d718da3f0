#include "companion/formats/sarif_log.h"

#include <algorithm>
#include <cstddef>
#include <format>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "json/pretty_json_writer.h"
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

/// Writes the log piece by piece, the keys of each object in ascending order.
class SarifWriter {
 public:
  SarifWriter(std::ostream& output, Warnings const& warnings) : m_json(output) {
    for (FoundWarning const& warning : warnings.All()) {
      m_rules.emplace(*warning.code, 0);
    }
    std::size_t index = 0;
    for (auto& [code, number] : m_rules) {
      number = index++;
    }
  }

  void Write(std::span<FoundWarning const> warnings) {
    m_json.BeginObject();
    m_json.Text("$schema", Schema);
    m_json.Key("runs");
    m_json.BeginArray();
    for (std::size_t run = 1; run == 1 || !warnings.empty(); ++run) {
      const std::size_t count = std::min(MostResults, warnings.size());
      WriteRun(run, warnings.first(count));
      warnings = warnings.subspan(count);
    }
    m_json.EndArray();
    m_json.Text("version", "2.1.0");
    m_json.EndObject();
    m_json.Flush();
  }

 private:
  void WriteRun(std::size_t run, std::span<FoundWarning const> warnings) {
    m_json.BeginObject();
    WriteObject("automationDetails", "id",
                run == 1 ? "redundant-markers/" : std::format("redundant-markers-{}/", run));
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
    for (FoundWarning const& warning : warnings) {
      WriteResult(warning);
    }
    m_json.EndArray();
    m_json.Key("tool");
    WriteTool();
    m_json.EndObject();
  }

  void WriteResult(FoundWarning const& warning) {
    m_json.BeginObject();
    m_json.Text("level", "warning");
    m_json.Key("locations");
    m_json.BeginArray();
    for (WarningPlace const& place : warning.places) {
      WriteLocation(place);
    }
    m_json.EndArray();
    WriteObject("message", "text", *warning.message);
    m_json.Text("ruleId", *warning.code);
    m_json.Number("ruleIndex", m_rules.at(*warning.code));
    m_json.EndObject();
  }

  void WriteLocation(WarningPlace const& place) {
    m_json.BeginObject();
    m_json.Key("physicalLocation");
    m_json.BeginObject();
    m_json.Key("artifactLocation");
    m_json.BeginObject();
    m_json.Text("uri", ToUri(WithoutPlaceholder(*place.file)));
    m_json.Text("uriBaseId", Root);
    m_json.EndObject();
    if (place.line > 0) {
      m_json.Key("region");
      m_json.BeginObject();
      m_json.Number("endLine", std::max(place.line, place.endLine));
      m_json.Number("startLine", place.line);
      m_json.EndObject();
    }
    m_json.EndObject();
    m_json.EndObject();
  }

  void WriteTool() {
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

  void WriteRule(std::string_view code) {
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

  void WriteObject(std::string_view name, std::string_view key, std::string_view text) {
    m_json.Key(name);
    m_json.BeginObject();
    m_json.Text(key, text);
    m_json.EndObject();
  }

  PrettyJsonWriter m_json;
  std::map<std::string, std::size_t, std::less<>> m_rules;  ///< Their codes, with their numbers.
};

}  // namespace

void WriteSarif(Warnings const& warnings, std::ostream& output) {
  SarifWriter(output, warnings).Write(warnings.All());
  output << '\n';
}

}  // namespace companion
