// Writing JSON piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

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
  explicit PrettyJsonWriter(std::ostream& output) : m_output(output) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }

  /// The key of the value that is written next. Plain ASCII, nothing in it to escape.
  void Key(std::string_view key);

  void Number(std::uint64_t value);
  void SignedNumber(std::int64_t value);
  void Bool(bool value);
  void Text(std::string_view value);

  /// Hands what is still held to the stream. Called once the document is complete.
  void Flush();

 private:
  void Open(char bracket);
  void Close(char bracket);
  void BeginElement();
  void BeginLine();

  std::ostream& m_output;
  std::string m_text;
  std::size_t m_depth = 0;
  bool m_isFirst = true;    ///< Nothing stands in the innermost object or array yet.
  bool m_afterKey = false;  ///< The next value belongs to the key just written.
};

/// `text` as a JSON string, quotes included. Throws the JSON library's exception for what is not
/// UTF-8.
[[nodiscard]] std::string ToJsonString(std::string_view text);

/// Whether `text` is printable ASCII with nothing to escape: its JSON string is the text itself.
[[nodiscard]] bool IsPlainText(std::string_view text);
