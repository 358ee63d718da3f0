// Why a source cannot be cleaned.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace companion {

struct SourceProblem {
  enum class Kind : std::uint8_t {
    Changed,
    OtherLineEnds,  ///< Changed in nothing else.
    Gone,
    Forbidden,  ///< May not be read, or may not be written.
    Other,
  };

  Kind kind = Kind::Other;
  std::string text;  ///< For the user: "no such source: " and the name.
};

using MaybeProblem = std::optional<SourceProblem>;

}  // namespace companion
