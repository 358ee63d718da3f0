// The tokens of a C++ source as plainly as they can be said, to hold the quick scan against:
// splices are taken out first, of the whole text, and what is left is lexed from its beginning.
#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "merge/file.h"

struct ReferenceToken {
  std::string text;
  std::size_t at = 0;  ///< In the source as it is.
  bool startsLine = false;
  bool hasSpace = false;

  friend bool operator==(ReferenceToken const&, ReferenceToken const&) = default;
};

/// A byte of a source, with its position there.
struct ReferenceByte {
  char byte = '\0';
  std::size_t at = 0;
};
using ReferenceText = std::vector<ReferenceByte>;

class ReferenceTokens {
 public:
  /// What stays of a source, with nothing between two bytes that stood apart.
  explicit ReferenceTokens(ReferenceText text) : m_raw(std::move(text)) {
    for (std::size_t i = 0; i < m_raw.size();) {
      const std::size_t behind = BehindSpliceAt(i);
      if (behind == i) {
        m_logical.push_back(i++);
      } else {
        i = behind;
      }
    }
    for (std::size_t i = 0; i < m_raw.size(); ++i) {
      if (IsEnd(Raw(i))) {
        lineEnds.push_back(m_raw[i].at);
        i += i + 1 < m_raw.size() && IsEnd(Raw(i + 1)) && Raw(i) != Raw(i + 1) ? 1 : 0;
      }
    }
    Lex();
  }

  std::vector<ReferenceToken> tokens;
  std::vector<std::size_t> lineEnds;
  bool endsInComment = false;

 private:
  [[nodiscard]] char Raw(std::size_t i) const { return i < m_raw.size() ? m_raw[i].byte : '\n'; }
  [[nodiscard]] char At(std::size_t i) const {
    return i < m_logical.size() ? Raw(m_logical[i]) : '\n';
  }
  [[nodiscard]] bool Has(std::size_t i, std::string_view text) const {
    return std::ranges::all_of(text, [&](char byte) { return At(i++) == byte; });
  }

  static bool IsEnd(char byte) { return byte == '\n' || byte == '\r'; }
  static bool IsName(char byte) {
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_' || byte == '$' ||
           static_cast<signed char>(byte) < 0;
  }

  [[nodiscard]] std::size_t BehindSplice(std::size_t i) const {
    const std::size_t begin = i;
    while (++i < m_raw.size() && std::string_view(" \t\v\f").find(Raw(i)) != std::string::npos) {
    }
    if (i >= m_raw.size() || !IsEnd(Raw(i))) {
      return begin;
    }
    return i + (i + 1 < m_raw.size() && IsEnd(Raw(i + 1)) && Raw(i) != Raw(i + 1) ? 2 : 1);
  }

  void Lex() {
    std::string directive;  // # on its line, with the name behind it.
    bool startsLine = true;
    bool hasSpace = true;
    for (std::size_t i = 0; i < m_logical.size();) {
      const std::size_t begin = i;
      if (IsEnd(At(i))) {
        ++i;
        directive.clear();
        startsLine = hasSpace = true;
      } else if (std::string_view(" \t\v\f").find(At(i)) != std::string::npos || At(i) == '\0') {
        ++i;
        hasSpace = true;
      } else if (Has(i, "//")) {
        while (i < m_logical.size() && !IsEnd(At(i))) {
          ++i;
        }
        hasSpace = true;
      } else if (Has(i, "/*")) {
        for (i += 2; i < m_logical.size() && !Has(i, "*/");) {
          ++i;
        }
        endsInComment = i >= m_logical.size();
        i += 2;
        hasSpace = true;
      } else {
        std::string text = Token(i, IsHeaderAwaited(directive));
        if ((text == "#" || (text == "%" && At(i) == ':')) && startsLine) {
          directive = "#";
        } else if (!directive.empty() && !(text == "(" && IsHeaderAwaited(directive)) &&
                   !(text == ":" && directive == "#")) {
          directive = (directive == "#" ? "#" : "# ") + text;
        }
        tokens.push_back({text, m_raw[m_logical[begin]].at, startsLine, hasSpace});
        startsLine = hasSpace = false;
      }
    }
  }

  static bool IsHeaderAwaited(std::string_view directive) {
    return directive == "#include" || directive == "#include_next" || directive == "#import" ||
           directive == "#embed" || directive.find("__has_include") < 3 ||
           directive.find("__has_embed") < 3;
  }

  /// The token at logical byte `i`, which then is the one behind it.
  std::string Token(std::size_t& i, bool isHeaderAwaited) {
    const std::size_t begin = i;
    const char first = At(i++);
    if (first == '"' || first == '\'') {
      Literal(i, first);
    } else if (first == '<' && isHeaderAwaited) {
      i += HeaderName(m_logical[begin] + 1);
    } else if (std::isdigit(first) != 0 || (first == '.' && std::isdigit(At(i)) != 0)) {
      while (IsName(At(i)) || At(i) == '.' ||
             ((At(i) == '+' || At(i) == '-') &&
              std::string_view("eEpP").find(At(i - 1)) != std::string::npos) ||
             (At(i) == '\'' && IsName(At(i + 1)) && static_cast<signed char>(At(i + 1)) >= 0)) {
        ++i;
      }
    } else if (IsName(first)) {
      while (IsName(At(i))) {
        ++i;
      }
      const std::string name = Text(begin, i);
      constexpr std::string_view prefixes[] = {"R", "LR", "uR", "UR", "u8R"};
      if (std::ranges::count(prefixes, name) != 0 && At(i) == '"') {
        return name + RawString(i);
      }
    }
    return Text(begin, i);
  }

