// The file that -o names.
#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string_view>

#include "companion/output/console.h"
#include "files/output_file.h"

namespace companion {

/// What -o takes for the standard output.
inline constexpr std::string_view StandardOutput = "-";

/// An OutputFile whose failures leave as std::runtime_error with the path and the reason; or the
/// standard output, of which the console tells that. For one thread.
class ResultFile {
 public:
  /// `console` must outlive the file.
  ResultFile(std::filesystem::path const& path, Console& console);

  void Write(std::string_view bytes);

  /// Of what is written here, Finish tells the failures.
  [[nodiscard]] std::ostream& Stream() { return m_file ? m_file->Stream() : m_console.Out(); }

  /// Puts the file in its place; to be called at the end.
  void Finish();

 private:
  void ThrowFor(std::error_code error) const;

  std::filesystem::path m_path;
  Console& m_console;
  std::optional<OutputFile> m_file;
};

}  // namespace companion
