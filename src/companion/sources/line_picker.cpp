#include "companion/sources/line_picker.h"

#include <algorithm>

namespace companion {

namespace {

constexpr std::string_view Ellipsis = "\xe2\x80\xa6";

/// The next place of a sign in a text that is walked along. It is looked up again only once passed:
/// a text may have only one of two kinds of line ends, and is not to be searched at every line.
class NextSign {
 public:
  NextSign(std::string_view text, char sign) : m_text(text), m_sign(sign) {}

  /// The end of the text when there is none.
  std::size_t From(std::size_t position) {
    if (!m_place || *m_place < position) {
      m_place = std::min(m_text.find(m_sign, position), m_text.size());
    }
    return *m_place;
  }

 private:
  std::string_view m_text;
  char m_sign;
  std::optional<std::size_t> m_place;
};

}  // namespace

void LinePicker::Add(std::string_view bytes) {
  NextSign lineFeed(bytes, '\n');
  NextSign carriageReturn(bytes, '\r');
  std::size_t at = 0;
  while (at < bytes.size() && m_wanted != 0) {
    if (m_partner) {
      at += bytes[at] == *m_partner ? 1 : 0;
      m_partner.reset();
      continue;
    }
    const std::size_t end = std::min(lineFeed.From(at), carriageReturn.From(at));
    if (IsWanted()) {
      Keep(bytes.substr(at, end - at));
    }
    if (end == bytes.size()) {
      return;
    }
    EndLine(bytes[end]);
    at = end + 1;
  }
}

void LinePicker::Keep(std::string_view bytes) {
  if (!m_room) {
    BeginLine();
  }
  std::string& text = m_hunks.back().text;
  text += bytes.substr(0, *m_room);
  if (bytes.size() <= *m_room) {
    *m_room -= bytes.size();
  } else if (*m_room > 0) {
    text += Ellipsis;  // Once, however many more pieces the line has.
    m_room = 0;
  }
}

void LinePicker::BeginLine() {
  if (m_hunks.empty() || m_hunks.back().end != m_line) {
    m_hunks.push_back({m_line, m_line, {}});
  } else {
    m_hunks.back().text += '\n';
  }
  m_hunks.back().end = m_line + 1;
  m_room = m_mostOfLine;
}

void LinePicker::EndLine(char sign) {
  m_partner = sign == '\n' ? '\r' : '\n';
  const bool wasWanted = IsWanted();
  m_room.reset();
  ++m_line;
  if (wasWanted) {
    FindNextWanted();
  }
}

void LinePicker::FindNextWanted() {
  while (!m_listed.empty() && std::uint64_t{m_listed.front()} + m_around.behind < m_line) {
    m_listed = m_listed.subspan(1);
  }
  if (m_listed.empty()) {
    m_wanted = 0;
    return;
  }
  const std::uint64_t listed = m_listed.front();
  m_wanted = std::max(m_line, listed - std::min<std::uint64_t>(listed, m_around.before));
}

}  // namespace companion
