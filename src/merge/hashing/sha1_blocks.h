// The compression function of SHA-1.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The five words that SHA-1 carries from block to block.
using Sha1State = std::array<std::uint32_t, 5>;

/// Takes `count` blocks of 64 bytes into `state`.
using Sha1Blocks = void (*)(Sha1State& state, unsigned char const* blocks, std::size_t count);

/// FIPS 180-4, section 6.1.2, on any processor.
void Sha1BlocksPortable(Sha1State& state, unsigned char const* blocks, std::size_t count);

/// The function that does the same by SHA instructions, several times as fast; null when the
/// processor that this program runs on has none.
[[nodiscard]] Sha1Blocks Sha1BlocksOfProcessor();
