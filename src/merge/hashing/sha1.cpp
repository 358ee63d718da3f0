#include "merge/hashing/sha1.h"

#include <algorithm>
#include <string_view>

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
    m_bufferSize = 0;
  }
  const std::size_t whole = numBytes / BlockSize;
  processBlocks(bytes, whole);
  m_bufferSize = numBytes - whole * BlockSize;
  std::copy_n(bytes + whole * BlockSize, m_bufferSize, m_buffer.data());
}

void SHA1::processBlocks(void const* blocks, std::size_t count) {
  static const Sha1Blocks ofProcessor = Sha1BlocksOfProcessor();
  (ofProcessor != nullptr ? ofProcessor : Sha1BlocksPortable)(
      m_state, static_cast<unsigned char const*>(blocks), count);
  m_numBytes += count * BlockSize;
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