  [[nodiscard]] std::string Text(std::size_t begin, std::size_t end) const {
    std::string text;
    for (; begin < end; ++begin) {
      text += At(begin);
    }
    return text;
  }

  /// Its length behind the <; 0 when it does not end on its line.
  [[nodiscard]] std::size_t HeaderName(std::size_t raw) const {
    for (std::size_t length = 0; !IsEnd(Raw(raw)) && BehindSpliceAt(raw) == raw; ++raw) {
      ++length;
      if (Raw(raw) == '>') {
        return length;
      }
    }
    return 0;
  }

  [[nodiscard]] std::size_t BehindSpliceAt(std::size_t i) const {
    return Raw(i) == '\\' ? BehindSplice(i) : i;
  }

  void Literal(std::size_t& i, char close) const {
    while (i < m_logical.size() && !IsEnd(At(i))) {
      const char byte = At(i++);
      if (byte == close) {
        return;
      }
      if (byte == '\\' && i < m_logical.size() && !IsEnd(At(i))) {
        ++i;
      }
    }
  }

  /// From its quote on, in the text with its splices.
  std::string RawString(std::size_t& i) const {
    const std::size_t quote = m_logical[i];
    std::string text;
    for (std::size_t raw = quote; raw < m_raw.size(); ++raw) {
      text += Raw(raw);
    }
    std::size_t open = 1;
    while (open < text.size() && open <= 16 && text[open] > ' ' && text[open] <= '~' &&
           std::string_view("()\\\"$@`").find(text[open]) == std::string::npos) {
      ++open;
    }
    std::string close = "\"";
    if (open < text.size() && text[open] == '(') {
      close = ")" + text.substr(1, open - 1) + close;
    }
    const std::size_t end = text.find(close, close.size() == 1 ? 1 : open + 1);
    text.resize(end == std::string::npos ? text.size() : end + close.size());
    // Text behind it is spliced anew: what looked like a splice across its end is none.
    const auto behind = std::ranges::lower_bound(m_logical, quote + text.size());
    i = static_cast<std::size_t>(behind - m_logical.begin());
    return text;
  }

  ReferenceText m_raw;
  std::vector<std::size_t> m_logical;  ///< What of m_raw is no splice.
};

/// For each line, whether it may go: one after the other, each with those that may go before it,
/// and the whole text lexed for it.
inline std::vector<bool> ReferenceSafety(std::string_view source, std::vector<Line> const& lines) {
  // Begin and end of each line.
  std::vector<std::pair<std::size_t, std::size_t>> bounds = {{0, 0}};
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] == '\n' || source[i] == '\r') {
      bounds.back().second = i;
      const char partner = source[i] == '\n' ? '\r' : '\n';
      i += i + 1 < source.size() && source[i + 1] == partner ? 1 : 0;
      bounds.emplace_back(i + 1, 0);
    }
  }
  bounds.back().second = source.size();

  ReferenceText text;
  for (std::size_t i = 0; i < source.size(); ++i) {
    text.push_back({source[i], i});
  }
  const ReferenceTokens original(text);
  std::vector<bool> isSafe;
  std::uint64_t least = 1;
  for (Line const& line : lines) {
    bool isSound = line.line >= least && line.line <= bounds.size();
    ReferenceText cut = text;
    if (isSound) {
      least = line.line + (line.markers.empty() ? 0ULL : 1ULL);
      const auto [begin, end] = bounds[line.line - 1];
      std::uint64_t behind = 0;
      for (Marker const& marker : line.markers) {
        auto const& [from, to] = marker.offsets;
        isSound = isSound && from >= behind && from < to && to <= end - begin;
        if (!isSound) {
          break;
        }
        behind = to;
        std::string there(source.substr(begin + from, end - begin - from));
        std::size_t digits = 4;
        while (digits < there.size() && std::isdigit(there[digits]) != 0) {
          ++digits;
        }
        std::string number = there.substr(std::min(there.size(), std::size_t{4}), digits - 4);
        number.erase(0, std::min(number.find_first_not_of('0'), number.size()));
        isSound = there.starts_with("//-V") && digits <= to - from &&
                  (marker.code == 0 || number == std::to_string(marker.code));
        std::erase_if(cut, [&](ReferenceByte const& byte) {
          return byte.at >= begin + from && byte.at < begin + to;
        });
      }
    }
    if (isSound) {
      const ReferenceTokens after(cut);
      isSound = after.tokens == original.tokens && after.lineEnds == original.lineEnds &&
                after.endsInComment == original.endsInComment;
    }
    if (isSound) {
      text = cut;
    }
    isSafe.push_back(isSound);
  }
  return isSafe;
}
