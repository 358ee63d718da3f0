#include "cleaner/marks_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "merge/hashing/sha1.h"
#include "reference_filter.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<Line>;

Marker At(std::uint64_t begin, std::uint64_t end) {
  return {501, {}, {begin, end}};
}

std::string Filtered(ScratchDirectory const& scratch, std::string_view text, Lines const& lines) {
  scratch.Write("source", text);
  SHA1 sha1;
  sha1.add(text.data(), text.size());
  File file;
  file.path = "source";
  file.hash = sha1.getHash();
  file.lines = lines;
  MarksFilter(file).SaveFilteredFile(scratch.Path());
  EXPECT_EQ(scratch.Read("sourcetemp_qln_facleaner"), text);
  return scratch.Read("source");
}

TEST(MarksFilter, RemovesWhatTheOffsetsSay) {
  const ScratchDirectory scratch;
  const std::tuple<std::string, Lines, std::string> cases[] = {
      {"a //-V1\nb", {{1, {At(2, 7)}}}, "a \nb"},
      {"a\nb//-V1", {{2, {At(1, 6)}}}, "a\nb"},
      {"//-V1 //-V2 c\n", {{1, {At(0, 5), At(6, 11)}}}, "  c\n"},
      {"a\r\nb//-V1\r\nc\r\n", {{2, {At(1, 6)}}}, "a\r\nb\r\nc\r\n"},
      {"a\rb\n\rc//-V1\rd", {{3, {At(1, 6)}}}, "a\rb\n\rc\rd"},
      {"a\nb//-V1\n", {{2, {At(1, 6)}}, {9, {At(0, 4)}}}, "a\nb\n"},
      {"abcdef\n", {{1, {At(2, 3)}}}, "abef\n"},            // Two bytes at the least.
      {"abc\ndef\n", {{1, {At(1, 0)}}}, "a"},               // An end of 0 is never reached.
      {"abc\ndef\nghi", {{1, {At(5, 7)}}}, "abc\nd\nghi"},  // Beyond its line, on into the next.
      {"abc\nabc\nabc", {{2, {At(0, 2)}}, {1, {At(0, 2)}}}, "abc\nc\nabc"},
      // Without markers a reached line is passed over; one never reached is waited for.
      {"abc\nabc\n", {{1, {}}, {2, {}}, {2, {At(0, 2)}}}, "abc\nc\n"},
      {"abc\nabc\n", {{9, {}}, {2, {At(0, 2)}}}, "abc\nabc\n"},
      {"abc\n", {{1, {}}}, "abc\n"},
      {"", {{1, {At(0, 5)}}}, ""},
      // A line end that the edge of the window splits is still one.
      {std::string(EditWindow::Size - 1, 'x') + "\r\nb//-V1\n",
       {{2, {At(1, 6)}}},
       std::string(EditWindow::Size - 1, 'x') + "\r\nb\n"},
  };
  for (auto const& [text, lines, expected] : cases) {
    EXPECT_EQ(Filtered(scratch, text, lines), expected) << text;
  }
}

/// Text that is mostly line ends, or has lines enough to be counted by the block; markers that are
/// mostly sensible.
TEST(MarksFilter, EqualsTheReferenceOnGeneratedFiles) {
  const ScratchDirectory scratch;
  std::minstd_rand random(7);
  const auto below = [&random](std::uint64_t bound) { return random() % bound; };
  const std::vector<std::string_view> kinds[] = {
      {"a", "b", "/", "\r", "\n"}, {"abcdefghijk", "/", "\n"}, {"abcdefghijk", "/", "\r\n"}};
  for (int round = 0; round < 1500; ++round) {
    auto const& pieces = kinds[round % 3];
    const bool isLong = round % 3 != 0;
    // Some files reach over the window, with line ends at its very edge.
    std::string text(round % 50 == 0 ? EditWindow::Size - 4 : 0, round % 100 == 0 ? '\n' : 'x');
    const bool huge = !text.empty();
    for (auto count = below(150); count > 0; --count) {
      text += pieces[below(pieces.size())];
      text += isLong && below(50) == 0 ? std::string(1, "\r\n"[below(2)]) : "";
    }
    Lines lines;
    std::uint32_t number = huge ? static_cast<std::uint32_t>(std::ranges::count(text, '\n')) : 0;
    for (auto count = 1 + below(5); count > 0; --count) {
      number += static_cast<std::uint32_t>(below(isLong ? 30 : 4));
      Line line{number, {}};
      std::uint64_t position = huge && below(2) == 0 ? text.size() - below(100) : 0;
      for (auto markers = below(4); markers > 0; --markers) {
        position += below(6);
        line.markers.push_back(At(position, below(20) == 0 ? 0 : position + below(5)));
      }
      lines.push_back(line);
    }
    ASSERT_TRUE(Filtered(scratch, text, lines) == ReferenceFilter(text, lines))
        << "round " << round;
  }
}

}  // namespace
