// A folder, and what stands in it by name.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <system_error>

#include "files/descriptor.h"
#include "files/file_version.h"

/// An open folder. What is done to the names in it is done in this very folder, whatever becomes of
/// the path to it, and no link is followed. Names are without a separator. Nothing here throws but
/// std::bad_alloc. Any thread may use it.
class Folder {
 public:
  /// Follows links. IsOpen() is false, with the reason in errno, when there is no such folder.
  explicit Folder(std::filesystem::path const& path);

  /// The folder at `relative` below this one, if no link stands on the way to it and the path does
  /// not lead up. Empty for this folder itself.
  [[nodiscard]] Folder Below(std::filesystem::path const& relative) const;

  [[nodiscard]] bool IsOpen() const noexcept { return m_folder.IsOpen(); }
  [[nodiscard]] Descriptor const& Handle() const noexcept { return m_folder; }

  /// Of the name itself. Nothing, with the reason in errno, when the system cannot tell.
  [[nodiscard]] std::optional<struct stat> StatusOf(std::filesystem::path const& name) const;

  /// What stands under the name; nothing when nothing does.
  [[nodiscard]] std::optional<FileVersion> VersionOf(std::filesystem::path const& name) const;

  /// Gives each of two files the other's name, at one moment. Not every file system can.
  [[nodiscard]] std::error_code Exchange(std::filesystem::path const& one,
                                         std::filesystem::path const& other) const;

  /// Renames, and replaces what stands at `to`.
  [[nodiscard]] std::error_code Rename(std::filesystem::path const& from,
                                       std::filesystem::path const& to) const;

  [[nodiscard]] std::error_code Unlink(std::filesystem::path const& name) const;

 private:
  explicit Folder(Descriptor folder) : m_folder(std::move(folder)) {}

  Descriptor m_folder;
};
