#include "cleaner/source_replacement.h"

#include <cstddef>
#include <new>
#include <system_error>
#include <vector>

#include "files/new_file.h"
#include "files/rename_no_replace.h"

namespace {

namespace fs = std::filesystem;

void RenameToBackup(SourceFile const& source, fs::path const& path, fs::path const& backup) {
  if (!RenameNoReplace(path, backup)) {
    return;
  }
  // Such a rename would do nothing, or put a link to itself in the place of the only text.
  if (source.IsNamed(backup)) {
    throw fs::filesystem_error("the backup's name is another name of the source", path, backup,
                               std::make_error_code(std::errc::file_exists));
  }
  fs::rename(path, backup);  // Over an older backup, or else it fails in the library's words.
}

/// Throws std::bad_alloc.
std::error_code CopyFromStart(TemporaryFile const& from, NewFile& to) {
  std::vector<char> buffer(std::size_t{128} * 1024);
  Transfer piece;
  std::error_code error = from.Rewind();
  do {
    if (!error) {
      piece = from.Read(buffer);
      error = piece.error;
    }
  } while (!error && to.Write({buffer.data(), piece.size}) && piece.size == buffer.size());
  return error ? error : to.Finish();
}

std::error_code CopyAll(TemporaryFile const& from, NewFile& to,
                        std::optional<std::string_view> content) {
  if (content && !from.WriteError()) {
    to.Write(*content);
    return to.Finish();
  }
  try {
    return CopyFromStart(from, to);
  } catch (std::bad_alloc const&) {
    return std::make_error_code(std::errc::not_enough_memory);
  }
}

/// Throws the reason for which the copy failed, or that and where the original is.
void Copy(TemporaryFile const& rewritten, fs::path const& path, fs::path const& backup,
          std::optional<std::string_view> content) {
  NewFile copy(path, rewritten.Mode());
  const std::error_code error = CopyAll(rewritten, copy, content);
  if (!error) {
    return;
  }
  if (copy.Withdraw()) {
    const std::error_code moved = MoveNoReplace(backup, path);
    if (!moved) {
      throw fs::filesystem_error("in copy_file", rewritten.Path(), path, error);
    }
    if (moved != std::errc::file_exists) {
      throw fs::filesystem_error("in rename", backup, path, moved);
    }
  }
  throw fs::filesystem_error("the source is left as it is now; its original is the backup", path,
                             backup, error);
}

}  // namespace

void ReplaceSource(SourceFile const& source, fs::path const& path, fs::path const& backup,
                   TemporaryFile& rewritten, std::optional<std::string_view> content) {
  RenameToBackup(source, path, backup);
  Copy(rewritten, path, backup, content);
  rewritten.Remove();
}
