// The file that -o names.
#pragma once

#include <filesystem>
#include <ostream>
#include <string_view>

#include "files/output_file.h"

namespace companion {

/// An OutputFile whose failures leave as std::runtime_error with the path and the reason. For one
/// thread.
class ResultFile {
 public:
  explicit ResultFile(std::filesystem::path const& path);

  void Write(std::string_view bytes);

  /// Of what is written here, Finish tells the failures.
  [[nodiscard]] std::ostream& Stream() { return m_file.Stream(); }

  /// Puts the file in its place; to be called at the end.
  void Finish();

 private:
  void ThrowFor(std::error_code error) const;

  std::filesystem::path m_path;
  OutputFile m_file;
};

}  // namespace companion
