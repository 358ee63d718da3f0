// What a file has beside its content.
#pragma once

#include <system_error>

#include "files/descriptor.h"

/// Gives one open file the owner, group, permissions, access list and other extended attributes of
/// another, and takes away those that the other does not have. What is equal already is not
/// touched. Returns why that is not possible. Both must be open; any thread may call it.
[[nodiscard]] std::error_code CopyAttributes(Descriptor const& from, Descriptor const& to);
