#include "merge/reading/report_json.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

constexpr std::array<std::string_view, 12> KnownKeys = {"files",   "version", "path",  "hash",
                                                        "lines",   "line",    "code",  "markers",
                                                        "columns", "offsets", "begin", "end"};

/// How many objects and arrays stand around a number of a range in a structured report, where it is
/// deepest: report, files, record, lines, line, markers, marker, range.
constexpr std::size_t Deepest = 8;

/// Is told by the parser what it finds, piece by piece, and adds it to the tree; false stops the
/// parser.
class TreeBuilder : public json::json_sax_t {
 public:
  explicit TreeBuilder(json& root) : m_root(root) {}

  bool null() override { return Scalar(nullptr); }
  bool boolean(bool value) override { return Scalar(value); }
  bool number_integer(json::number_integer_t value) override { return Scalar(value); }
  bool number_unsigned(json::number_unsigned_t value) override { return Scalar(value); }
  bool number_float(json::number_float_t value, json::string_t const& /*text*/) override {
    return Scalar(value);
  }
  bool string(json::string_t& value) override { return Scalar(std::move(value)); }
  bool binary(json::binary_t& /*value*/) override { return false; }  // Text holds none.

  bool start_object(std::size_t /*size*/) override { return Begin(json::object()); }
  bool end_object() override { return End(); }
  bool start_array(std::size_t /*size*/) override { return Begin(json::array()); }
  bool end_array() override { return End(); }
  bool key(json::string_t& name) override {
    if (m_openLeftOut == 0) {
      m_leavesNextOut = std::ranges::find(KnownKeys, name) == KnownKeys.end();
      m_member = m_leavesNextOut ? nullptr : &(*m_open.back())[name];
    }
    return true;
  }

  bool parse_error(std::size_t /*position*/, std::string const& /*token*/,
                   json::exception const& /*error*/) override {
    return false;
  }

 private:
  bool Scalar(json&& value) {
    if (m_openLeftOut > 0 || std::exchange(m_leavesNextOut, false)) {
      return true;
    }
    if (m_open.empty()) {
      return false;
    }
    Put(std::move(value));
    return true;
  }

  bool Begin(json&& empty) {
    if (m_openLeftOut > 0 || std::exchange(m_leavesNextOut, false)) {
      ++m_openLeftOut;
    } else if (m_open.size() == Deepest) {
      Put(nullptr);
      ++m_openLeftOut;
    } else if (m_open.empty() && !empty.is_object()) {
      return false;
    } else {
      m_open.push_back(&Put(std::move(empty)));
    }
    return true;
  }

  bool End() {
    if (m_openLeftOut > 0) {
      --m_openLeftOut;
    } else {
      m_open.pop_back();
    }
    return true;
  }

  json& Put(json&& value) {
    if (m_open.empty()) {
      return m_root = std::move(value);
    }
    json& parent = *m_open.back();
    return parent.is_array() ? parent.emplace_back(std::move(value)) : *m_member = std::move(value);
  }

  json& m_root;
  std::vector<json*> m_open;      ///< The objects and arrays in the tree that are not closed yet.
  json* m_member = nullptr;       ///< Where the value of the last key goes.
  std::size_t m_openLeftOut = 0;  ///< How many unclosed objects and arrays are not in the tree.
  bool m_leavesNextOut = false;   ///< Whether the next value has an unknown key.
};

}  // namespace

json ParseReportJson(std::istream& text) {
  json tree;
  TreeBuilder builder(tree);
  if (!json::sax_parse(text, &builder)) {
    tree = nullptr;
  }
  return tree;
}
