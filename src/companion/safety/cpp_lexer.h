// A C++ source as a compiler takes it apart, before it knows of macros.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "cleaner/planned_cut.h"

namespace companion {

/// A piece of a source that a compiler looks at: a name, a number, a literal, a byte of
/// punctuation. Where two sources agree in all of these, bytes of punctuation make the same
/// operators.
struct CppToken {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool startsLine = false;  ///< Matters for directives.
  bool hasSpace = false;    ///< Whether it is apart from the one before: a comment is a space.

  friend bool operator==(CppToken const&, CppToken const&) = default;
};

/// Walks over a source, from which some ranges may be left out, in steps that end with a token, a
/// space, or a line of a comment. It knows line splices, comments, strings, raw strings, character
/// literals, digit separators and the names of headers; what is skipped by a directive it takes
/// like all else, as compilers do. A literal that is not closed ends with its line.
class CppLexer {
 public:
  /// `dropped` ascends and must outlive the lexer; positions count in the source as it is.
  CppLexer(std::string_view source, std::vector<ByteRange> const& dropped)
      : m_source(source), m_dropped(&dropped) {}

  /// Leaves out the ranges that `dropped` has now, and no others that come to it.
  void LeaveOutPresent() { m_dropCount = m_dropped->size(); }

  /// Takes the source to end at this position.
  void EndAt(std::size_t position) { m_source = m_source.substr(0, position); }

  /// Goes on by one step. The token that it ended with; null when with something else.
  CppToken const* Step();

  [[nodiscard]] std::size_t Position() const { return m_place.position; }
  [[nodiscard]] bool IsAtEnd() const { return m_place.position >= m_source.size(); }

  /// Whether both take the same text behind here in the same way.
  [[nodiscard]] bool StandsLike(CppLexer const& other) const {
    return m_place.position == other.m_place.position && m_state == other.m_state;
  }
  [[nodiscard]] bool IsInBlockComment() const { return m_state.mode == Mode::BlockComment; }

 private:
  enum class Mode : std::uint8_t { Code, LineComment, BlockComment };
  /// What the next token may be on a line that is a directive; on others, anything.
  enum class Awaits : std::uint8_t { Code, Directive, Header, Other };
  struct Place {
    std::size_t position = 0;
    std::size_t drop = 0;  ///< The next range that is left out.
  };
  struct State {
    Mode mode = Mode::Code;
    Awaits awaits = Awaits::Code;
    bool startsLine = true;
    bool hasSpace = true;
    bool isAfterStar = false;  ///< In a block comment.

    friend bool operator==(State const&, State const&) = default;
  };

  [[nodiscard]] Place PastDropped(Place place) const;
  [[nodiscard]] Place PastSplice(Place place) const;
  [[nodiscard]] Place Next() const;
  [[nodiscard]] char ByteAt(Place place) const;
  [[nodiscard]] char Peek() const { return ByteAt(Next()); }
  void Consume();

  void PassLineOfLineComment();
  void PassLineOfBlockComment();
  CppToken const* PassCode();
  bool PassLineEnd();
  bool PassBlanks(char first);
  bool EnterComment(char first);
  void PassToken(char first);
  void PassHeaderName();
  void PassLiteral(char close);
  void PassRawString();
  void PassNumber(char first);
  void PassName(char first, Awaits awaited);

  std::string_view m_source;
  std::vector<ByteRange> const* m_dropped;
  std::size_t m_dropCount = 0;
  Place m_place;
  State m_state;
  CppToken m_token;
};

}  // namespace companion
