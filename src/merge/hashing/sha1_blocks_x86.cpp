#include "merge/hashing/sha1_blocks.h"

#if defined(__x86_64__)

#include <cpuid.h>
#include <immintrin.h>

// The instructions work on four rounds at a time, with the words a to d in one register; see the
// "SHA Extensions" chapter of the Intel 64 and IA-32 Architectures Software Developer's Manual.

#define QLN_SHA_TARGET __attribute__((target("sha,ssse3,sse4.1")))

namespace {

/// Five groups of four rounds, all with the function and constant of number Function.
template <unsigned Function>
QLN_SHA_TARGET inline void TwentyRounds(__m128i& abcd, __m128i& before, __m128i (&w)[4],
                                        __m128i const& e) {
  for (std::size_t i = 0; i < 5; ++i) {
    const std::size_t group = std::size_t{5} * Function + i;
    __m128i& word = w[group % 4];
    if (group >= 4) {
      const __m128i mixed =
          _mm_xor_si128(_mm_sha1msg1_epu32(word, w[(group + 1) % 4]), w[(group + 2) % 4]);
      word = _mm_sha1msg2_epu32(mixed, w[(group + 3) % 4]);
    }
    // Only the first group has its e given; the others make it of the a four rounds before.
    const __m128i sum = group == 0 ? _mm_add_epi32(e, word) : _mm_sha1nexte_epu32(before, word);
    before = abcd;
    abcd = _mm_sha1rnds4_epu32(abcd, sum, static_cast<int>(Function));
  }
}

QLN_SHA_TARGET void TakeBlocks(Sha1State& state, unsigned char const* blocks, std::size_t count) {
  constexpr int reversed = 0x1b;
  const __m128i bigEndian = _mm_set_epi64x(0x0001020304050607, 0x08090a0b0c0d0e0f);
  __m128i abcd =
      _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<__m128i const*>(state.data())), reversed);
  __m128i e = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);

  for (; count > 0; --count, blocks += 64) {
    __m128i w[4];
    for (std::size_t i = 0; i < 4; ++i) {
      const auto* words = reinterpret_cast<__m128i const*>(blocks + 16 * i);
      w[i] = _mm_shuffle_epi8(_mm_loadu_si128(words), bigEndian);
    }
    const __m128i abcdAtStart = abcd;
    __m128i before = abcd;
    TwentyRounds<0>(abcd, before, w, e);
    TwentyRounds<1>(abcd, before, w, e);
    TwentyRounds<2>(abcd, before, w, e);
    TwentyRounds<3>(abcd, before, w, e);
    e = _mm_sha1nexte_epu32(before, e);
    abcd = _mm_add_epi32(abcd, abcdAtStart);
  }

  _mm_storeu_si128(reinterpret_cast<__m128i*>(state.data()), _mm_shuffle_epi32(abcd, reversed));
  state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(e, 3));
}

bool HasInstructions() {
  constexpr unsigned ssse3 = 1U << 9U;   // Leaf 1, ecx.
  constexpr unsigned sse41 = 1U << 19U;  // Leaf 1, ecx.
  constexpr unsigned sha = 1U << 29U;    // Leaf 7, ebx.
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0 || (ecx & ssse3) == 0 || (ecx & sse41) == 0) {
    return false;
  }
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & sha) != 0;
}

}  // namespace

Sha1Blocks Sha1BlocksOfProcessor() {
  return HasInstructions() ? TakeBlocks : nullptr;
}

#endif
