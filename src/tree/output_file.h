// A file that is written beside its place, and put there once it is whole.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tree {

/// Is written under the name with ".part" and a number appended, which Finish() takes away; so an
/// older file stays until there is a new one, which then has its permissions, and nobody meets half
/// of one. Nothing that stands there is written over. Unfinished, it is removed. A
/// device, a pipe or a symbolic link that stands in the place is written to as it is.
///
/// What fails throws std::system_error with the path and the reason. For one thread.
class OutputFile {
 public:
  explicit OutputFile(std::filesystem::path path);
  ~OutputFile();
  OutputFile(OutputFile const&) = delete;
  OutputFile& operator=(OutputFile const&) = delete;

  void Write(std::string_view bytes);

  /// To be called at the end.
  void Finish();

 private:
  [[noreturn]] void Fail() const;
  void WriteOut(std::string_view bytes);

  std::filesystem::path m_path;
  std::filesystem::path m_written;  ///< Where it is written; m_path itself for a device.
  int m_descriptor;
  bool m_isFinished = false;
  std::string m_buffer;
};

}  // namespace tree
