// A file that is made where nothing stands.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <span>
#include <system_error>

#include "cleaner/file_identity.h"
#include "descriptor.h"

/// Makes a new file and never writes over another's bytes: not over a file that stands at the path,
/// and not over what someone else writes into the new one. Failures leave as std::system_error, but
/// for Withdraw, which throws nothing. For use by one thread.
class NewFile {
 public:
  /// Fails with std::errc::file_exists when anything stands at `path`, a link that leads nowhere
  /// included.
  NewFile(std::filesystem::path path, mode_t mode);

  /// Appends all of `bytes`.
  void Write(std::span<char const> bytes);

  /// Makes the permissions the wanted ones, whatever the folder's default access list made of them,
  /// and closes the file. Fails with std::errc::file_exists when someone else wrote into it.
  void Finish();

  /// Takes the file away again; false when what stands at the path now is not, or not only, ours.
  [[nodiscard]] bool Withdraw() noexcept;

 private:
  std::filesystem::path m_path;
  mode_t m_mode;
  Descriptor m_file;
  FileIdentity m_identity;
  off_t m_size = 0;  ///< The bytes that we wrote.
};
