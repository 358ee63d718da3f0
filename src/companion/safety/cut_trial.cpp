#include "companion/safety/cut_trial.h"

#include <algorithm>
#include <optional>

namespace companion {

namespace {

/// How far behind its line a cut is followed. Nearly all are at their line's end.
constexpr std::size_t FurthestBehind = 4096;

/// Two walks side by side: the one that is behind goes on. A token of one must come from the other,
/// too, before that passes the place.
class CutTrial {
 public:
  CutTrial(ListedLine const& line, std::size_t end, bool endsWithSource, CppLexer const& before,
           CppLexer const& after)
      : m_line(line),
        m_end(end),
        m_endsWithSource(endsWithSource),
        m_before{.lexer = before, .token = {}},
        m_after{.lexer = after, .token = {}} {}

  [[nodiscard]] CutDanger Run() {
    while (!m_before.lexer.IsAtEnd() || !m_after.lexer.IsAtEnd()) {
      if (HaveMet()) {
        return CutDanger::None;
      }
      const bool isBefore = IsTurnOfBefore();
      Walk& walk = isBefore ? m_before : m_after;
      Walk& other = isBefore ? m_after : m_before;
      CppToken const* const token = walk.lexer.Step();
      if (token != nullptr && isBefore && CutInto(*token) != nullptr) {
        return token->begin < CutInto(*token)->begin ? CutDanger::InString : CutDanger::NoMarker;
      }
      if (token != nullptr) {
        walk.token = *token;
      }
      if (walk.token == other.token) {
        walk.token.reset();
        other.token.reset();
      }
      if (HasPassedToken(walk, other) || HasPassedToken(other, walk)) {
        return Danger();
      }
    }
    const bool endAlike = m_before.lexer.IsInBlockComment() == m_after.lexer.IsInBlockComment() &&
                          m_before.token == m_after.token;
    return m_endsWithSource && endAlike ? CutDanger::None : Danger();
  }

 private:
  struct Walk {
    CppLexer lexer;
    std::optional<CppToken> token;  ///< That the other one has not come to.
  };

  [[nodiscard]] bool HaveMet() const {
    return m_before.lexer.StandsLike(m_after.lexer) && !m_before.token && !m_after.token &&
           m_before.lexer.Position() >= m_line.dropped.back().end;
  }

  [[nodiscard]] bool IsTurnOfBefore() const {
    if (m_before.lexer.IsAtEnd() || m_after.lexer.IsAtEnd()) {
      return m_after.lexer.IsAtEnd();
    }
    return m_before.lexer.Position() <= m_after.lexer.Position();
  }

  /// The range that would take something out of the token; null when none does.
  [[nodiscard]] ByteRange const* CutInto(CppToken const& token) const {
    auto const& dropped = m_line.dropped;
    const auto range = std::ranges::upper_bound(dropped, token.begin, {}, &ByteRange::end);
    return range != dropped.end() && range->begin < token.end ? &*range : nullptr;
  }

  [[nodiscard]] static bool HasPassedToken(Walk const& walk, Walk const& other) {
    return other.token && walk.lexer.Position() > other.token->begin;
  }

  /// By the first token that only one of them has.
  [[nodiscard]] CutDanger Danger() const {
    const std::size_t before = m_before.token ? m_before.token->begin : m_end;
    const std::size_t after = m_after.token ? m_after.token->begin : m_end;
    if (after < std::min(before, m_line.end)) {
      return CutDanger::TextBehind;
    }
    return before > m_line.dropped.front().begin && before < m_line.end ? CutDanger::CodeBehind
                                                                        : CutDanger::NextLine;
  }

  ListedLine const& m_line;
  std::size_t m_end;
  bool m_endsWithSource;
  Walk m_before;
  Walk m_after;
};

}  // namespace

CutDanger TryCut(ListedLine const& line, std::size_t sourceSize, CppLexer before, CppLexer after) {
  const bool reachesEnd = sourceSize - line.end <= FurthestBehind;
  const std::size_t end = reachesEnd ? sourceSize : line.end + FurthestBehind;
  before.EndAt(end);
  after.EndAt(end);
  return CutTrial(line, end, reachesEnd, before, after).Run();
}

}  // namespace companion
