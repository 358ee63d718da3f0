// Writing JSON piece by piece.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "window_size.h"

/// Writes one JSON document to a stream, in the very bytes of the JSON library's dump with an
/// indent of 2, but without a tree of the document: one window of memory is enough for a report of
/// a million markers. Nothing is checked: the caller gives the keys of each object in ascending
/// order, in which the library would sort them, ends every object and array, and nests no deeper
/// than 16.
///
/// Text that is not plain ASCII is written by the library, which throws its exception for what is
/// not UTF-8. A stream that fails is told from its state. For use by one thread at a time.
class PrettyJsonWriter {
 public:
  /// `output` must outlive the writer.
  explicit PrettyJsonWriter(std::ostream& output)
      : m_output(output), m_window(std::make_unique_for_overwrite<char[]>(WindowSize)) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }

  /// The key of the value that is written next: plain ASCII, short, with nothing in it to escape.
  /// It stands in the header, with all that it calls, because a compiler that knows the lengths of
  /// the keys makes code that takes half the time.
  void Key(std::string_view key) {
    char* at = BeginElement(key.size() + 4);
    *at++ = '"';
    at = Put(at, key);
    End(Put(at, "\": "));
    m_afterKey = true;
  }

  void Bool(bool value);
  void Text(std::string_view value);

  /// An element that is written with fixed text around its numbers: the texts, which bring their
  /// own line breaks and indent, and the numbers in turn. All of it together is short.
  template <typename... Parts>
  void Element(Parts const&... parts) {
    constexpr std::size_t most = (MostOf<Parts> + ...);
    static_assert(most <= MostOfElement);
    char* at = BeginElement(most);
    ((at = PutPart(at, parts)), ...);
    End(at);
  }

  // A key and its value in one.
  void Number(std::string_view key, std::uint64_t value) {
    Key(key);
    Integer(value);
  }
  void SignedNumber(std::string_view key, std::int64_t value) {
    Key(key);
    Integer(value);
  }
  void Bool(std::string_view key, bool value) {
    Key(key);
    Bool(value);
  }
  void Text(std::string_view key, std::string_view value) {
    Key(key);
    Text(value);
  }

  /// Begins a new document; what the window still holds of the one before is forgotten.
  void Restart() {
    m_size = 0;
    m_depth = 0;
    m_isFirst = true;
    m_afterKey = false;
  }

  /// Hands what the window still holds to the stream. To be called when the document is complete;
  /// what is not flushed is lost.
  void Flush();

 private:
  /// An element that is written in one piece is no longer, in bytes.
  static constexpr std::size_t MostOfElement = 512;

  static constexpr std::size_t WindowSize =
      std::max(WindowBytes(std::size_t{64} * 1024), 2 * MostOfElement);

  /// A line break and the deepest indent. It is always copied whole, which is quicker than copying
  /// the right length; what is too much of it is then overwritten.
  static constexpr std::string_view LineStart = "\n                                ";

  static constexpr std::size_t MostDigits = 20;

  template <typename Type>
  void Integer(Type value) {
    char* const at = BeginElement(MostDigits);
    End(std::to_chars(at, at + MostDigits, value).ptr);
  }

  /// Of a text with its closing zero, or of a number.
  template <typename Part>
  static constexpr std::size_t MostOf = std::max(std::extent_v<Part>, MostDigits);

  template <std::size_t Size>
  static char* PutPart(char* at, char const (&text)[Size]) {
    std::memcpy(at, text, Size - 1);
    return at + Size - 1;
  }
  static char* PutPart(char* at, std::uint64_t number) {
    return std::to_chars(at, at + MostDigits, number).ptr;
  }

  void Open(char bracket) {
    char* at = BeginElement(1);
    *at++ = bracket;
    End(at);
    ++m_depth;
    m_isFirst = true;
  }

  void Close(char bracket) {
    --m_depth;
    char* at = Room(LineStart.size() + 1);
    if (!m_isFirst) {
      at = BeginLine(at);
    }
    *at++ = bracket;
    End(at);
    m_isFirst = false;
  }

  void UnusualText(std::string_view value);

  /// Writes what stands before an element, makes room for its `size` bytes, and returns where these
  /// go. The caller writes them and tells End() where they end.
  char* BeginElement(std::size_t size) {
    char* at = Room(1 + LineStart.size() + size);
    if (m_afterKey) {
      m_afterKey = false;
    } else if (m_depth > 0) {
      *at = ',';
      at = BeginLine(at + (m_isFirst ? 0 : 1));
    }
    m_isFirst = false;
    return at;
  }

  char* BeginLine(char* at) const {
    Put(at, LineStart);
    return at + 1 + 2 * m_depth;
  }

  static char* Put(char* at, std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
  }

  /// Where the next `size` bytes go. There must not be more than fit into an empty window.
  char* Room(std::size_t size) {
    if (size > WindowSize - m_size) {
      Flush();
    }
    return m_window.get() + m_size;
  }

  void End(char const* end) { m_size = static_cast<std::size_t>(end - m_window.get()); }

  std::ostream& m_output;
  std::unique_ptr<char[]> m_window;
  std::size_t m_size = 0;
  std::size_t m_depth = 0;
  bool m_isFirst = true;    ///< Nothing stands in the innermost object or array yet.
  bool m_afterKey = false;  ///< The next value belongs to the key just written.
};

/// `text` as a JSON string, quotes included. Throws the JSON library's exception for what is not
/// UTF-8.
[[nodiscard]] std::string ToJsonString(std::string_view text);

/// Whether `text` is printable ASCII with nothing to escape: its JSON string is the text itself.
[[nodiscard]] bool IsPlainText(std::string_view text);
