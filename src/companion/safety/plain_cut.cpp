// A line begins within code, or within a comment, when the line before does not end with a splice
// and there are no raw strings. What a plain cut takes out reaches from the beginning of a comment,
// or from within one, to the end of the line or to the beginning of another comment there. The line
// does not end with a splice, before or after; no byte beside the cut can make a comment begin or
// end. So what goes is comment, and what is behind it is what it was.
#include "companion/safety/plain_cut.h"

#include <cstddef>

#include "companion/safety/blanks.h"

namespace companion {

namespace {

constexpr std::string_view BlanksAndLineEnds = " \t\v\f\r\n";

bool EndsWithBackslash(std::string_view text) {
  const std::size_t last = text.find_last_not_of(BlanksAndLineEnds);
  return last != std::string_view::npos && text[last] == '\\';
}

bool IsOfWord(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '_' || byte == '$' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

/// Where the literal that opens at `open` has its closing quote; npos when it has none, or may be a
/// digit separator.
std::size_t CloseOf(std::string_view text, std::size_t open) {
  const char quote = text[open];
  if (quote == '\'' && open > 0 && IsOfWord(text[open - 1])) {
    return std::string_view::npos;
  }
  std::size_t at = open + 1;
  while (at < text.size() && text[at] != quote) {
    at += text[at] == '\\' ? 2 : 1;
  }
  return at < text.size() ? at : std::string_view::npos;
}

/// Whether every literal before the first comment is closed, if the text begins within code; the
/// text must not end a comment that it began in.
bool ClosesItsLiterals(std::string_view text) {
  for (std::size_t at = text.find_first_of("\"'/"); at < text.size();
       at = text.find_first_of("\"'/", at + 1)) {
    if (text[at] != '/') {
      at = CloseOf(text, at);
    } else if (text.substr(at).starts_with("//") || text.substr(at).starts_with("/*")) {
      return true;
    }
    if (at == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

/// Whether the end of this text is for certain within code or a comment.
bool EndsOutsideLiterals(std::string_view text) {
  if (text.find('#') != std::string_view::npos) {
    return false;  // A directive has rules of its own.
  }
  return text.find_first_of("\"'") == std::string_view::npos ||
         (text.find("*/") == std::string_view::npos && ClosesItsLiterals(text));
}

/// Whether, of the text from the first range on, nothing stays but blanks and a comment behind
/// them.
bool LeavesNoCode(ListedLine const& line, std::string_view source) {
  std::size_t at = line.dropped.front().begin;
  for (auto const& [begin, end] : line.dropped) {
    if (source.substr(at, begin - at).find_first_not_of(Blanks) != std::string_view::npos) {
      return false;
    }
    at = end;
  }
  const std::string_view rest = source.substr(at, line.end - at);
  const std::size_t kept = rest.find_first_not_of(Blanks);
  return kept == std::string_view::npos || rest.substr(kept).starts_with("//");
}

}  // namespace

bool MayHoldRawString(std::string_view source) {
  for (std::size_t quote = source.find('"'); quote < source.size();
       quote = source.find('"', quote + 1)) {
    // A splice may stand between the prefix and the quote.
    const char before = quote > 0 ? source[quote - 1] : '\0';
    if (before == 'R' ||
        ((before == '\n' || before == '\r') && EndsWithBackslash(source.substr(0, quote)))) {
      return true;
    }
  }
  return false;
}

bool IsPlainCut(ListedLine const& line, std::string_view source) {
  const std::size_t begin = line.dropped.front().begin;
  const std::string_view before = source.substr(line.begin, begin - line.begin);
  const std::string_view rest = source.substr(begin, line.end - begin);
  return LeavesNoCode(line, source) && !before.ends_with('/') && !before.ends_with('*') &&
         rest.find("*/") == std::string_view::npos && !EndsWithBackslash(before) &&
         !EndsWithBackslash(rest) && !EndsWithBackslash(source.substr(0, line.begin)) &&
         EndsOutsideLiterals(before);
}

}  // namespace companion
