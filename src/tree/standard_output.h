// The standard output stream, with the reason when it fails.
#pragma once

#include <array>
#include <cstddef>
#include <streambuf>

namespace tree {

/// Writes to the standard output in large pieces; on a terminal, line by line. Remembers why the
/// first writing failed, after which nothing is written any more. A pipe that nobody reads fails
/// with EPIPE only where its signal is blocked or ignored.
class StandardOutput : public std::streambuf {
 public:
  StandardOutput();

  /// The error number of the first failure; 0 as long as there is none.
  [[nodiscard]] int Error() const { return m_error; }

 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(char const* bytes, std::streamsize count) override;
  int sync() override;

 private:
  static constexpr std::size_t Size = std::size_t{64} * 1024;

  void WriteOut(char const* bytes, std::size_t count);

  std::array<char, Size> m_buffer;
  bool m_isTerminal;
  int m_error = 0;
};

}  // namespace tree
