#include "companion/safety/cpp_lexer.h"

#include <algorithm>
#include <string>

#include "companion/safety/blanks.h"
#include "files/line_ends.h"

namespace companion {

namespace {

bool IsAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// Letters of other languages are bytes above ASCII.
bool IsOfName(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || IsDigit(byte) ||
         byte == '_' || byte == '$' || !IsAscii(byte);
}

bool IsOfRawDelimiter(char byte) {
  return byte > ' ' && byte <= '~' &&
         std::string_view("()\\\"$@`").find(byte) == std::string_view::npos;
}

bool IsRawPrefix(std::string_view name) {
  return name == "R" || name == "LR" || name == "uR" || name == "UR" || name == "u8R";
}

bool IsInclusion(std::string_view name) {
  return name == "include" || name == "include_next" || name == "import" || name == "embed";
}

}  // namespace

CppToken const* CppLexer::Step() {
  switch (m_state.mode) {
    case Mode::Code:
      return PassCode();
    case Mode::LineComment:
      PassLineOfLineComment();
      break;
    case Mode::BlockComment:
      PassLineOfBlockComment();
      break;
  }
  return nullptr;
}

CppLexer::Place CppLexer::PastDropped(Place place) const {
  while (place.drop < m_dropCount && (*m_dropped)[place.drop].begin <= place.position) {
    place.position = std::max<std::size_t>(place.position, (*m_dropped)[place.drop].end);
    ++place.drop;
  }
  return place;
}

/// Past a backslash and the line end behind it, blanks between them included; else where it was.
CppLexer::Place CppLexer::PastSplice(Place place) const {
  if (ByteAt(place) != '\\') {
    return place;
  }
  Place after = place;
  do {
    ++after.position;
    after = PastDropped(after);
  } while (IsBlank(ByteAt(after)));
  const std::size_t length =
      LineEndLength(m_source.substr(std::min(after.position, m_source.size())));
  after.position += length;
  return length == 0 ? place : after;
}

/// Where the next byte stands, past what is left out and past splices.
CppLexer::Place CppLexer::Next() const {
  Place place = PastDropped(m_place);
  while (ByteAt(place) == '\\') {
    const Place after = PastDropped(PastSplice(place));
    if (after.position == place.position) {
      break;
    }
    place = after;
  }
  return place;
}

/// At the end of the source, that of a line.
char CppLexer::ByteAt(Place place) const {
  return place.position < m_source.size() ? m_source[place.position] : '\n';
}

void CppLexer::Consume() {
  m_place = Next();
  ++m_place.position;
}

void CppLexer::PassLineOfLineComment() {
  bool isSpliced = false;
  for (m_place = PastDropped(m_place); !IsLineEnd(ByteAt(m_place));
       m_place = PastDropped(m_place)) {
    const char byte = ByteAt(m_place);
    isSpliced = byte == '\\' || (isSpliced && IsBlank(byte));
    ++m_place.position;
  }
  if (isSpliced && !IsAtEnd()) {
    m_place.position += LineEndLength(m_source.substr(m_place.position));
  } else {
    m_state.mode = Mode::Code;
  }
}

void CppLexer::PassLineOfBlockComment() {
  for (m_place = PastDropped(m_place); !IsAtEnd(); m_place = PastDropped(m_place)) {
    const Place spliced = PastSplice(m_place);
    if (spliced.position != m_place.position) {
      m_place = spliced;
      return;
    }
    const char byte = ByteAt(m_place);
    ++m_place.position;
    if (byte == '/' && m_state.isAfterStar) {
      m_state.mode = Mode::Code;
    }
    m_state.isAfterStar = byte == '*';
    if (m_state.mode == Mode::Code || IsLineEnd(byte)) {
      return;
    }
  }
}

bool CppLexer::PassLineEnd() {
  if (!IsLineEnd(ByteAt(m_place))) {
    return false;
  }
  m_place.position += LineEndLength(m_source.substr(m_place.position));
  m_state = State{};
  return true;
}

/// `first` is consumed already, here and in what is below.
bool CppLexer::PassBlanks(char first) {
  if (!IsBlank(first) && first != '\0') {
    return false;
  }
  while (IsBlank(Peek())) {
    Consume();
  }
  m_state.hasSpace = true;
  return true;
}

bool CppLexer::EnterComment(char first) {
  const char second = first == '/' ? Peek() : '\0';
  if (second != '/' && second != '*') {
    return false;
  }
  Consume();
  m_state.hasSpace = true;
  m_state.isAfterStar = false;
  m_state.mode = second == '/' ? Mode::LineComment : Mode::BlockComment;
  return true;
}

CppToken const* CppLexer::PassCode() {
  m_place = Next();
  if (IsAtEnd() || PassLineEnd()) {
    return nullptr;
  }
  const std::size_t begin = m_place.position;
  const char first = ByteAt(m_place);
  Consume();
  if (PassBlanks(first) || EnterComment(first)) {
    return nullptr;
  }
  m_token.begin = begin;
  m_token.startsLine = m_state.startsLine;
  m_token.hasSpace = m_state.hasSpace;
  m_state.startsLine = false;
  m_state.hasSpace = false;
  PassToken(first);
  m_token.end = m_place.position;
  return &m_token;
}

void CppLexer::PassToken(char first) {
  const Awaits awaited = m_state.awaits;
  m_state.awaits = awaited == Awaits::Code ? Awaits::Code : Awaits::Other;
  if (first == '"' || first == '\'') {
    PassLiteral(first);
  } else if (first == '<' && awaited == Awaits::Header) {
    PassHeaderName();
  } else if (IsDigit(first) || (first == '.' && IsDigit(Peek()))) {
    PassNumber(first);
  } else if (IsOfName(first)) {
    PassName(first, awaited);
  } else if (m_token.startsLine && (first == '#' || (first == '%' && Peek() == ':'))) {
    m_state.awaits = Awaits::Directive;
  } else if ((first == ':' && awaited == Awaits::Directive) ||
             (first == '(' && awaited == Awaits::Header)) {
    m_state.awaits = awaited;  // Behind %: as behind #, and in __has_include(<vector>).
  }
}

/// To its end on the same line; without one, it is punctuation.
void CppLexer::PassHeaderName() {
  Place place = PastDropped(m_place);
  while (ByteAt(place) != '>') {
    if (IsLineEnd(ByteAt(place)) || PastSplice(place).position != place.position) {
      return;
    }
    ++place.position;
    place = PastDropped(place);
  }
  m_place = place;
  Consume();
}

void CppLexer::PassLiteral(char close) {
  while (!IsLineEnd(Peek())) {
    const char byte = Peek();
    Consume();
    if (byte == close) {
      return;
    }
    if (byte == '\\' && !IsLineEnd(Peek())) {
      Consume();
    }
  }
}

/// From its quote on. Without a delimiter it ends at the next quote. What is left out is not looked
/// for: a token that holds such a range is another one already.
void CppLexer::PassRawString() {
  Consume();
  const std::string_view rest = m_source.substr(std::min(m_place.position, m_source.size()));
  const std::size_t open = static_cast<std::size_t>(
      std::ranges::find_if_not(rest.substr(0, 16), IsOfRawDelimiter) - rest.begin());
  std::string close = "\"";
  if (open < rest.size() && rest[open] == '(') {
    close = ")" + std::string(rest.substr(0, open)) + close;
  }
  const std::size_t end = rest.find(close, close.size() == 1 ? 0 : open + 1);
  m_place.position += end == std::string_view::npos ? rest.size() : end + close.size();
}

void CppLexer::PassNumber(char first) {
  constexpr std::string_view exponents = "eEpP";
  for (char previous = first;;) {
    const char byte = Peek();
    const bool isSign =
        (byte == '+' || byte == '-') && exponents.find(previous) != std::string_view::npos;
    if (byte == '\'') {
      CppLexer behind = *this;
      behind.Consume();
      if (!IsOfName(behind.Peek()) || !IsAscii(behind.Peek())) {
        return;
      }
    } else if (!IsOfName(byte) && byte != '.' && !isSign) {
      return;
    }
    previous = byte;
    Consume();
  }
}

void CppLexer::PassName(char first, Awaits awaited) {
  // No name that means something here has more; in code, none but the prefix of a raw string.
  const std::size_t longest = awaited == Awaits::Code ? 4 : 32;
  std::string name(1, first);
  for (char byte = Peek(); IsOfName(byte); byte = Peek()) {
    Consume();
    if (name.size() < longest) {
      name += byte;
    }
  }
  if (IsRawPrefix(name) && Peek() == '"') {
    PassRawString();
  } else if ((awaited == Awaits::Directive && IsInclusion(name)) ||
             (awaited != Awaits::Code &&
              (name.starts_with("__has_include") || name.starts_with("__has_embed")))) {
    m_state.awaits = Awaits::Header;
  }
}

}  // namespace companion
