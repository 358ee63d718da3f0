#include "merge/reading/plain_record.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "merge/paths/source_tree_placeholder.h"

namespace {

/// A bit for each key that an object may have, in the order in which they are asked for below.
enum Keys : unsigned { First = 1, Second = 2, Third = 4, Fourth = 8 };

constexpr std::array<bool, 256> PlainBytes = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = ' '; byte <= '~'; ++byte) {
    plain[byte] = byte != '"' && byte != '\\' && byte != '{' && byte != '}';
  }
  return plain;
}();

// The texts between the numbers of a line and its markers. A marker without a code has others.

/// As the analyzer core writes them, without blanks.
struct CompactLayout {
  static constexpr char Line[] = R"({"line":)";
  static constexpr char Markers[] = R"(,"markers":[)";
  static constexpr char Marker[] = R"({"code":)";
  static constexpr char Columns[] = R"(,"columns":{"begin":)";
  static constexpr char EndOfRange[] = R"(,"end":)";
  static constexpr char Offsets[] = R"(},"offsets":{"begin":)";
  static constexpr char EndOfMarker[] = "}}";
  static constexpr char NextMarker[] = ",";
  static constexpr char EndOfLine[] = "]}";
};

/// As structured_report_writer writes them, each value on a line of its own.
struct IndentedLayout {
  static constexpr char Line[] = R"({
          "line": )";
  static constexpr char Markers[] = R"(,
          "markers": [
            )";
  static constexpr char Marker[] = R"({
              "code": )";
  static constexpr char Columns[] = R"(,
              "columns": {
                "begin": )";
  static constexpr char EndOfRange[] = R"(,
                "end": )";
  static constexpr char Offsets[] = R"(
              },
              "offsets": {
                "begin": )";
  static constexpr char EndOfMarker[] = R"(
              }
            })";
  static constexpr char NextMarker[] = R"(,
            )";
  static constexpr char EndOfLine[] = R"(
          ]
        })";
};

/// A place in the text. Each function reads one thing and is false when that does not stand there.
/// None checks for the end of the window: behind it the window has bytes of 0, and as no function
/// takes a 0 for anything, all of them stop there. A function that reads much has a copy of its
/// own, because the compiler then keeps it in a register.
struct Cursor {
  /// Exactly `text`, whose length the compiler knows.
  template <std::size_t Size>
  [[gnu::always_inline]] bool Literal(char const (&text)[Size]) {
    constexpr std::size_t length = Size - 1;
    static_assert(length <= ReportWindow::Padding);
    if (std::memcmp(m_at, text, length) != 0) {
      return false;
    }
    m_at += length;
    return true;
  }

  template <typename Unsigned>
  [[gnu::always_inline]] bool Digits(Unsigned& number) {
    constexpr std::ptrdiff_t mostDigits = 19;  // The most that cannot pass 64 bits.
    const char* const begin = m_at;
    std::uint64_t value = 0;
    // A byte that is no digit is a large number when '0' is taken from it without a sign.
    for (unsigned digit = 0; (digit = static_cast<unsigned>(*m_at) - '0') <= 9; ++m_at) {
      value = 10 * value + digit;
    }
    const std::ptrdiff_t digits = m_at - begin;
    if (digits == 0 || digits > mostDigits || (*begin == '0' && digits > 1)) {
      return false;
    }
    // Of a number with a fraction or an exponent this is only the beginning. The record is refused
    // all the same, because the caller then finds a '.' or an 'e' where it expects ',' or '}'.
    number = static_cast<Unsigned>(value);
    return true;
  }

  const char* m_at = nullptr;
};

/// Walks over the text of a record, as a cursor does.
class PlainReader : private Cursor {
 public:
  explicit PlainReader(ReportWindow& window) : m_window(window) { LookIntoWindow(); }

  /// Takes what has been read out of the window.
  void Consume() {
    m_window.Consume(static_cast<std::size_t>(m_at - m_window.Rest().data()));
    LookIntoWindow();
  }

  bool Read(File& file) {
    unsigned seen = 0;
    file.version = 1;
    if (*m_at != '{' || !Token('{')) {  // No blanks before a record.
      return false;
    }
    do {
      ReadAhead();
      std::string_view text;
      if (Key("\"path\"", First, seen)) {
        if (!Text(text)) {
          return false;
        }
        file.path = WithoutPlaceholder(text);
      } else if (Key("\"hash\"", Second, seen)) {
        if (!Text(text)) {
          return false;
        }
        file.hash = text;
      } else if (Key("\"lines\"", Third, seen)) {
        if (!ReadArray(file.lines)) {
          return false;
        }
      } else if (!Key("\"version\"", Fourth, seen) || !Number(file.version)) {
        return false;
      }
    } while (Token(','));
    return Token('}') && (seen | Fourth) == (First | Second | Third | Fourth);
  }

 private:
  bool Read(Line& line) {
    ReadAhead();
    SkipBlanks();
    return ReadAs<CompactLayout>(line) || ReadAs<IndentedLayout>(line) || ReadInAnyOrder(line);
  }

  // Nearly all lines and markers are written in one of two layouts, with their keys in the same
  // order. These are read by comparing with fixed text, which is more than twice as fast as
  // searching for keys; a line that does not fit is read once more from its front, with a search.

