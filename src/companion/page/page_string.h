// Text of any bytes as a JSON string that can stand in an HTML page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace companion {

/// Appends `bytes` to `json` as a JSON string, quotes included, in plain ASCII. What is no UTF-8
/// becomes U+FFFD. No sign that HTML takes for markup is in it, so `</script>` in a source cannot
/// end the page's script.
void AppendPageString(std::string& json, std::string_view bytes);

/// How long `bytes` are once shown, in the units in which the page's script counts (UTF-16).
[[nodiscard]] std::size_t ShownLength(std::string_view bytes);

}  // namespace companion
