// What the companion decides and makes, held against slow obvious ways over texts that are made
// here. The windows are small.
#include <gtest/gtest.h>

#include <random>

#include "companion/backups/marker_difference.h"
#include "companion/cleaning/restored_text.h"
#include "companion/cleaning/with_blanks.h"
#include "companion/formats/patch.h"
#include "companion_references.h"
#include "memory_file.h"
#include "merge/file.h"
#include "merge/hashing/sha1.h"
#include "reference_filter.h"

namespace {

using companion::MarkerDifference;

std::minstd_rand Random(11);

std::size_t Below(std::size_t bound) {
  return Random() % bound;
}

/// Mostly what markers are made of, so that they begin, end and meet in every way; sometimes a long
/// piece, so that they meet the edges of windows. The line ends are all of one kind.
std::string Text(std::size_t most) {
  static const std::string ends[] = {"\n", "\r\n", "\r"};
  const std::string end = ends[Below(3)];
  const std::string pieces[] = {"//-V5", "//-V501", "//-V9", "//-V", "//-", "/", "//", "-V5",
                                "5",     "9",       "V",     "x",    end,   end, end,  " "};
  std::string text;
  for (auto count = Below(most); count > 0; --count) {
    text += pieces[Below(std::size(pieces))];
    text += Below(40) == 0 ? std::string(200 + Below(80), 'x') : "";
    text += Below(40) == 0 ? "//-V" + std::string(10 + Below(6), '7') : "";
  }
  return text;
}

/// Where the digits of the marker end that stands at `at`; `at` itself when none does.
std::size_t MarkerEnd(std::string_view text, std::size_t at) {
  return text.substr(at).starts_with("//-V")
             ? std::min(text.find_first_not_of("0123456789", at + 4), text.size())
             : at;
}

/// `text` less some of its markers, each with as much behind it as may belong to it.
std::string WithoutSome(std::string_view text) {
  std::string cleaned;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = MarkerEnd(text, at);
    if (end == at || Below(2) == 0) {
      cleaned += text[at++];
      continue;
    }
    const std::size_t lineEnd = std::min(text.find_first_of("\r\n", end), text.size());
    at = Below(3) == 0 ? end + Below(lineEnd - end + 1) : end;
  }
  return cleaned;
}

/// Another text, close to the one given.
std::string Altered(std::string text) {
  const std::size_t at = Below(text.size() + 1);
  switch (Below(3)) {
    case 0:
      return text.insert(at, Text(3));
    case 1:
      return text + Text(3);
    default:
      return text.erase(at, Below(3));
  }
}

MarkerDifference Expected(std::string_view source, std::string_view backup) {
  switch (ReferenceDifferenceOf(source, backup)) {
    case ReferenceDifference::OnlyMarkers:
      return MarkerDifference::OnlyMarkers;
    case ReferenceDifference::OnlyMarkersSoFar:
      return MarkerDifference::OnlyMarkersSoFar;
    default:
      return MarkerDifference::MoreThanMarkers;
  }
}

MarkerDifference Found(std::string_view source, std::string_view backup) {
  const MemoryFile sourceFile(source);
  const MemoryFile backupFile(backup);
  SourceFile openedSource(sourceFile.Path());
  SourceFile openedBackup(backupFile.Path());
  return companion::DifferenceOf(openedSource, openedBackup);
}

TEST(GeneratedCompanion, SourcesAreToldFromTheirBackupsAsByTryingEverything) {
  int counts[4] = {};
  for (int round = 0; round < 10'000; ++round) {
    const std::string backup = Text(round % 2 == 0 ? 6 : 60);
    std::string source = WithoutSome(backup);
    const bool isAltered = Below(3) == 0;
    source = isAltered
                 ? Altered(source)
                 : source.substr(0, source.size() - std::min(source.size(), Below(2) * Below(9)));
    const MarkerDifference found = Found(source, backup);
    ASSERT_EQ(found, Expected(source, backup))
        << testing::PrintToString(source) << " of " << testing::PrintToString(backup);
    ++counts[static_cast<int>(found)];
  }
  EXPECT_GT(std::min({counts[0], counts[1], counts[2]}), 500);
}

