#include "merge/hashing/sha1.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

std::string HashOf(std::string_view text) {
  SHA1 sha1;
  sha1.add(text.data(), text.size());
  return sha1.getHash();
}

TEST(Sha1, StandardVectorsAndPaddingEdges) {
  const std::pair<std::string, std::string_view> cases[] = {
      {"", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
      {"abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
      {std::string(1000000, 'a'), "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
      {std::string(55, 'a'), "c1c8bbdc22796e28c0e15163d20899b65621d65a"},
      {std::string(56, 'a'), "c2db330f6083854c99d4b5bfb6e8f29f201be699"},
      {std::string(64, 'a'), "0098ba824b5c16427bd7a1122a5a442a25ec644d"},
  };
  for (auto const& [text, digest] : cases) {
    EXPECT_EQ(HashOf(text), digest) << text.size() << " bytes";
  }
}

TEST(Sha1, AnyDivisionIntoCallsGivesTheSameDigest) {
  std::minstd_rand random(1);
  std::string text(1000, ' ');
  for (char& byte : text) {
    byte = static_cast<char>(random());
  }
  for (int round = 0; round < 200; ++round) {
    SHA1 sha1;
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t count = std::min<std::size_t>(random() % 150, text.size() - begin);
      sha1.add(text.data() + begin, count);
      begin += count;
      // Asking in between must not disturb the stream.
      ASSERT_EQ(sha1.getHash(), HashOf(text.substr(0, begin)));
    }
  }
}

TEST(Sha1, TheProcessorsInstructionsDoTheSame) {
  const Sha1Blocks ofProcessor = Sha1BlocksOfProcessor();
  if (ofProcessor == nullptr) {
    GTEST_SKIP() << "this processor has none";
  }
  std::minstd_rand random(23);
  std::vector<unsigned char> blocks(320);
  Sha1State portable{};
  Sha1State quick{};
  for (int round = 0; round < 1000; ++round) {
    std::ranges::generate(blocks, [&random] { return static_cast<unsigned char>(random()); });
    Sha1BlocksPortable(portable, blocks.data(), static_cast<std::size_t>(1 + round % 5));
    ofProcessor(quick, blocks.data(), static_cast<std::size_t>(1 + round % 5));
    ASSERT_EQ(portable, quick);
  }
}

}  // namespace
