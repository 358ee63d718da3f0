// The help of qln-fp-tree.
#pragma once

#include <string_view>

namespace tree {

[[nodiscard]] std::string_view Usage();

}  // namespace tree