/// The markers of a text as a report lists them: some of those that are written as it would.
std::vector<Line> ListedLines(std::string_view text) {
  std::vector<Line> lines;
  for (std::uint32_t number = 1; !text.empty(); ++number) {
    Line line = {number, {}};
    std::uint64_t at = 0;
    const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
    while (at < length) {
      const std::size_t end = MarkerEnd(text.substr(0, length), at);
      if (end > at + 4 && end < at + 15 && Below(3) != 0) {
        const std::uint64_t code = std::stoull(std::string(text.substr(at + 4, end - at - 4)));
        line.markers.push_back({code, {}, {at, end}});
      }
      at = std::max<std::uint64_t>(end, at + 1);
    }
    if (!line.markers.empty()) {
      lines.push_back(line);
    }
    const std::string_view end = text.substr(length);
    text.remove_prefix(length + (end.starts_with("\r\n") || end.starts_with("\n\r")
                                     ? 2
                                     : std::min<std::size_t>(end.size(), 1)));
  }
  return lines;
}

/// Changes one number of the record.
void Spoil(std::vector<Line>& lines) {
  Line& line = lines[Below(lines.size())];
  Marker& marker = line.markers[Below(line.markers.size())];
  std::uint64_t* const numbers[] = {&marker.code, &marker.offsets.begin, &marker.offsets.end};
  if (Below(4) == 0) {
    line.line += Below(2) == 0 ? 1 : -1;
  } else {
    *numbers[Below(3)] += Below(2) == 0 ? 1 : Below(300);
  }
}

TEST(GeneratedCompanion, SourcesAreRestoredAsTheyWere) {
  for (int round = 0; round < 6'000; ++round) {
    const std::string before = Text(40);
    File file{1, {}, HashOf(before), ListedLines(before)};
    const std::string cleaned = ReferenceFilter(before, file.lines);
    const auto restored = companion::Restored(cleaned, file);
    ASSERT_EQ(restored ? restored->text : "", before);
    if (!file.lines.empty()) {
      Spoil(file.lines);
      const auto other = companion::Restored(cleaned, file);
      ASSERT_TRUE(!other || other->text == before) << testing::PrintToString(cleaned);
    }
    // In a run that takes blanks, tabs and spaces are not told from one another.
    file.lines = ListedLines(before);
    const std::string trimmed = companion::Without(
        companion::RangesOf(companion::WithBlanks(file.lines, before), before), before);
    if (companion::Restored(trimmed, file)) {
      ASSERT_EQ(companion::Restored(trimmed, file)->text, before);
    }
    ASSERT_EQ(Found(trimmed, before), MarkerDifference::OnlyMarkers)
        << testing::PrintToString(trimmed) << " of " << testing::PrintToString(before);
  }
}

TEST(GeneratedCompanion, PatchesSayNoMoreAndNoLessThanWhatChanges) {
  for (int round = 0; round < 6'000; ++round) {
    PlannedCut cut = {Text(round % 2 == 0 ? 12 : 90), {}};
    const std::size_t dense = 1 + Below(60);
    for (std::size_t at = Below(dense); at < cut.before.size();) {
      const std::size_t end = std::min(cut.before.size(), at + 1 + Below(6));
      cut.dropped.push_back({at, end});
      at = end + 1 + Below(dense);
    }
    const std::string name = Below(2) == 0 ? "a" : "a b";
    const std::string patch = companion::MakePatch(name, cut).text;
    ASSERT_EQ(patch.empty(), cut.dropped.empty());
    ASSERT_EQ(ReferenceApply(patch, cut.before), ReferenceAfter(cut))
        << testing::PrintToString(cut.before) << patch;
  }
}

}  // namespace
