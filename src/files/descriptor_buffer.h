// A stream buffer over an open file.
#pragma once

#include <array>
#include <cstddef>
#include <streambuf>
#include <system_error>

#include "files/descriptor.h"

/// Writes to a file in large pieces; on a terminal, line by line. Remembers why the first writing
/// failed, after which nothing is written any more. For use by one thread.
class DescriptorBuffer : public std::streambuf {
 public:
  /// `file` must outlive the buffer, which writes nothing when it is destroyed.
  explicit DescriptorBuffer(Descriptor const& file);

  /// Of the first failure; none as long as there is none.
  [[nodiscard]] std::error_code Error() const { return m_error; }

 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(char const* bytes, std::streamsize count) override;
  int sync() override;

 private:
  Descriptor const& m_file;
  std::array<char, std::size_t{64} * 1024> m_buffer;
  bool m_isTerminal;
  std::error_code m_error;
};
