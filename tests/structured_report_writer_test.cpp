#include "merge/writing/structured_report_writer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "merge/files.h"

namespace {

std::string Written(Files const& files) {
  std::ostringstream stream;
  WriteStructuredReport(files.version, files.files, stream);
  return stream.str();
}

TEST(StructuredReportWriter, WritesTheBytesOfTheLibrary) {
  std::minstd_rand random(3);
  const std::string_view names[] = {"a", "/b", "\\c", "d/\"e\"", "\xc3\xa4/\x7f", "{\n}"};
  for (int round = 0; round < 200; ++round) {
    Files files;
    for (auto count = random() % 4; count > 0; --count) {
      File file;
      file.path = std::string(names[random() % std::size(names)]);
      file.hash = names[random() % std::size(names)];
      for (auto lines = random() % 3; lines > 0; --lines) {
        const std::uint64_t wide = random() * 8589934592U;
        file.lines.push_back({static_cast<std::uint32_t>(random()), {}});
        file.lines.back().markers.resize(random() % 3, {random() % 2, {1, wide}, {wide, 0}});
      }
      files.files.insert(file);
    }
    ASSERT_EQ(Written(files), nlohmann::json(files).dump(2));
  }
}

}  // namespace
