// Writing JSON piece by piece.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "window_size.h"

/// Writes one JSON document to a stream, in the very bytes of the JSON library's dump with an
/// indent of 2, but without a tree of it in memory: reports of a million markers are written in the
/// memory of one window. The caller gives the keys of each object in ascending order, as the
/// library would sort them, and every object and array its end.
///
/// Text that is not plain ASCII is left to the library, which throws its exception for what is not
/// UTF-8. A stream that fails is told from its state.
class PrettyJsonWriter {
 public:
  /// `output` must outlive the writer.
  explicit PrettyJsonWriter(std::ostream& output)
      : m_output(output), m_window(std::make_unique_for_overwrite<char[]>(WindowSize)) {}

  void BeginObject() { Open("{"); }
  void EndObject() { Close("}"); }
  void BeginArray() { Open("["); }
  void EndArray() { Close("]"); }

  /// The key of the value that is written next. Plain ASCII, nothing in it to escape. Inlined, as
  /// is what it calls: the lengths of keys are then known to the compiler, which halves the time.
  void Key(std::string_view key) {
    BeginElement();
    Append("\"");
    Append(key);
    Append("\": ");
    m_afterKey = true;
  }

  void Number(std::uint64_t value) { Integer(value); }
  void SignedNumber(std::int64_t value) { Integer(value); }
  void Bool(bool value);
  void Text(std::string_view value);

  // A key and its value in one.
  void Number(std::string_view key, std::uint64_t value) {
    Key(key);
    Number(value);
  }
  void SignedNumber(std::string_view key, std::int64_t value) {
    Key(key);
    SignedNumber(value);
  }
  void Bool(std::string_view key, bool value) {
    Key(key);
    Bool(value);
  }
  void Text(std::string_view key, std::string_view value) {
    Key(key);
    Text(value);
  }

  /// Hands what is still held to the stream. Called once the document is complete.
  void Flush();

 private:
  static constexpr std::size_t WindowSize = WindowBytes(std::size_t{64} * 1024);

  template <typename Type>
  void Integer(Type value) {
    std::array<char, 24> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    BeginElement();
    Append({digits.data(), static_cast<std::size_t>(end - digits.data())});
  }

  void Open(std::string_view bracket);
  void Close(std::string_view bracket);
  void BeginElement() {
    if (m_afterKey) {
      m_afterKey = false;
    } else if (m_depth > 0) {
      if (!m_isFirst) {
        Append(",");
      }
      BeginLine();
    }
    m_isFirst = false;
  }

  void BeginLine() {
    // Deep enough for every document of this program. Copied whole and then cut to size.
    constexpr std::string_view lineStart = "\n                                ";
    Append(lineStart);
    m_size -= lineStart.size() - (1 + 2 * m_depth);
  }

  void Append(std::string_view text) {
    if (text.size() <= WindowSize - m_size) {
      std::memcpy(m_window.get() + m_size, text.data(), text.size());
      m_size += text.size();
    } else {
      AppendBeyondWindow(text);
    }
  }

  void AppendBeyondWindow(std::string_view text);

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
