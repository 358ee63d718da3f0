#include "merge/hashing/sha1_blocks.h"

#if defined(__aarch64__) && defined(__linux__)

#include <arm_neon.h>
#include <asm/hwcap.h>
#include <sys/auxv.h>

// The instructions work on four rounds at a time, with the words a to d in one register; see
// "SHA1C" and its neighbours in the Arm Architecture Reference Manual for A-profile.

#define QLN_SHA_TARGET __attribute__((target("+sha2")))

namespace {

/// The constants of FIPS 180-4, section 4.2.1.
constexpr std::uint32_t Constants[] = {0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xca62c1d6};

/// Four rounds with the function of number Function; `sum` is their words, the constant added.
template <unsigned Function>
QLN_SHA_TARGET inline uint32x4_t FourRounds(uint32x4_t abcd, std::uint32_t e, uint32x4_t sum) {
  if constexpr (Function == 0) {
    return vsha1cq_u32(abcd, e, sum);
  } else if constexpr (Function == 2) {
    return vsha1mq_u32(abcd, e, sum);
  } else {
    return vsha1pq_u32(abcd, e, sum);
  }
}

/// Five groups of four rounds, all with the function and constant of number Function.
template <unsigned Function>
QLN_SHA_TARGET inline void TwentyRounds(uint32x4_t& abcd, std::uint32_t& e, uint32x4_t (&w)[4]) {
  for (std::size_t i = 0; i < 5; ++i) {
    const std::size_t group = std::size_t{5} * Function + i;
    uint32x4_t& word = w[group % 4];
    if (group >= 4) {
      const uint32x4_t mixed = vsha1su0q_u32(word, w[(group + 1) % 4], w[(group + 2) % 4]);
      word = vsha1su1q_u32(mixed, w[(group + 3) % 4]);
    }
    const std::uint32_t next = vsha1h_u32(vgetq_lane_u32(abcd, 0));
    abcd = FourRounds<Function>(abcd, e, vaddq_u32(word, vdupq_n_u32(Constants[Function])));
    e = next;
  }
}

QLN_SHA_TARGET void TakeBlocks(Sha1State& state, unsigned char const* blocks, std::size_t count) {
  uint32x4_t abcd = vld1q_u32(state.data());
  std::uint32_t e = state[4];

  for (; count > 0; --count, blocks += 64) {
    uint32x4_t w[4];
    for (std::size_t i = 0; i < 4; ++i) {
      w[i] = vreinterpretq_u32_u8(vrev32q_u8(vld1q_u8(blocks + 16 * i)));
    }
    const uint32x4_t abcdAtStart = abcd;
    const std::uint32_t eAtStart = e;
    TwentyRounds<0>(abcd, e, w);
    TwentyRounds<1>(abcd, e, w);
    TwentyRounds<2>(abcd, e, w);
    TwentyRounds<3>(abcd, e, w);
    abcd = vaddq_u32(abcd, abcdAtStart);
    e += eAtStart;
  }

  vst1q_u32(state.data(), abcd);
  state[4] = e;
}

}  // namespace

Sha1Blocks Sha1BlocksOfProcessor() {
  return (::getauxval(AT_HWCAP) & HWCAP_SHA1) != 0 ? TakeBlocks : nullptr;
}

#endif
