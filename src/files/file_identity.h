// Which file it is, whatever it is called.
#pragma once

#include <sys/stat.h>

#include <compare>

/// Two paths lead to one file exactly when their identities are equal: links, hard links, and
/// spellings that a file system takes for the same name included.
struct FileIdentity {
  FileIdentity() = default;
  explicit FileIdentity(struct stat const& status) : device(status.st_dev), inode(status.st_ino) {}

  dev_t device = 0;
  ino_t inode = 0;

  friend auto operator<=>(FileIdentity const&, FileIdentity const&) = default;
};
