// The page's HTML, style and script, embedded when the program is configured.
#pragma once

#include <string_view>

/// The page is its head, the data as one JSON value, and its tail. The functions are defined in a
/// file that web/embed.cmake makes of those beside it.
namespace companion::PageFrame {

[[nodiscard]] std::string_view Head();
[[nodiscard]] std::string_view Tail();

}  // namespace companion::PageFrame
