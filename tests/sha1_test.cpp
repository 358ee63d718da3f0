#include "merge/hashing/sha1.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(Sha1, StandardVectorsAndPaddingEdgesHoweverDivided) {
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
    for (const std::size_t piece : {1U, 37U, 64U, 150U, 1000000U}) {
      SHA1 sha1;
      for (std::size_t begin = 0, next = piece; begin < text.size(); next = piece + 1 - next) {
        sha1.add(text.data() + begin, std::min(next, text.size() - begin));
        begin += next;  // In turn a piece and a single byte.
      }
      EXPECT_EQ(sha1.getHash(), digest) << text.size() << " bytes by " << piece;
      EXPECT_EQ(sha1.getHash(), digest);  // Asking does not disturb the stream.
    }
  }
}

TEST(Sha1, TheProcessorsInstructionsDoTheSame) {
  const Sha1Blocks ofProcessor = Sha1BlocksOfProcessor();
  if (ofProcessor == nullptr) {
    GTEST_SKIP() << "this processor has none";
  }
  std::array<unsigned char, 320> blocks{};
  Sha1State portable{};
  Sha1State quick{};
  for (unsigned round = 0; round < 1000; ++round) {
    blocks.at(round % 320) = static_cast<unsigned char>(7 * round + portable[0]);
    Sha1BlocksPortable(portable, blocks.data(), 1 + round % 5);
    ofProcessor(quick, blocks.data(), 1 + round % 5);
    ASSERT_EQ(portable, quick);
  }
}

}  // namespace
