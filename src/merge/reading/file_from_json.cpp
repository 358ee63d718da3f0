#include "merge/reading/file_from_json.h"

#include "merge/paths/source_tree_placeholder.h"

namespace {

using nlohmann::json;

/// Cuts off the fraction, and takes a negative value modulo 2^64, as the conversion of a negative
/// integer does. For values beyond 64 bits C++ leaves the result undefined; here it is always the
/// one that x86-64 processors give, 2^63.
std::uint64_t TruncateToUnsigned(double value) {
  constexpr double twoTo63 = 9223372036854775808.0;
  if (value >= twoTo63 && value < 2 * twoTo63) {
    return static_cast<std::uint64_t>(value);
  }
  const bool fitsSigned = value >= -twoTo63 && value < twoTo63;
  return fitsSigned ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
                    : std::uint64_t{1} << 63U;
}

/// Any JSON number, true or false, converted to the field's type. The library's own conversion
/// takes true and false for 32-bit fields but refuses them for those of 64 bits.
template <typename Unsigned>
Unsigned ToNumber(json const& j) {
  if (j.is_boolean()) {
    return j.get<bool>() ? 1 : 0;
  }
  if (j.is_number_float()) {
    return static_cast<Unsigned>(TruncateToUnsigned(j.get<double>()));
  }
  return j.get<Unsigned>();
}

}  // namespace

// The conversions of the smaller records are found by the library through their types, so they
// cannot stand in the unnamed namespace.

static void from_json(json const& j, Range& range) {
  range = {ToNumber<std::uint64_t>(j.at("begin")), ToNumber<std::uint64_t>(j.at("end"))};
}

static void from_json(json const& j, Marker& marker) {
  if (const auto code = j.find("code"); code != j.end()) {
    marker.code = ToNumber<std::uint64_t>(*code);
  }
  j.at("columns").get_to(marker.columns);
  j.at("offsets").get_to(marker.offsets);
}

static void from_json(json const& j, Line& line) {
  line.line = ToNumber<std::uint32_t>(j.at("line"));
  j.at("markers").get_to(line.markers);
}

void from_json(json const& j, File& file) {
  if (const auto version = j.find("version"); version != j.end()) {
    file.version = ToNumber<std::uint32_t>(*version);
  }
  file.path = WithoutPlaceholder(j.at("path").get<std::string>());
  j.at("hash").get_to(file.hash);
  j.at("lines").get_to(file.lines);
}

FileSet FilesFromJson(json const& j) {
  // A report without this number is no structured report; which number it is does not matter.
  static_cast<void>(ToNumber<std::uint32_t>(j.at("version")));
  FileSet files;
  for (json const& record : j.at("files").get_ref<json::array_t const&>()) {
    // With the end as a hint, because reports are sorted. Of two records for a path the first wins.
    files.insert(files.end(), record.get<File>());
  }
  return files;
}
