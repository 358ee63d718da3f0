// A file that is written beside its place, and put there once it is whole.
#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <system_error>

#include "files/descriptor.h"
#include "files/descriptor_buffer.h"

/// Is written under the name with ".part" and a number appended, which Finish() takes away; so an
/// older file stays until there is a new one, which then has its permissions, and nobody meets half
/// of one. Nothing that stands there is written over. Unfinished, it is removed. Where the path is
/// a link, what it leads to is replaced in the same way. A device or a pipe is written to as it is.
///
/// Nothing here throws but std::bad_alloc; what fails first, Error() and Finish() say. For one
/// thread.
class OutputFile {
 public:
  explicit OutputFile(std::filesystem::path const& path);
  ~OutputFile();
  OutputFile(OutputFile const&) = delete;
  OutputFile& operator=(OutputFile const&) = delete;

  /// What is written here is in the file after Finish().
  [[nodiscard]] std::ostream& Stream() { return m_stream; }

  /// Why something could not be written so far.
  [[nodiscard]] std::error_code Error() const;

  /// Puts the file in its place; to be called at the end. Returns why it is not there.
  [[nodiscard]] std::error_code Finish();

 private:
  void OpenBeside();

  std::filesystem::path m_path;     ///< Where links lead.
  std::filesystem::path m_written;  ///< Where it is written; m_path itself for a device.
  Descriptor m_file;
  std::error_code m_openError;
  std::optional<DescriptorBuffer> m_buffer;
  std::ostream m_stream{nullptr};
  bool m_isFinished = false;
};
