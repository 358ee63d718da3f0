// A directory of a test's own, and the files in it.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::string name = std::filesystem::temp_directory_path() / "qln_test_XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), name);
    }
    m_path = name;
  }
  ~ScratchDirectory() { std::filesystem::remove_all(m_path); }
  ScratchDirectory(ScratchDirectory const&) = delete;
  ScratchDirectory& operator=(ScratchDirectory const&) = delete;

  [[nodiscard]] std::filesystem::path const& Path() const { return m_path; }

  // NOLINTNEXTLINE(modernize-use-nodiscard): tests that know the name need no path.
  std::filesystem::path Write(std::string_view name, std::string_view text) const {
    std::ofstream(m_path / name, std::ios::binary) << text;
    return m_path / name;
  }

  [[nodiscard]] std::string Read(std::string_view name) const {
    std::ifstream stream(m_path / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::filesystem::path m_path;
};
