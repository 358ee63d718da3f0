#include "files/attributes.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "files/last_error.h"

namespace {

constexpr mode_t Permissions = 07777;
constexpr std::string_view AccessList = "system.posix_acl_";

using Values = std::map<std::string, std::string>;

/// Calls `read(buffer, size)` with enough room for what it reads; nothing when it fails.
template <typename Read>
std::optional<std::string> ReadWhole(Read const& read) {
  std::string bytes;
  for (;;) {
    const ssize_t wanted = read(nullptr, 0);
    if (wanted <= 0) {
      return wanted == 0 ? std::optional(bytes) : std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(wanted));
    const ssize_t size = read(bytes.data(), bytes.size());
    if (size >= 0) {
      bytes.resize(static_cast<std::size_t>(size));
      return bytes;
    }
    if (errno != ERANGE) {  // It has grown meanwhile.
      return std::nullopt;
    }
  }
}

/// By name; the access list is one of them. Empty where the file system has none.
std::error_code ReadExtended(Descriptor const& file, Values& values) {
  const auto names =
      ReadWhole([&file](char* to, std::size_t size) { return ::flistxattr(file.Get(), to, size); });
  if (!names) {
    return errno == ENOTSUP ? std::error_code() : LastError();
  }
  for (std::size_t at = 0; at < names->size();) {
    const std::string name = names->c_str() + at;
    auto value = ReadWhole([&](char* to, std::size_t size) {
      return ::fgetxattr(file.Get(), name.c_str(), to, size);
    });
    if (!value) {
      return LastError();
    }
    values.emplace(name, std::move(*value));
    at += name.size() + 1;
  }
  return {};
}

std::error_code CopyExtended(Descriptor const& from, Descriptor const& to) {
  Values wanted;
  Values there;
  if (const std::error_code error = ReadExtended(from, wanted)) {
    return error;
  }
  if (const std::error_code error = ReadExtended(to, there)) {
    return error;
  }
  const auto set = [&](bool isList) {
    return std::ranges::all_of(wanted, [&](auto const& one) {
      auto const& [name, value] = one;
      const auto found = there.find(name);
      return name.starts_with(AccessList) != isList ||
             (found != there.end() && found->second == value) ||
             ::fsetxattr(to.Get(), name.c_str(), value.data(), value.size(), 0) == 0;
    });
  };
  // An access list may take away the permission that setting the others needs, and so comes last.
  if (!set(false) || !set(true)) {
    return LastError();
  }
  for (auto const& [name, value] : there) {
    if (!wanted.contains(name) && ::fremovexattr(to.Get(), name.c_str()) != 0) {
      return LastError();
    }
  }
  return {};
}

}  // namespace

std::error_code CopyAttributes(Descriptor const& from, Descriptor const& to) {
  struct stat wanted{};
  struct stat there{};
  if (::fstat(from.Get(), &wanted) != 0 || ::fstat(to.Get(), &there) != 0) {
    return LastError();
  }
  // In this order: a new owner takes special permissions away, and an access list sets some.
  const bool isOwned = wanted.st_uid == there.st_uid && wanted.st_gid == there.st_gid;
  if (!isOwned && ::fchown(to.Get(), wanted.st_uid, wanted.st_gid) != 0) {
    return LastError();
  }
  if (const std::error_code error = CopyExtended(from, to)) {
    return error;
  }
  if (::fstat(to.Get(), &there) != 0) {
    return LastError();
  }
  const mode_t mode = wanted.st_mode & Permissions;
  if ((there.st_mode & Permissions) == mode) {
    return {};
  }
  if (::fchmod(to.Get(), mode) != 0 || ::fstat(to.Get(), &there) != 0) {
    return LastError();
  }
  // A set-group-ID bit is left out without a word where the group is not the caller's.
  return (there.st_mode & Permissions) == mode
             ? std::error_code()
             : std::make_error_code(std::errc::operation_not_permitted);
}
