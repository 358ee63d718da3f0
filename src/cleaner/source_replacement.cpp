#include "cleaner/source_replacement.h"

#include <cerrno>
#include <new>
#include <system_error>
#include <vector>

#include "cleaner/new_file.h"
#include "cleaner/rename_to_free.h"

namespace {

namespace fs = std::filesystem;

void RenameToBackup(SourceFile const& source, fs::path const& path, fs::path const& backup) {
  if (RenameToFree(path, backup)) {
    return;
  }
  // Such a rename would do nothing, or put a link to itself in the place of the only text.
  if (source.IsNamed(backup)) {
    throw fs::filesystem_error("the backup's name is another name of the source", path, backup,
                               std::make_error_code(std::errc::file_exists));
  }
  fs::rename(path, backup);  // Over an older backup, or else it fails in the library's words.
}

void CopyAll(TemporaryFile const& from, NewFile& to, std::optional<std::string_view> content) {
  if (content && !from.WriteError()) {
    to.Write(*content);
    return;
  }
  std::vector<char> buffer(std::size_t{128} * 1024);
  off_t position = 0;
  while (const ssize_t count = from.ReadAt(position, buffer)) {
    if (count < 0) {
      throw std::system_error(errno, std::system_category());
    }
    to.Write({buffer.data(), static_cast<std::size_t>(count)});
    position += count;
  }
}

/// Throws the reason for which the copy failed, or that and where the original is.
[[noreturn]] void FailToCopy(TemporaryFile const& rewritten, fs::path const& path,
                             fs::path const& backup, std::error_code reason, bool isFree) {
  if (isFree && MoveToFree(backup, path)) {
    throw fs::filesystem_error("in copy_file", rewritten.Path(), path, reason);
  }
  throw fs::filesystem_error("the source is left as it is now; its original is the backup", path,
                             backup, reason);
}

void Copy(TemporaryFile const& rewritten, fs::path const& path, fs::path const& backup,
          std::optional<std::string_view> content) {
  std::optional<NewFile> copy;
  std::error_code reason;
  try {
    copy.emplace(path, rewritten.Mode());
    CopyAll(rewritten, *copy, content);
    copy->Finish();
    return;
  } catch (std::system_error const& error) {
    reason = error.code();
  } catch (std::bad_alloc const&) {
    reason = std::make_error_code(std::errc::not_enough_memory);
  }
  const bool isFree = !copy || copy->Withdraw();
  FailToCopy(rewritten, path, backup, reason, isFree);
}

}  // namespace

void ReplaceSource(SourceFile const& source, fs::path const& path, fs::path const& backup,
                   TemporaryFile& rewritten, std::optional<std::string_view> content) {
  RenameToBackup(source, path, backup);
  Copy(rewritten, path, backup, content);
  rewritten.Remove();
}
