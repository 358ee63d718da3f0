#include "companion/output/result_file.h"

#include <stdexcept>

namespace companion {

ResultFile::ResultFile(std::filesystem::path const& path, Console& console)
    : m_path(path), m_console(console) {
  if (path != StandardOutput) {
    ThrowFor(m_file.emplace(path).Error());
  }
}

void ResultFile::Write(std::string_view bytes) {
  Stream() << bytes;
  ThrowFor(m_file ? m_file->Error() : std::error_code());
}

void ResultFile::Finish() {
  ThrowFor(m_file ? m_file->Finish() : std::error_code());
}

void ResultFile::ThrowFor(std::error_code error) const {
  if (error) {
    throw std::runtime_error("cannot write " + m_path.string() + ": " + error.message());
  }
}

}  // namespace companion
