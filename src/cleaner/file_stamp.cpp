#include "cleaner/file_stamp.h"

#include <sys/stat.h>

std::optional<FileStamp> FileStamp::OfRegularFile(std::filesystem::path const& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  FileStamp stamp;
  stamp.m_device = status.st_dev;
  stamp.m_inode = status.st_ino;
  stamp.m_size = status.st_size;
  stamp.m_modifiedSeconds = status.st_mtim.tv_sec;
  stamp.m_modifiedNanoseconds = status.st_mtim.tv_nsec;
  stamp.m_changedSeconds = status.st_ctim.tv_sec;
  stamp.m_changedNanoseconds = status.st_ctim.tv_nsec;
  return stamp;
}
