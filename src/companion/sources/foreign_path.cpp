#include "companion/sources/foreign_path.h"

#include <algorithm>
#include <cstddef>

namespace companion {

namespace {

namespace fs = std::filesystem;
using Elements = std::vector<std::string>;

constexpr std::string_view Root = "/";

bool IsLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool IsWindowsPath(std::string_view path) {
  return BeginsWithDrive(path) || path.find('\\') != std::string_view::npos;
}

/// `..` takes away what stands before it, if that is a name.
void Append(std::string_view element, Elements& elements) {
  if (element.empty() || element == ".") {
    return;
  }
  if (element == ".." && !elements.empty() && elements.back() != Root && elements.back() != "..") {
    elements.pop_back();
  } else {
    elements.emplace_back(element);
  }
}

/// The names in the path; what begins with a separator has Root in front. Several separators are
/// one: a core may escape its backslashes twice.
Elements ElementsOf(std::string_view path, bool isWindows) {
  const std::string_view separators = isWindows ? "/\\" : "/";
  Elements elements;
  if (!path.empty() && separators.find(path.front()) != std::string_view::npos) {
    elements.emplace_back(Root);
  }
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of(separators), path.size());
    Append(path.substr(0, end), elements);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return elements;
}

std::size_t CountCommon(Elements const& some, Elements const& others, bool isWindows) {
  const auto isSame = [isWindows](std::string const& one, std::string const& other) {
    return isWindows ? FoldedCase(one) == FoldedCase(other) : one == other;
  };
  return static_cast<std::size_t>(std::ranges::mismatch(some, others, isSame).in1 - some.begin());
}

}  // namespace

std::string FoldedCase(std::string text) {
  for (char& byte : text) {
    byte = IsLetter(byte) ? static_cast<char>(byte | 0x20) : byte;
  }
  return text;
}

bool BeginsWithDrive(std::string_view path) {
  return path.size() > 1 && IsLetter(path[0]) && path[1] == ':';
}

ForeignFolder::ForeignFolder(std::string_view path)
    : m_isWindows(IsWindowsPath(path)), m_elements(ElementsOf(path, m_isWindows)) {}

std::optional<fs::path> ForeignFolder::Below(std::string_view path) const {
  const Elements elements = ElementsOf(path, m_isWindows);
  const std::size_t depth = m_elements.size();
  if (elements.size() <= depth || CountCommon(m_elements, elements, m_isWindows) < depth ||
      elements[depth] == Root || elements[depth] == "..") {
    return std::nullopt;
  }
  fs::path below;
  std::for_each(elements.begin() + static_cast<std::ptrdiff_t>(depth), elements.end(),
                [&below](std::string const& element) { below /= element; });
  return below;
}

void CommonFolder::Add(std::string_view path) {
  const bool isWindows = IsWindowsPath(path);
  Elements elements = ElementsOf(path, isWindows);
  elements.resize(elements.size() - (elements.empty() ? 0 : 1));
  if (m_isFirst) {
    m_isWindows = isWindows;
    m_elements = std::move(elements);
  } else {
    m_elements.resize(CountCommon(m_elements, elements, m_isWindows));
  }
  m_isFirst = false;
}

std::string CommonFolder::Text() const {
  const std::string_view separator = m_isWindows ? "\\" : Root;
  std::string text;
  for (std::string const& element : m_elements) {
    const bool isRoot = element == Root;
    text += (text.empty() || isRoot || text == separator ? "" : separator);
    text += isRoot ? separator : element;
  }
  return text == Root ? std::string() : text;
}

}  // namespace companion
