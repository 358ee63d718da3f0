// The look at what is cut, one line of a source for each rule.
#include "companion/safety/cut_safety.h"

#include <gtest/gtest.h>

#include <format>
#include <string>

namespace {

using companion::CutDanger;

constexpr auto Safe = CutDanger::None;
constexpr auto NoMarker = CutDanger::NoMarker;
constexpr auto InString = CutDanger::InString;
constexpr auto TextBehind = CutDanger::TextBehind;
constexpr auto CodeBehind = CutDanger::CodeBehind;
constexpr auto NextLine = CutDanger::NextLine;

/// What is cut stands between brackets of this kind: «//-V501».
struct Row {
  std::string source;
  CutDanger danger;
  std::uint64_t code = 501;
};

/// Takes the brackets out, and lists what stood between them.
std::vector<Line> ListBracketed(std::string& source, std::uint64_t code) {
  std::vector<Line> lines;
  std::uint32_t number = 1;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] == '\n') {
      ++number;
      begin = i + 1;
    } else if (source.compare(i, 2, "«") == 0) {
      source.erase(i, 2);
      const std::size_t end = source.find("»");
      source.erase(end, 2);
      if (lines.empty() || lines.back().line != number) {
        lines.push_back({.line = number, .markers = {}});
      }
      lines.back().markers.push_back(
          {.code = code, .columns = {}, .offsets = {.begin = i - begin, .end = end - begin}});
      --i;
    }
  }
  return lines;
}

TEST(CutSafety, EachLineIsJudgedByWhatItsCutDoes) {
  const Row rows[] = {
      // Plain ones, and such as need a scan.
      {"int a; «//-V501»\nint b;\n", Safe},
      {"int a; «//-V501»", Safe},
      {"int a; «//-V501 reason»\r\nint b;", Safe},
      {"a; «//-V501» «//-V501»\n", Safe},
      {"a; «//-V501» //-V502\n", Safe},
      {"a; //-V502 «//-V501»\n", Safe},
      {"a; «//-V501» // said at length\nb;", Safe},
      {"a; «//-V501» /* said */ \nb;", Safe},
      {"// see «//-V501» here\na;", Safe},
      {"/* «//-V501» */ a;", Safe},
      {"f(\"it's\", 'x', '\\'', \"\\\"\"); «//-V501»\nb;", Safe},
      {"x = 1'000'000; «//-V501»\ny = 'a';", Safe},
      {"x = u8'\\\\'; «//-V501»\ny = 'a';", Safe},
      {"#include <it's//x> «//-V501»\n", Safe},
      {"#if __has_include(<it's//x>) «//-V501»\n", Safe},
      {"#include \"a.h\" «//-V501»\n", Safe},
      {"#define X \"//\" «//-V501»\n", Safe},
      {"#error don't\na; «//-V501»\n", Safe},
      {"#if 0\ndon't\n#endif\na; «//-V501» \n", Safe},
      {"R\"(\n\" )\"; «//-V501»\nb;", Safe},
      {"u8R\"x(')\" )x\"; «//-V501»\nb;", Safe},
      {"// goes on \\\n to «//-V501»\nb;", Safe},
      {"a; «//-V501 \\»\n// b\nc;", Safe},
      {"a; «//-V501» ?\?/\n", TextBehind},
      // No marker, or another one.
      {"a; // «//-V501»\n", NoMarker, 502},
      {"a; «//-V0501»\n", Safe},
      {"a; «//-V501»\n", Safe, 0},
      {"a; «//-V» x\n", NoMarker},
      {"a; «//-V»\n", Safe, 0},
      {"a; «//-V50»1\n", NoMarker, 50},
      {"a; «//-V50»1\n", NoMarker, 0},
      {"a;« //-V501»\n", NoMarker},
      {"a; /«/-V501»\n", NoMarker},
      {"/* *«//-V501»\n", NoMarker},
      {"int «abc»;\n", NoMarker},
      // Literals.
      {"f(\"a «//-V501»\");\n", InString},
      {"f('«//-V501»');\n", InString},
      {"f(\"\\\n«//-V501»\");\n", InString},
      {"R\"(\n«//-V501»\n)\";", InString},
      {"FR\"(\"; «//-V501»\n)\";", Safe},
      {"#include <a«//-V501»>\n", InString},
      {"#error don't «//-V501»\n", InString},
      {"x = 1 'a «//-V501»\n", InString},
      // What stays.
      {"return 1;  «//-V501» counted twice on purpose\n", TextBehind},
      {"a «//-V501»/* b */ c\n", TextBehind},
      {"a /«//-V501»*b\n", NextLine},
      {"a; ///«//-V501»\n", Safe},
      {"a; /«//-V501»/\n", Safe},
      {"a; /«//-V501»\nb;", TextBehind},
      {"/* «//-V501 */» int a;\n", CodeBehind},
      {"a; «//-V501» \\\nb;\n", NextLine},
      {"a; «//-V501» \\  \r\nb;\r\n", NextLine},
      {"a; «//-V501» \\\n\nb;\n", Safe},
      {"a; «//-V501 \\»\nb;\n", NextLine},
      {"// \\«//-V501»\nint a;\n", NextLine},
      {"#define A \\«//-V501»\nint a;\n", NextLine},
      {"a; // «//-V501 \\»\nb;\n", NextLine},
      {"/* «//-V501 */»\n int a;\n", NextLine},
      {"a; // x «//-V501» /* y\nb;\n", Safe},
      {"a; «//-V501» /* y\nb;\n", NextLine},
  };
  for (Row const& row : rows) {
    std::string source = row.source;
    const std::vector<Line> lines = ListBracketed(source, row.code);
    const auto unsafe = companion::UnsafeLines(lines, source);
    EXPECT_EQ(Words(unsafe.empty() ? Safe : unsafe.front().danger), Words(row.danger))
        << row.source;
  }
}

TEST(CutSafety, UnsafeLinesLeaveTheOthersSafe) {
  std::string source =
      "a; «//-V501»\nb; «//-V501» c\n\nd; «//-V501» \\\n// e\nR\"(«//-V501»)\"; f; «//-V501»\n";
  std::vector<Line> lines = ListBracketed(source, 501);
  lines.push_back({.line = 2, .markers = lines[0].markers});   // Not behind the one before it.
  lines.push_back({.line = 70, .markers = lines[0].markers});  // Not there.
  const auto unsafe = companion::UnsafeLines(lines, source);
  std::string found;
  for (auto const& [index, line, danger] : unsafe) {
    found += std::format("{}:{}:{} ", index, line, static_cast<int>(danger));
  }
  EXPECT_EQ(found, "1:2:3 3:6:2 4:2:1 5:70:1 ");
  const std::vector<Line> safe = companion::SafeLines(lines, unsafe);
  EXPECT_EQ(safe, (std::vector{lines[0], lines[2]}));
  EXPECT_TRUE(companion::UnsafeLines(safe, source).empty());
  EXPECT_EQ(companion::DangerOf(unsafe, 6), InString);
  EXPECT_EQ(companion::DangerOf(unsafe, 1), Safe);
}

}  // namespace
