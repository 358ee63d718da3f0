#include "companion/safety/cut_safety.h"

#include <algorithm>
#include <format>
#include <optional>

#include "companion/safety/cpp_lexer.h"
#include "companion/safety/listed_lines.h"
#include "companion/safety/plain_cut.h"

namespace companion {

namespace {

/// Decides one line after the other, each with the lines left out that were found safe before it. A
/// cut that changes no token when they are gone leaves the tokens of the source, so all of them
/// together do.
class Scan {
 public:
  explicit Scan(std::string_view source)
      : m_source(source), m_here(source, m_dropped), m_next(m_here) {
    Advance();
  }

  /// Lines must come in their order.
  [[nodiscard]] CutDanger Judge(ListedLine const& line) {
    while (!m_here.IsAtEnd() && m_next.Position() <= line.begin) {
      m_here = m_next;
      Advance();
    }
    ByteRange const& first = line.dropped.front();
    if (m_token && m_token->begin < first.begin && first.begin < m_token->end) {
      return CutDanger::InString;  // At once: a raw string may hold a thousand such lines.
    }
    // Behind a string from an earlier line, which need not be walked again.
    const bool isPassed = m_token && m_token->begin < line.begin && m_token->end <= first.begin;
    CppLexer const& start = isPassed ? m_next : m_here;
    const std::size_t known = m_dropped.size();
    m_dropped.insert(m_dropped.end(), line.dropped.begin(), line.dropped.end());
    CppLexer after = start;
    after.LeaveOutPresent();
    const CutDanger danger = TryCut(line, m_source.size(), start, after);
    if (danger != CutDanger::None) {
      m_dropped.resize(known);
      return danger;
    }
    m_here = after;
    Advance();
    return danger;
  }

 private:
  void Advance() {
    m_next = m_here;
    CppToken const* const token = m_next.Step();
    m_token = token != nullptr ? std::optional(*token) : std::nullopt;
  }

  std::string_view m_source;
  std::vector<ByteRange> m_dropped;
  CppLexer m_here;  ///< At the line to be judged, or where a token begins that reaches into it.
  CppLexer m_next;  ///< A step behind that.
  std::optional<CppToken> m_token;  ///< What the step ended with.
};

/// Whether nothing needs a scan.
bool AreAllPlain(std::vector<ListedLine> const& lines, std::string_view source) {
  return std::ranges::all_of(lines,
                             [source](ListedLine const& line) {
                               return line.dropped.empty() || IsPlainCut(line, source);
                             }) &&
         !MayHoldRawString(source);
}

}  // namespace

std::vector<UnsafeLine> UnsafeLines(std::vector<Line> const& lines, std::string_view source) {
  const std::vector<ListedLine> listed = FindListedLines(lines, source);
  const bool needsScan = !AreAllPlain(listed, source);
  Scan scan(needsScan ? source : std::string_view());
  std::vector<UnsafeLine> unsafe;
  for (std::size_t index = 0; index < listed.size(); ++index) {
    ListedLine const& line = listed[index];
    CutDanger danger = line.holdsMarkers ? CutDanger::None : CutDanger::NoMarker;
    if (line.joinsLineEnds) {
      danger = CutDanger::NextLine;
    } else if (needsScan && !line.dropped.empty()) {
      danger = scan.Judge(line);
    }
    if (danger != CutDanger::None) {
      unsafe.push_back({index, line.number, danger});
    }
  }
  return unsafe;
}

std::vector<Line> SafeLines(std::vector<Line> const& lines, std::span<UnsafeLine const> unsafe) {
  std::vector<Line> safe;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    if (!unsafe.empty() && unsafe.front().index == index) {
      unsafe = unsafe.subspan(1);
    } else {
      safe.push_back(lines[index]);
    }
  }
  return safe;
}

CutDanger DangerOf(std::span<UnsafeLine const> unsafe, std::uint32_t line) {
  const auto found = std::ranges::find(unsafe, line, &UnsafeLine::line);
  return found != unsafe.end() ? found->danger : CutDanger::None;
}

std::string ComplaintOf(UnsafeLine const& line, std::string_view file) {
  return std::format("{}:{}: {}", file, line.line, Words(line.danger));
}

std::string_view Words(CutDanger danger) {
  switch (danger) {
    case CutDanger::None:
      return "safe to take out";
    case CutDanger::NoMarker:
      return "no marker stands there";
    case CutDanger::InString:
      return "the marker stands in a string";
    case CutDanger::TextBehind:
      return "text behind the marker would become code";
    case CutDanger::CodeBehind:
      return "code behind the marker would become comment";
    case CutDanger::NextLine:
      break;
  }
  return "the next line would be read differently";
}

}  // namespace companion
