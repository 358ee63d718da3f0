// The content hash that marker reports carry.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "merge/hashing/sha1_blocks.h"

/// Streaming SHA-1 as defined by FIPS 180-4, Secure Hash Standard. A plain value that allocates
/// nothing; each user owns one.
class SHA1 {
 public:
  /// Feeds `numBytes` bytes. Any division of the same bytes into calls gives the same digest.
  void add(void const* data, std::size_t numBytes);

  /// The digest of all bytes fed so far, as 40 lowercase hexadecimal digits. More bytes may follow;
  /// they continue the same stream.
  [[nodiscard]] std::string getHash();

 private:
  static constexpr std::size_t BlockSize = 64;

  /// Takes one block of BlockSize bytes into the state.
  void processBlock(void const* block) { processBlocks(block, 1); }
  /// The same for `count` blocks in a row.
  void processBlocks(void const* blocks, std::size_t count);

  std::uint64_t m_numBytes = 0;  ///< Bytes consumed in whole blocks.
  std::size_t m_bufferSize = 0;  ///< Bytes waiting in the buffer.
  std::array<unsigned char, BlockSize> m_buffer{};
  Sha1State m_state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
};

/// The hash of all these bytes.
[[nodiscard]] inline std::string HashOf(std::string_view bytes) {
  SHA1 sha1;
  sha1.add(bytes.data(), bytes.size());
  return sha1.getHash();
}
