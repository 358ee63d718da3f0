#include "companion/sources/line_end_forms.h"

#include <cstddef>
#include <string>

#include "merge/hashing/sha1.h"

namespace companion {

namespace {

bool HasLoneReturn(std::string_view text) {
  for (std::size_t at = 0; (at = text.find('\r', at)) != std::string_view::npos; ++at) {
    if (text.substr(at + 1, 1) != "\n") {
      return true;
    }
  }
  return false;
}

std::string HashWithEnds(std::string_view text, std::string_view end) {
  SHA1 hash;
  while (!text.empty()) {
    const std::size_t length = text.find('\n');
    const std::string_view line = text.substr(0, length);
    hash.add(line.data(), line.size() - (line.ends_with('\r') ? 1 : 0));
    if (length == std::string_view::npos) {
      break;
    }
    hash.add(end.data(), end.size());
    text.remove_prefix(length + 1);
  }
  return hash.getHash();
}

}  // namespace

bool IsHashButForLineEnds(std::string_view hash, std::string_view text) {
  return !HasLoneReturn(text) &&
         (HashWithEnds(text, "\r\n") == hash || HashWithEnds(text, "\n") == hash);
}

}  // namespace companion