  template <typename Layout>
  bool ReadAs(Line& line) {
    Cursor text = *this;
    if (!text.Literal(Layout::Line) || !text.Digits(line.line) || !text.Literal(Layout::Markers)) {
      return false;
    }
    std::size_t count = 0;
    do {
      if (count == line.markers.size()) {
        line.markers.emplace_back();
      }
      if (!ReadAs<Layout>(line.markers[count], text)) {
        return false;
      }
      ++count;
    } while (text.Literal(Layout::NextMarker));
    if (!text.Literal(Layout::EndOfLine)) {
      return false;
    }
    if (count != line.markers.size()) {
      line.markers.resize(count);
    }
    m_at = text.m_at;
    return true;
  }

  template <typename Layout>
  static bool ReadAs(Marker& marker, Cursor& text) {
    return text.Literal(Layout::Marker) && text.Digits(marker.code) &&
           text.Literal(Layout::Columns) && text.Digits(marker.columns.begin) &&
           text.Literal(Layout::EndOfRange) && text.Digits(marker.columns.end) &&
           text.Literal(Layout::Offsets) && text.Digits(marker.offsets.begin) &&
           text.Literal(Layout::EndOfRange) && text.Digits(marker.offsets.end) &&
           text.Literal(Layout::EndOfMarker);
  }

  bool ReadInAnyOrder(Line& line) {
    unsigned seen = 0;
    if (!Token('{')) {
      return false;
    }
    do {
      if (Key("\"line\"", First, seen)) {
        if (!Number(line.line)) {
          return false;
        }
      } else if (!Key("\"markers\"", Second, seen) || !ReadArray(line.markers)) {
        return false;
      }
    } while (Token(','));
    return Token('}') && seen == (First | Second);
  }

  bool Read(Marker& marker) {
    unsigned seen = 0;
    marker.code = 0;
    if (!Token('{')) {
      return false;
    }
    do {
      if (Key("\"code\"", First, seen)) {
        if (!Number(marker.code)) {
          return false;
        }
      } else if (Key("\"columns\"", Second, seen)) {
        if (!Read(marker.columns)) {
          return false;
        }
      } else if (!Key("\"offsets\"", Third, seen) || !Read(marker.offsets)) {
        return false;
      }
    } while (Token(','));
    return Token('}') && (seen | First) == (First | Second | Third);
  }

  bool Read(Range& range) {
    unsigned seen = 0;
    if (!Token('{')) {
      return false;
    }
    do {
      if (Key("\"begin\"", First, seen)) {
        if (!Number(range.begin)) {
          return false;
        }
      } else if (!Key("\"end\"", Second, seen) || !Number(range.end)) {
        return false;
      }
    } while (Token(','));
    return Token('}') && seen == (First | Second);
  }

  /// Overwrites the elements that are there already, whose memory is used again.
  template <typename Element>
  bool ReadArray(std::vector<Element>& elements) {
    std::size_t count = 0;
    if (!Token('[')) {
      return false;
    }
    if (!Token(']')) {
      do {
        if (count == elements.size()) {
          elements.emplace_back();
        }
        if (!Read(elements[count])) {
          return false;
        }
        ++count;
      } while (Token(','));
      if (!Token(']')) {
        return false;
      }
    }
    elements.resize(count);
    return true;
  }

  /// Has the window read on when little of it is left. This moves the text in memory, so it is
  /// called only where no pointer into the text but m_at is in use: before a key of the record and
  /// before a line. A path or line that is longer than what is left then meets the zeros behind the
  /// window, and the record is not read plainly.
  void ReadAhead() {
    if (static_cast<std::size_t>(m_end - m_at) < MostOfPieces) {
      Consume();
      static_cast<void>(m_window.ReadMore());
      LookIntoWindow();
    }
  }

  void LookIntoWindow() {
    m_at = m_window.Rest().data();
    m_end = m_at + m_window.Rest().size();
  }

  bool Token(char token) {
    SkipBlanks();
    if (*m_at != token) {
      return false;
    }
    ++m_at;
    return true;
  }

  /// `name`, its quotes included, and the colon behind it, for the first time in its object.
  template <std::size_t Size>
  bool Key(char const (&name)[Size], unsigned bit, unsigned& seen) {
    SkipBlanks();
    if ((seen & bit) != 0 || !Literal(name)) {
      return false;
    }
    if (!Token(':')) {
      seen = ~0U;  // The name is read past: no other key of this object may be tried behind it.
      return false;
    }
    seen |= bit;
    return true;
  }

  template <typename Unsigned>
  bool Number(Unsigned& number) {
    SkipBlanks();
    return Digits(number);
  }

  bool Text(std::string_view& text) {
    if (!Token('"')) {
      return false;
    }
    const char* const begin = m_at;
    while (PlainBytes[static_cast<unsigned char>(*m_at)]) {
      ++m_at;
    }
    text = {begin, static_cast<std::size_t>(m_at - begin)};
    if (*m_at != '"') {
      return false;
    }
    ++m_at;
    return true;
  }

  void SkipBlanks() {
    if (*m_at > ' ') {
      return;
    }
    while (Literal("        ")) {  // Eight at once, where lines are indented.
    }
    while (*m_at == ' ' || *m_at == '\n' || *m_at == '\t' || *m_at == '\r') {
      ++m_at;
    }
  }

  /// In bytes. Nearly every line and every path of a report is shorter.
  static constexpr std::size_t MostOfPieces = ReportWindow::Size / 64;

  ReportWindow& m_window;
  const char* m_end = nullptr;
};

}  // namespace

bool ReadPlainRecord(ReportWindow& window, File& file) {
  const std::uint64_t front = window.Position();
  PlainReader reader(window);
  if (reader.Read(file)) {
    reader.Consume();
    return true;
  }
  window.ReturnTo(front);
  return false;
}
