#include <bit>

#include "merge/hashing/sha1_blocks.h"

namespace {

std::uint32_t LoadBigEndian(unsigned char const* bytes) {
  return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
         std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
}

/// The five working variables a to e of the standard.
struct WorkingVariables {
  std::uint32_t a, b, c, d, e;

  void Round(std::uint32_t function, std::uint32_t constant, std::uint32_t word) {
    const std::uint32_t rotated = std::rotl(a, 5) + function + e + constant + word;
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = rotated;
  }
};

void TakeBlock(Sha1State& state, unsigned char const* block) {
  std::array<std::uint32_t, 80> words;
  for (std::size_t i = 0; i < 16; ++i) {
    words[i] = LoadBigEndian(block + 4 * i);
  }
  for (std::size_t i = 16; i < words.size(); ++i) {
    words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
  }

  WorkingVariables v{state[0], state[1], state[2], state[3], state[4]};
  std::size_t i = 0;
  for (; i < 20; ++i) {
    v.Round(v.d ^ (v.b & (v.c ^ v.d)), 0x5a827999, words[i]);
  }
  for (; i < 40; ++i) {
    v.Round(v.b ^ v.c ^ v.d, 0x6ed9eba1, words[i]);
  }
  for (; i < 60; ++i) {
    v.Round((v.b & v.c) | (v.d & (v.b | v.c)), 0x8f1bbcdc, words[i]);
  }
  for (; i < 80; ++i) {
    v.Round(v.b ^ v.c ^ v.d, 0xca62c1d6, words[i]);
  }

  state[0] += v.a;
  state[1] += v.b;
  state[2] += v.c;
  state[3] += v.d;
  state[4] += v.e;
}

}  // namespace

void Sha1BlocksPortable(Sha1State& state, unsigned char const* blocks, std::size_t count) {
  for (; count > 0; --count, blocks += 64) {
    TakeBlock(state, blocks);
  }
}

#if !defined(__x86_64__) && !(defined(__aarch64__) && defined(__linux__))
Sha1Blocks Sha1BlocksOfProcessor() {
  return nullptr;
}
#endif
