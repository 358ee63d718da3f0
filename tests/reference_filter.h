// The marker filter as plainly as it can be said, to hold the fast one against.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "merge/file.h"

/// `text` without the listed markers: one byte after the other, as the states define it.
inline std::string ReferenceFilter(std::string_view text, std::vector<Line> const& lines) {
  enum { NotInterested, Interested, Pass, WriteAll };
  std::string out;
  std::uint64_t column = 0;
  std::uint64_t number = 1;
  std::size_t line = 0;
  std::size_t marker = 0;
  const auto stateAtBegin = [&] {
    while (line < lines.size() && number == lines[line].line && lines[line].markers.empty()) {
      ++line;
    }
    return line == lines.size()         ? WriteAll
           : number == lines[line].line ? Interested
                                        : NotInterested;
  };
  auto state = stateAtBegin();
  for (std::size_t i = 0; i < text.size(); ++i, ++column) {
    const char byte = text[i];
    if (state == WriteAll) {
      out += byte;
    } else if (state == NotInterested) {
      out += byte;
      if (byte == '\n' || byte == '\r') {
        if (i + 1 < text.size() && text[i + 1] == (byte == '\n' ? '\r' : '\n')) {
          out += text[++i];
        }
        column = std::uint64_t(-1);
        ++number;
        state = stateAtBegin();
      }
    } else if (state == Interested) {
      if (column == lines[line].markers[marker].offsets.begin) {
        state = Pass;
      } else {
        out += byte;
      }
    } else if (column >= lines[line].markers[marker].offsets.end - 1) {
      state = Interested;
      if (++marker == lines[line].markers.size()) {
        marker = 0;
        state = ++line == lines.size() ? WriteAll : NotInterested;
      }
    }
  }
  return out;
}
