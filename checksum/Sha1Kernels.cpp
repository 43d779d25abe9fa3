#include "Sha1Kernels.h"

#include <cstring>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace KelBase {
namespace Sha1 {
namespace {

std::uint32_t Rotl(std::uint32_t x, int n) {
    return (x << n) | (x >> (32 - n));
}

std::uint32_t LoadBigEndian(const unsigned char* p) {
    std::uint32_t v;
    std::memcpy(&v, p, 4);
    return __builtin_bswap32(v);
}

} // namespace

void CompressPortable(std::uint32_t* state, const unsigned char* data, std::size_t blocks) {
    for (; blocks; --blocks, data += 64) {
        // The message schedule as a ring of sixteen words.
        std::uint32_t w[16];
        for (int t = 0; t < 16; ++t)
            w[t] = LoadBigEndian(data + 4 * t);
        std::uint32_t a = state[0], b = state[1], c = state[2], d = state[3], e = state[4];
        for (int t = 0; t < 80; ++t) {
            if (t >= 16)
                w[t & 15] =
                    Rotl(w[(t - 3) & 15] ^ w[(t - 8) & 15] ^ w[(t - 14) & 15] ^ w[t & 15], 1);
            std::uint32_t f, k;
            if (t < 20)
                f = (b & c) | (~b & d), k = 0x5A827999;
            else if (t < 40)
                f = b ^ c ^ d, k = 0x6ED9EBA1;
            else if (t < 60)
                f = (b & c) | (b & d) | (c & d), k = 0x8F1BBCDC;
            else
                f = b ^ c ^ d, k = 0xCA62C1D6;
            const std::uint32_t next = Rotl(a, 5) + f + e + k + w[t & 15];
            e = d;
            d = c;
            c = Rotl(b, 30);
            b = a;
            a = next;
        }
        state[0] += a;
        state[1] += b;
        state[2] += c;
        state[3] += d;
        state[4] += e;
    }
}

#ifdef __x86_64__
namespace {

#define KEL_SHANI __attribute__((target("sha,sse4.1")))
#define KEL_SHANI_INLINE __attribute__((target("sha,sse4.1"), always_inline)) inline

// Rounds 4i to 4i+3. msg[i % 4] holds schedule words 4i..4i+3 once computed; `e` is the E
// input of these rounds, `previous` the ABCD before them (the next group's E comes from it).
template <int I> KEL_SHANI_INLINE void Group(__m128i& abcd, __m128i& e, __m128i (&msg)[4]) {
    if constexpr (I >= 4)
        msg[I % 4] = _mm_sha1msg2_epu32(
            _mm_xor_si128(_mm_sha1msg1_epu32(msg[I % 4], msg[(I + 1) % 4]), msg[(I + 2) % 4]),
            msg[(I + 3) % 4]);
    const __m128i previous = abcd;
    const __m128i roundE = I == 0 ? _mm_add_epi32(e, msg[0]) : _mm_sha1nexte_epu32(e, msg[I % 4]);
    abcd = _mm_sha1rnds4_epu32(abcd, roundE, I / 5);
    e = previous;
    if constexpr (I < 19)
        Group<I + 1>(abcd, e, msg);
}

KEL_SHANI void CompressShaNiLoop(std::uint32_t* state, const unsigned char* data,
                                 std::size_t blocks) {
    // Big-endian words in lanes 3..0, so that A sits in the top lane as the instructions want.
    const __m128i reverse = _mm_set_epi64x(0x0001020304050607ll, 0x08090A0B0C0D0E0Fll);
    __m128i abcd =
        _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(state)), 0x1B);
    __m128i e0 = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);
    for (; blocks; --blocks, data += 64) {
        const __m128i abcdSaved = abcd, eSaved = e0;
        __m128i msg[4];
        for (int i = 0; i < 4; ++i)
            msg[i] = _mm_shuffle_epi8(
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16 * i)), reverse);
        __m128i e = e0;
        Group<0>(abcd, e, msg);
        e0 = _mm_sha1nexte_epu32(e, eSaved);
        abcd = _mm_add_epi32(abcd, abcdSaved);
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(state), _mm_shuffle_epi32(abcd, 0x1B));
    state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(e0, 3));
}

bool HasShaNi() {
    unsigned eax, ebx, ecx, edx;
    return __get_cpuid(1, &eax, &ebx, &ecx, &edx) && (ecx & bit_SSSE3) && (ecx & bit_SSE4_1) &&
           __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_SHA);
}

} // namespace

Compress CompressShaNi() {
    static const bool present = HasShaNi();
    return present ? &CompressShaNiLoop : nullptr;
}
#else
Compress CompressShaNi() {
    return nullptr;
}
#endif

Compress CompressBest() {
    static const Compress best = CompressShaNi() ? CompressShaNi() : &CompressPortable;
    return best;
}

} // namespace Sha1
} // namespace KelBase
