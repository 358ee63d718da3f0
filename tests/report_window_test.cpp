#include "merge/reading/report_window.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "merge/reading/framed_record.h"
#include "scratch_directory.h"

namespace {

std::vector<std::string> RecordsOf(std::filesystem::path const& path) {
  ReportWindow window(path);
  std::vector<std::string> records;
  while (window.SkipAny("\n")) {
    FramedRecord record(window);
    const std::string text(std::istreambuf_iterator<char>(&record), {});
    if (!record.Close()) {
      break;
    }
    records.push_back(text);
  }
  return records;
}

TEST(ReportWindow, CutsRecordsByCountingBraces) {
  const ScratchDirectory scratch;
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"", {}},
      {"\n\n", {}},
      {"{}", {"{}"}},
      {"{\"a\":{}}\n\n{\"b\":1}\n", {"{\"a\":{}}", "{\"b\":1}"}},
      {"{\n \"a\": 1\n}{}", {"{\n \"a\": 1\n}", "{}"}},
      {"{} {}", {"{}", " ", "{}"}},
      {"{}\r\n{}", {"{}", "\r", "{}"}},
      {"[{}]", {"[", "{}", "]"}},
      {"{\"a}\":1}", {"{\"a}", "\"", ":", "1"}},  // Then a brace that nothing opened.
      {"{}\n{\"a\":", {"{}"}},
      {"}{{}", {"}{", "{}"}},
      {"{}}", {"{}"}},
  };
  for (auto const& [text, records] : cases) {
    EXPECT_EQ(RecordsOf(scratch.Write("report", text)), records) << text;
  }
}

TEST(ReportWindow, RecordsAcrossAndBeyondTheWindow) {
  const ScratchDirectory scratch;
  std::vector<std::string> records;
  std::string text;
  for (const std::size_t size :
       std::vector<std::size_t>{100'000, 40'000, 700'000, 2, 262'144, 262'143, 300}) {
    records.push_back("{" + std::string(size - 2, ' ') + "}");
    text += records.back() + "\n";
  }
  EXPECT_EQ(RecordsOf(scratch.Write("report", text)), records);
}

TEST(ReportWindow, WhatCannotBeReadIsEmpty) {
  const ScratchDirectory scratch;
  EXPECT_TRUE(RecordsOf(scratch.Path() / "missing").empty());
  EXPECT_TRUE(RecordsOf(scratch.Path()).empty());
}

}  // namespace
