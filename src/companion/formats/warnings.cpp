#include "companion/formats/warnings.h"

#include <cerrno>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

namespace companion {

namespace {

using nlohmann::json;

constexpr int FormatVersion = 3;

std::ifstream Open(std::filesystem::path const& report) {
  std::ifstream stream(report, std::ios::binary);
  if (!stream.is_open()) {
    const std::error_code reason(errno, std::system_category());
    throw std::runtime_error(reason == std::errc::no_such_file_or_directory
                                 ? "no such warnings report: " + report.string()
                                 : "cannot read the warnings report " + report.string() + ": " +
                                       reason.message());
  }
  return stream;
}

}  // namespace

/// Takes each warning off the tree as soon as the parser has it whole.
class Warnings::Reader {
 public:
  explicit Reader(Warnings& warnings) : m_warnings(warnings) {}

  void Read(std::ifstream& stream) {
    const json report =
        json::parse(stream, [this](int depth, json::parse_event_t event, json& value) {
          return Take(depth, event, value);
        });
    if (report.at("version") != FormatVersion || !report.at("warnings").is_array()) {
      throw std::runtime_error("another format");
    }
  }

 private:
  /// Whether the value stays in the tree.
  bool Take(int depth, json::parse_event_t event, json& value) {
    if (event == json::parse_event_t::key && depth == 1) {
      m_isInWarnings = value == "warnings";
    }
    if (depth != 2 || !m_isInWarnings || event == json::parse_event_t::object_start ||
        event == json::parse_event_t::array_start) {
      return true;
    }
    FoundWarning warning{Text(value.at("code")), Text(value.at("message")), {}};
    for (json const& position : value.at("positions").get_ref<json::array_t const&>()) {
      warning.places.push_back(
          {Text(position.at("file")), Number(position.at("line")), Number(position.at("endLine"))});
    }
    m_warnings.m_all.push_back(std::move(warning));
    return false;
  }

  static std::uint32_t Number(json const& number) {
    const auto value = number.get_ref<json::number_unsigned_t const&>();
    if (value > std::numeric_limits<std::uint32_t>::max()) {
      throw std::runtime_error("another format");
    }
    return static_cast<std::uint32_t>(value);
  }

  std::string const* Text(json const& text) {
    return &*m_warnings.m_texts.insert(text.get_ref<std::string const&>()).first;
  }

  Warnings& m_warnings;
  bool m_isInWarnings = false;
};

Warnings::Warnings(std::filesystem::path const& report) {
  std::ifstream stream = Open(report);
  try {
    Reader(*this).Read(stream);
  } catch (std::exception const&) {
    throw std::runtime_error("not a warnings report: " + report.string());
  }
}

}  // namespace companion
