// Writing a new file through a stream.
#pragma once

#include <ostream>
#include <streambuf>

#include "tree/output_file.h"

namespace tree {

/// Hands what is written to an OutputFile, which must outlive it. What that throws leaves the
/// stream's operations, too.
class OutputFileStream : private std::streambuf, public std::ostream {
 public:
  explicit OutputFileStream(OutputFile& file) : std::ostream(this), m_file(file) {
    exceptions(std::ios::badbit);
  }

 private:
  // Both bases have these names, and compilers differ in whether that is an error.
  using std::streambuf::int_type;
  using std::streambuf::traits_type;

  int_type overflow(int_type byte) override {
    const char one = traits_type::to_char_type(byte);
    m_file.Write({&one, 1});
    return traits_type::not_eof(byte);
  }

  std::streamsize xsputn(char const* bytes, std::streamsize count) override {
    m_file.Write({bytes, static_cast<std::size_t>(count)});
    return count;
  }

  OutputFile& m_file;
};

}  // namespace tree
