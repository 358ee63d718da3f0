// The page's HTML, style and script, embedded when the program is configured.
#pragma once

#include <string_view>

/// The page is its head, the data as one JSON value, and its tail. The functions are defined in a
/// file that cmake/embed_page.cmake makes of those in src/tree/page.
namespace tree::PageFrame {

[[nodiscard]] std::string_view Head();
[[nodiscard]] std::string_view Tail();

}  // namespace tree::PageFrame
