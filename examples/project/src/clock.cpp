#include <cstdint>

// The controller's clock ticks a thousand times a second, and wraps on small boards.
std::uint32_t SecondsSince(std::uint32_t start, std::uint32_t now) {
  const std::uint32_t ticks = now - start;  //-V502
  return ticks / 1000;  //-V503
}
