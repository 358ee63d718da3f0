// What the companion decides and makes, as plainly as it can be said, to hold the fast ways
// against.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cleaner/planned_cut.h"

enum class ReferenceDifference { OnlyMarkers, OnlyMarkersSoFar, MoreThanMarkers };

/// Whether `source` is `backup` less some markers, or a beginning of such a text. This alone says
/// what a marker is: //-V, the digits behind it, and anything more of its line. Every choice is
/// tried at once: `kept` and `cut` hold how much of the source those choices have used up that keep
/// the next byte of the backup, and that may drop it; `blank` those that drop blanks, a marker and
/// all that is left of the line.
inline ReferenceDifference ReferenceDifferenceOf(std::string_view source, std::string_view backup) {
  std::set<std::size_t> kept = {0};
  std::set<std::size_t> cut, blank;
  std::vector<std::set<std::size_t>> begun(backup.size() + 1);  // By where the digits end.
  bool isBeginning = source.empty();
  for (std::size_t at = 0; at < backup.size(); ++at) {
    if (backup.substr(at).starts_with("//-V")) {
      std::size_t digits = at + 4;
      while (digits < backup.size() && std::isdigit(static_cast<unsigned char>(backup[digits]))) {
        ++digits;
      }
      begun[digits].insert(kept.begin(), kept.end());
    }
    const bool isLineEnd = backup[at] == '\n' || backup[at] == '\r';
    const std::size_t behind = std::min(backup.find_first_not_of(" \t\v\f", at), backup.size());
    const bool isInBlanks =
        at > 0 && std::string_view(" \t\v\f").find(backup[at - 1]) != std::string_view::npos;
    if (behind > at && !isInBlanks && backup.substr(behind).starts_with("//-V")) {
      blank.insert(kept.begin(), kept.end());
    }
    if (isLineEnd) {
      kept.insert(blank.begin(), blank.end());
      blank.clear();
    }
    std::set<std::size_t> next;
    for (const std::size_t used : kept) {
      if (used < source.size() && source[used] == backup[at]) {
        next.insert(used + 1);
      }
    }
    cut = isLineEnd ? std::set<std::size_t>() : cut;
    cut.insert(begun[at + 1].begin(), begun[at + 1].end());
    kept = next;
    kept.insert(cut.begin(), cut.end());  // A piece may end here.
    isBeginning |= kept.contains(source.size());
  }
  kept.insert(blank.begin(), blank.end());
  return kept.contains(source.size()) ? ReferenceDifference::OnlyMarkers
         : isBeginning                ? ReferenceDifference::OnlyMarkersSoFar
                                      : ReferenceDifference::MoreThanMarkers;
}

/// `cut` applied.
inline std::string ReferenceAfter(PlannedCut const& cut) {
  std::string after = cut.before;
  for (std::size_t i = cut.dropped.size(); i > 0; --i) {
    const auto [begin, end] = cut.dropped[i - 1];
    after.erase(begin, end - begin);
  }
  return after;
}

/// The lines of a text, each with its end.
inline std::vector<std::string> ReferenceLines(std::string_view text) {
  std::vector<std::string> lines;
  for (bool isNew = true; const char byte : text) {
    if (isNew) {
      lines.emplace_back();
    }
    lines.back() += byte;
    isNew = byte == '\n';
  }
  return lines;
}

/// What a patch makes of `before`, when every number and every line of it is right; else what is
/// wrong. That its context is no larger than it should be is seen beside what diff prints.
inline std::string ReferenceApply(std::string_view patch, std::string_view before) {
  const std::vector<std::string> old = ReferenceLines(before);
  const std::vector<std::string> rows = ReferenceLines(patch);
  std::vector<std::string> result;
  std::size_t at = 0;
  for (std::size_t row = 2; row < rows.size();) {
    std::size_t begin = 0, lines = 1, newBegin = 0, newLines = 1;
    const std::string& head = rows[row++];
    if (std::sscanf(head.c_str(), "@@ -%zu,%zu", &begin, &lines) < 1 ||
        std::sscanf(head.c_str() + head.find('+'), "+%zu,%zu", &newBegin, &newLines) < 1) {
      return "no hunk: " + head;
    }
    const std::size_t first = begin - (lines == 0 ? 0 : 1);
    if (first < at || first > old.size()) {
      return "out of place: " + head;
    }
    result.insert(result.end(), old.begin() + static_cast<std::ptrdiff_t>(at),
                  old.begin() + static_cast<std::ptrdiff_t>(first));
    const std::size_t already = result.size();
    for (at = first; row < rows.size() && !rows[row].starts_with('@'); ++row) {
      const char sign = rows[row][0];
      std::string line = rows[row].substr(1);
      if (row + 1 < rows.size() && rows[row + 1].starts_with('\\')) {
        line.pop_back();
      }
      if (sign == '\\') {
        continue;
      }
      if (sign != '+' && (at == old.size() || old[at++] != line)) {
        return "another line: " + line;
      }
      if (sign != '-') {
        result.push_back(line);
      }
    }
    if (at - first != lines || result.size() - already != newLines ||
        newBegin != already + (newLines == 0 ? 0 : 1)) {
      return "another count: " + head;
    }
  }
  result.insert(result.end(), old.begin() + static_cast<std::ptrdiff_t>(at), old.end());
  std::string text;
  for (std::string const& line : result) {
    text += line;
  }
  return text;
}
