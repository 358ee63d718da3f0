#include "companion/output/result_file.h"

#include <stdexcept>

namespace companion {

ResultFile::ResultFile(std::filesystem::path const& path) : m_path(path), m_file(path) {
  ThrowFor(m_file.Error());
}

void ResultFile::Write(std::string_view bytes) {
  m_file.Stream() << bytes;
  ThrowFor(m_file.Error());
}

void ResultFile::Finish() {
  ThrowFor(m_file.Finish());
}

void ResultFile::ThrowFor(std::error_code error) const {
  if (error) {
    throw std::runtime_error("cannot write " + m_path.string() + ": " + error.message());
  }
}

}  // namespace companion
