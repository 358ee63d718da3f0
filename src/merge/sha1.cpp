#include "merge/sha1.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

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

}  // namespace

void SHA1::add(void const* data, std::size_t numBytes) {
  auto const* bytes = static_cast<unsigned char const*>(data);
  if (m_bufferSize > 0) {
    const std::size_t taken = std::min(numBytes, BlockSize - m_bufferSize);
    std::copy_n(bytes, taken, m_buffer.data() + m_bufferSize);
    m_bufferSize += taken;
    bytes += taken;
    numBytes -= taken;
    if (m_bufferSize < BlockSize) {
      return;
    }
    processBlock(m_buffer.data());
    m_numBytes += BlockSize;
    m_bufferSize = 0;
  }
  for (; numBytes >= BlockSize; bytes += BlockSize, numBytes -= BlockSize) {
    processBlock(bytes);
    m_numBytes += BlockSize;
  }
  std::copy_n(bytes, numBytes, m_buffer.data());
  m_bufferSize = numBytes;
}

void SHA1::processBlock(void const* block) {
  std::array<std::uint32_t, 80> words;
  for (std::size_t i = 0; i < 16; ++i) {
    words[i] = LoadBigEndian(static_cast<unsigned char const*>(block) + 4 * i);
  }
  for (std::size_t i = 16; i < words.size(); ++i) {
    words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
  }

  WorkingVariables v{m_state[0], m_state[1], m_state[2], m_state[3], m_state[4]};
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

  m_state[0] += v.a;
  m_state[1] += v.b;
  m_state[2] += v.c;
  m_state[3] += v.d;
  m_state[4] += v.e;
}

std::string SHA1::getHash() {
  // The padding goes through a copy, so that the stream can go on.
  SHA1 padded = *this;
  const std::uint64_t bits = (m_numBytes + m_bufferSize) * 8;
  std::array<unsigned char, BlockSize + 8> padding{0x80};
  const std::size_t zerosEnd = (m_bufferSize < 56 ? 56 : 120) - m_bufferSize;
  for (std::size_t i = 0; i < 8; ++i) {
    padding[zerosEnd + i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
  }
  padded.add(padding.data(), zerosEnd + 8);

  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint32_t word : padded.m_state) {
    for (unsigned shift = 32; shift > 0; shift -= 4) {
      text += digits[(word >> (shift - 4)) & 0xfU];
    }
  }
  return text;
}
