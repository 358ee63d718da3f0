#include "cleaner/source_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

void Rename(fs::path const& from, fs::path const& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) {
    fs::rename(from, to);
  }
}

void Remove(fs::path const& path) {
  if (::unlink(path.c_str()) != 0) {
    fs::remove(path);
  }
}

/// Makes a new file of `content`; false, with part of it perhaps there, when a step fails.
bool WriteNew(fs::path const& path, mode_t mode, std::string_view content) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (descriptor < 0) {
    return false;
  }
  const ssize_t written = ::write(descriptor, content.data(), content.size());
  // The mode as it is, which a default access list of the folder may have changed.
  const bool isDone =
      written == static_cast<ssize_t>(content.size()) && ::fchmod(descriptor, mode) == 0;
  return ::close(descriptor) == 0 && isDone;
}

/// A file that has come to the path of one that could not be opened is another run's, or another
/// worker's, and has the text of another source. For all else there the library has its words.
void RefuseForeignFile(TemporaryFile const& from, fs::path const& to) {
  if (from.IsOpen()) {
    return;
  }
  std::error_code ignored;
  const fs::file_status status = fs::status(from.Path(), ignored);
  if (!fs::status_known(status) || !fs::exists(status) || fs::is_regular_file(status)) {
    throw fs::filesystem_error("in copy_file", to, from.Path(),
                               std::make_error_code(std::errc::no_such_file_or_directory));
  }
}

void Copy(TemporaryFile const& from, fs::path const& to, std::optional<std::string_view> content) {
  if (!content || !from.IsWhole() || !WriteNew(to, from.Mode(), *content)) {
    RefuseForeignFile(from, to);
    fs::copy_file(from.Path(), to, fs::copy_options::overwrite_existing);
  }
}

}  // namespace

void ReplaceSource(fs::path const& source, fs::path const& backup, TemporaryFile const& rewritten,
                   std::optional<std::string_view> content) {
  Rename(source, backup);
  try {
    Copy(rewritten, source, content);
  } catch (fs::filesystem_error const&) {
    fs::rename(backup, source);
    throw;
  }
  Remove(rewritten.Path());
}
