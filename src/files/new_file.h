// A file that is made where nothing stands.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <span>
#include <system_error>

#include "files/descriptor.h"
#include "files/file_identity.h"

/// Makes a new file and never writes over another's bytes: not over a file that stands at the path,
/// and not over what someone else writes into the new one. After the first failure nothing more is
/// done, and Finish says why. Nothing here throws. For use by one thread.
class NewFile {
 public:
  /// Fails with std::errc::file_exists when anything stands at `path`, a link that leads nowhere
  /// included. `path` must outlive the object.
  NewFile(std::filesystem::path const& path, mode_t mode) noexcept;

  /// Appends all of `bytes`. False after a failure.
  bool Write(std::span<char const> bytes) noexcept;

  /// Makes the permissions the wanted ones, whatever the folder's default access list made of them,
  /// and closes the file. Fails with std::errc::file_exists when someone else wrote into it.
  /// Returns the first failure.
  [[nodiscard]] std::error_code Finish() noexcept;

  /// Takes the file away again, if it was made; false when what stands at the path now is not, or
  /// not only, ours.
  [[nodiscard]] bool Withdraw() noexcept;

 private:
  std::error_code Close() noexcept;

  std::filesystem::path const& m_path;
  mode_t m_mode;
  Descriptor m_file;
  bool m_isMade;
  std::error_code m_error;
  FileIdentity m_identity;
  off_t m_size = 0;  ///< The bytes that we wrote.
};
