#include "RijndaelKernels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "bytes are packed into words little-endian");

namespace KelBase {
namespace Rijndael {
namespace {

// Byte-parallel arithmetic in GF(2^8) modulo x^8 + x^4 + x^3 + x + 1: eight bytes per word,
// the same operations whatever the values, so nothing depends on secret data.
constexpr std::uint64_t Ones = 0x0101010101010101ull;

std::uint64_t XTime(std::uint64_t a) {
    const std::uint64_t high = (a >> 7) & Ones;
    return ((a & (0x7F * Ones)) << 1) ^ (high * 0x1B);
}

std::uint64_t Multiply(std::uint64_t a, std::uint64_t b) {
    std::uint64_t product = 0;
    for (int bit = 0; bit < 8; ++bit) {
        product ^= a & (((b >> bit) & Ones) * 0xFF);
        a = XTime(a);
    }
    return product;
}

// x^254, the multiplicative inverse (0 stays 0).
std::uint64_t Inverse(std::uint64_t x) {
    const std::uint64_t x2 = Multiply(x, x);
    const std::uint64_t x3 = Multiply(x2, x);
    const std::uint64_t x12 = Multiply(Multiply(x3, x3), Multiply(x3, x3));
    const std::uint64_t x15 = Multiply(x12, x3);
    std::uint64_t x240 = x15;
    for (int i = 0; i < 4; ++i)
        x240 = Multiply(x240, x240);
    return Multiply(Multiply(x240, x12), x2);
}

// Each byte rotated left by n bits.
template <int N> std::uint64_t RotateBytes(std::uint64_t a) {
    constexpr std::uint64_t keepLow = (0xFFu >> N) * Ones;
    return ((a & keepLow) << N) | ((a >> (8 - N)) & ((0xFFu >> (8 - N)) * Ones));
}

std::uint64_t SubBytes(std::uint64_t a) {
    const std::uint64_t b = Inverse(a);
    return b ^ RotateBytes<1>(b) ^ RotateBytes<2>(b) ^ RotateBytes<3>(b) ^ RotateBytes<4>(b) ^
           0x63 * Ones;
}

std::uint64_t InvSubBytes(std::uint64_t a) {
    return Inverse(RotateBytes<1>(a) ^ RotateBytes<3>(a) ^ RotateBytes<6>(a) ^ 0x05 * Ones);
}

template <std::uint64_t (*Sub)(std::uint64_t)> void SubState(std::uint8_t* state, int bytes) {
    for (int i = 0; i < bytes; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, state + i, 8);
        word = Sub(word);
        std::memcpy(state + i, &word, 8);
    }
}

std::uint32_t Rotate8(std::uint32_t w) {
    return (w >> 8) | (w << 24);
}

// One column: byte i of the word is row i.
std::uint32_t MixColumn(std::uint32_t w) {
    const std::uint32_t r8 = Rotate8(w);
    return r8 ^ Rotate8(Rotate8(w)) ^ Rotate8(Rotate8(r8)) ^
           static_cast<std::uint32_t>(XTime(w ^ r8));
}

// InvMixColumns is MixColumns after adding 4·(a0 + a2) and 4·(a1 + a3) to the rows.
std::uint32_t InvMixColumn(std::uint32_t w) {
    const std::uint32_t fold = w ^ Rotate8(Rotate8(w));
    return MixColumn(w ^ static_cast<std::uint32_t>(XTime(XTime(fold))));
}

template <std::uint32_t (*Mix)(std::uint32_t)> void MixState(std::uint8_t* state, int bytes) {
    for (int i = 0; i < bytes; i += 4) {
        std::uint32_t column;
        std::memcpy(&column, state + i, 4);
        column = Mix(column);
        std::memcpy(state + i, &column, 4);
    }
}

// Row r of a block of nb columns moves left by Shift(nb, r) columns.
constexpr int Shift(int nb, int row) {
    return nb == 8 && row >= 2 ? row + 1 : row;
}

// Where each byte of the state comes from in ShiftRows (and its inverse), per column count.
struct RowMap {
    std::array<std::uint8_t, MaxBlockBytes> forward{}, inverse{};
};
template <int Nb> constexpr RowMap MakeRowMap() {
    RowMap map;
    for (int c = 0; c < Nb; ++c)
        for (int r = 0; r < 4; ++r) {
            map.forward[4 * c + r] = static_cast<std::uint8_t>(4 * ((c + Shift(Nb, r)) % Nb) + r);
            map.inverse[4 * c + r] =
                static_cast<std::uint8_t>(4 * ((c + Nb - Shift(Nb, r)) % Nb) + r);
        }
    return map;
}
template <int Nb> constexpr RowMap RowMapOf = MakeRowMap<Nb>();

void Permute(std::uint8_t* state, const std::array<std::uint8_t, MaxBlockBytes>& from, int bytes) {
    std::uint8_t moved[MaxBlockBytes];
    for (int i = 0; i < bytes; ++i)
        moved[i] = state[from[i]];
    std::memcpy(state, moved, bytes);
}

void AddKey(std::uint8_t* state, const std::uint8_t* key, int bytes) {
    for (int i = 0; i < bytes; ++i)
        state[i] ^= key[i];
}

// Blocks are whole 8-byte words; word loads keep this off the critical path of the fast
// kernel.
void XorBlocks(std::uint8_t* out, const std::uint8_t* a, const std::uint8_t* b, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; i += 8) {
        std::uint64_t x, y;
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        x ^= y;
        std::memcpy(out + i, &x, 8);
    }
}

// The portable cipher, one block at a time.
struct PortableCipher {
    template <int Nb> static constexpr int Lanes = 1;

    // The equivalent inverse cipher has the cipher's shape, with the inverse steps and keys.
    template <bool Decrypting, int Nb>
    static void Block(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
        constexpr int bytes = 4 * Nb;
        const auto& keys = Decrypting ? s.dec : s.enc;
        const auto& shift = Decrypting ? RowMapOf<Nb>.inverse : RowMapOf<Nb>.forward;
        alignas(8) std::uint8_t state[MaxBlockBytes];
        std::memcpy(state, in, bytes);
        AddKey(state, keys[0], bytes);
        for (int round = 1; round <= s.rounds; ++round) {
            SubState<Decrypting ? InvSubBytes : SubBytes>(state, bytes);
            Permute(state, shift, bytes);
            if (round != s.rounds)
                MixState<Decrypting ? InvMixColumn : MixColumn>(state, bytes);
            AddKey(state, keys[round], bytes);
        }
        std::memcpy(out, state, bytes);
    }

    template <int Nb, int N>
    static void Encrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
        static_assert(N == 1, "one block at a time");
        Block<false, Nb>(s, in, out);
    }
    template <int Nb, int N>
    static void Decrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
        static_assert(N == 1, "one block at a time");
        Block<true, Nb>(s, in, out);
    }

    // The serial encipherings: CBC enciphers chain XOR data, CFB XORs the enciphered chain onto
    // the data; either way the result is the next chain.
    template <int Nb, bool Cfb>
    static void Serial(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                       std::uint8_t* out, std::size_t blocks) {
        constexpr int bytes = 4 * Nb;
        for (std::size_t i = 0; i < blocks; ++i) {
            if (!Cfb)
                XorBlocks(chain, chain, in + i * bytes, bytes);
            Encrypt<Nb, 1>(s, chain, chain);
            if (Cfb)
                XorBlocks(chain, chain, in + i * bytes, bytes);
            std::memcpy(out + i * bytes, chain, bytes);
        }
    }
};

// The modes over a cipher that may take several blocks at once (Lanes).
template <class Cipher, int Nb> struct Modes {
    static constexpr std::size_t B = 4 * Nb;
    static constexpr int L = Cipher::template Lanes<Nb>;

    // Calls step(lanes, offset) over the blocks, L at a time, then one at a time; `lanes` is
    // an std::integral_constant, so the step can pass it on as a template argument.
    template <class Step> static void InLanes(std::size_t blocks, Step step) {
        std::size_t i = 0;
        for (; i + L <= blocks; i += L)
            step(std::integral_constant<int, L>(), i * B);
        for (; i < blocks; ++i)
            step(std::integral_constant<int, 1>(), i * B);
    }

    static void EcbEncrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out,
                           std::size_t blocks) {
        InLanes(blocks, [&](auto lanes, std::size_t at) {
            Cipher::template Encrypt<Nb, lanes>(s, in + at, out + at);
        });
    }

    static void EcbDecrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out,
                           std::size_t blocks) {
        InLanes(blocks, [&](auto lanes, std::size_t at) {
            Cipher::template Decrypt<Nb, lanes>(s, in + at, out + at);
        });
    }

    static void CbcEncrypt(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                           std::uint8_t* out, std::size_t blocks) {
        Cipher::template Serial<Nb, false>(s, chain, in, out, blocks);
    }

    // N blocks: each plain block is its deciphered block XOR the cipher block before it,
    // written from the last back so that an in-place call still reads its predecessors.
    template <int N>
    static void CbcDecryptRun(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                              std::uint8_t* out) {
        std::uint8_t plain[N * B], next[B];
        Cipher::template Decrypt<Nb, N>(s, in, plain);
        std::memcpy(next, in + (N - 1) * B, B);
        for (int b = N - 1; b >= 1; --b)
            XorBlocks(out + b * B, plain + b * B, in + (b - 1) * B, B);
        XorBlocks(out, plain, chain, B);
        std::memcpy(chain, next, B);
    }

    static void CbcDecrypt(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                           std::uint8_t* out, std::size_t blocks) {
        InLanes(blocks, [&](auto lanes, std::size_t at) {
            CbcDecryptRun<lanes>(s, chain, in + at, out + at);
        });
    }

    static void CfbEncrypt(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                           std::uint8_t* out, std::size_t blocks) {
        Cipher::template Serial<Nb, true>(s, chain, in, out, blocks);
    }

    // N blocks: the key stream is the vector and the first N - 1 cipher blocks enciphered.
    template <int N>
    static void CfbDecryptRun(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                              std::uint8_t* out) {
        std::uint8_t feed[N * B], stream[N * B];
        std::memcpy(feed, chain, B);
        std::memcpy(feed + B, in, (N - 1) * B);
        Cipher::template Encrypt<Nb, N>(s, feed, stream);
        std::memcpy(chain, in + (N - 1) * B, B);
        XorBlocks(out, in, stream, N * B);
    }

    static void CfbDecrypt(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                           std::uint8_t* out, std::size_t blocks) {
        InLanes(blocks, [&](auto lanes, std::size_t at) {
            CfbDecryptRun<lanes>(s, chain, in + at, out + at);
        });
    }
};

template <class Cipher, int Nb> constexpr Kernel KernelOf(const char* name) {
    using M = Modes<Cipher, Nb>;
    return {name,          M::EcbEncrypt, M::EcbDecrypt, M::CbcEncrypt,
            M::CbcDecrypt, M::CfbEncrypt, M::CfbDecrypt};
}

// The kernels of one cipher for blocks of 16, 24 and 32 bytes.
template <class Cipher> struct Kernels {
    Kernel width[3];
    explicit constexpr Kernels(const char* name)
        : width{KernelOf<Cipher, 4>(name), KernelOf<Cipher, 6>(name), KernelOf<Cipher, 8>(name)} {}
    const Kernel& For(int blockBytes) const { return width[blockBytes / 8 - 2]; }
};

} // namespace

void Expand(const std::uint8_t* key, int keyBytes, int blockBytes, Schedule& s) {
    const int nk = keyBytes / 4;
    const int nb = blockBytes / 4;
    s.rounds = std::max(nk, nb) + 6;
    s.blockBytes = blockBytes;
    std::memset(s.enc, 0, sizeof s.enc);
    std::memset(s.dec, 0, sizeof s.dec);

    const int total = nb * (s.rounds + 1);
    std::uint32_t words[MaxBlockBytes / 4 * (MaxRounds + 1)];
    std::memcpy(words, key, keyBytes);
    std::uint32_t rcon = 1;
    for (int i = nk; i < total; ++i) {
        std::uint32_t temp = words[i - 1];
        if (i % nk == 0) {
            temp = static_cast<std::uint32_t>(SubBytes(Rotate8(temp))) ^ rcon;
            rcon = static_cast<std::uint32_t>(XTime(rcon));
        } else if (nk > 6 && i % nk == 4)
            temp = static_cast<std::uint32_t>(SubBytes(temp));
        words[i] = words[i - nk] ^ temp;
    }
    for (int round = 0; round <= s.rounds; ++round)
        std::memcpy(s.enc[round], words + round * nb, blockBytes);
    std::memset(words, 0, sizeof words);
    // A store the compiler may not drop because the array dies here: the schedule is key
    // material.
    __asm__ __volatile__("" : : "r"(words) : "memory");

    std::memcpy(s.dec[0], s.enc[s.rounds], blockBytes);
    std::memcpy(s.dec[s.rounds], s.enc[0], blockBytes);
    for (int round = 1; round < s.rounds; ++round) {
        std::memcpy(s.dec[round], s.enc[s.rounds - round], blockBytes);
        MixState<InvMixColumn>(s.dec[round], blockBytes);
    }
}

const Kernel& Portable(int blockBytes) {
    static constexpr Kernels<PortableCipher> kernels("portable");
    return kernels.For(blockBytes);
}

#ifdef __x86_64__
namespace {

#define KEL_AESNI __attribute__((target("aes,sse4.1")))
#define KEL_AESNI_INLINE __attribute__((target("aes,sse4.1"), always_inline)) inline

// The AES instructions shift rows within four columns. A wider block is held in two
// registers (columns 0-3 and 4-7; a 24-byte block leaves the last two columns unused), and
// before each round a shuffle moves every byte to where the four-column shift takes it to
// its place in the wide shift. Mask [to][from] picks the bytes register `from` gives to
// register `to`; 0x80 gives nothing.
struct WideMasks {
    alignas(16) std::uint8_t enc[2][2][16];
    alignas(16) std::uint8_t dec[2][2][16];
};

template <int Nb> constexpr WideMasks MakeWideMasks() {
    WideMasks m{};
    for (auto* table : {&m.enc, &m.dec})
        for (auto& to : *table)
            for (auto& from : to)
                for (std::uint8_t& byte : from)
                    byte = 0x80;
    for (int c = 0; c < Nb; ++c)
        for (int r = 0; r < 4; ++r) {
            const int to = c / 4, j = c % 4;
            const int encFrom = (c + Shift(Nb, r)) % Nb;
            m.enc[to][encFrom / 4][4 * ((j + r) % 4) + r] =
                static_cast<std::uint8_t>(4 * (encFrom % 4) + r);
            const int decFrom = (c + Nb - Shift(Nb, r)) % Nb;
            m.dec[to][decFrom / 4][4 * ((j + 4 - r) % 4) + r] =
                static_cast<std::uint8_t>(4 * (decFrom % 4) + r);
        }
    return m;
}
template <int Nb> constexpr WideMasks WideMasksOf = MakeWideMasks<Nb>();

template <int Nb> constexpr int Registers = Nb == 4 ? 1 : 2;

template <int Nb>
KEL_AESNI_INLINE void Spread(__m128i (&x)[2], const std::uint8_t (&mask)[2][2][16]) {
    if constexpr (Registers<Nb> == 2) {
        const __m128i* m = reinterpret_cast<const __m128i*>(mask);
        const __m128i x0 = x[0], x1 = x[1];
        x[0] = _mm_or_si128(_mm_shuffle_epi8(x0, m[0]), _mm_shuffle_epi8(x1, m[1]));
        x[1] = _mm_or_si128(_mm_shuffle_epi8(x0, m[2]), _mm_shuffle_epi8(x1, m[3]));
    }
}

template <int Nb> KEL_AESNI_INLINE void Load(__m128i (&x)[2], const std::uint8_t* p) {
    x[0] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    if constexpr (Nb == 6)
        x[1] = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + 16));
    else if constexpr (Nb == 8)
        x[1] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16));
}

template <int Nb> KEL_AESNI_INLINE void Store(std::uint8_t* p, const __m128i (&x)[2]) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), x[0]);
    if constexpr (Nb == 6)
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), x[1]);
    else if constexpr (Nb == 8)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16), x[1]);
}

// N blocks side by side, so that the rounds of different blocks overlap in the pipeline.
template <bool Decrypting, int Nb, int N>
KEL_AESNI_INLINE void Rounds(const Schedule& s, __m128i (&x)[N][2]) {
    constexpr int R = Registers<Nb>;
    const auto& keys = Decrypting ? s.dec : s.enc;
    const auto& masks = Decrypting ? WideMasksOf<Nb>.dec : WideMasksOf<Nb>.enc;
    const auto key = [&keys](int round, int q) {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(keys[round]) + q);
    };
#pragma GCC unroll 8
    for (int b = 0; b < N; ++b)
#pragma GCC unroll 2
        for (int q = 0; q < R; ++q)
            x[b][q] = _mm_xor_si128(x[b][q], key(0, q));
    for (int round = 1; round < s.rounds; ++round)
#pragma GCC unroll 8
        for (int b = 0; b < N; ++b) {
            Spread<Nb>(x[b], masks);
#pragma GCC unroll 2
            for (int q = 0; q < R; ++q)
                x[b][q] = Decrypting ? _mm_aesdec_si128(x[b][q], key(round, q))
                                     : _mm_aesenc_si128(x[b][q], key(round, q));
        }
#pragma GCC unroll 8
    for (int b = 0; b < N; ++b) {
        Spread<Nb>(x[b], masks);
#pragma GCC unroll 2
        for (int q = 0; q < R; ++q)
            x[b][q] = Decrypting ? _mm_aesdeclast_si128(x[b][q], key(s.rounds, q))
                                 : _mm_aesenclast_si128(x[b][q], key(s.rounds, q));
    }
}

template <bool Decrypting, int Nb, int N>
KEL_AESNI_INLINE void Blocks(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
    __m128i x[N][2];
#pragma GCC unroll 8
    for (int b = 0; b < N; ++b)
        Load<Nb>(x[b], in + b * 4 * Nb);
    Rounds<Decrypting, Nb, N>(s, x);
#pragma GCC unroll 8
    for (int b = 0; b < N; ++b)
        Store<Nb>(out + b * 4 * Nb, x[b]);
}

struct AesNiCipher {
    // Eight 16-byte blocks (four wide ones) keep the AES unit busy without spilling registers.
    template <int Nb> static constexpr int Lanes = Nb == 4 ? 8 : 4;

    template <int Nb, int N>
    KEL_AESNI static void Encrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
        Blocks<false, Nb, N>(s, in, out);
    }
    template <int Nb, int N>
    KEL_AESNI static void Decrypt(const Schedule& s, const std::uint8_t* in, std::uint8_t* out) {
        Blocks<true, Nb, N>(s, in, out);
    }

    // As PortableCipher::Serial, with the chain kept in registers.
    template <int Nb, bool Cfb>
    KEL_AESNI static void Serial(const Schedule& s, std::uint8_t* chain, const std::uint8_t* in,
                                 std::uint8_t* out, std::size_t blocks) {
        __m128i x[1][2], data[2];
        Load<Nb>(x[0], chain);
        for (std::size_t i = 0; i < blocks; ++i) {
            Load<Nb>(data, in + i * 4 * Nb);
            for (int q = 0; q < Registers<Nb>; ++q)
                if (!Cfb)
                    x[0][q] = _mm_xor_si128(x[0][q], data[q]);
            Rounds<false, Nb, 1>(s, x);
            for (int q = 0; q < Registers<Nb>; ++q)
                if (Cfb)
                    x[0][q] = _mm_xor_si128(x[0][q], data[q]);
            Store<Nb>(out + i * 4 * Nb, x[0]);
        }
        Store<Nb>(chain, x[0]);
    }
};

bool HasAesNi() {
    unsigned eax, ebx, ecx, edx;
    return __get_cpuid(1, &eax, &ebx, &ecx, &edx) && (ecx & bit_AES) && (ecx & bit_SSSE3) &&
           (ecx & bit_SSE4_1);
}

} // namespace

const Kernel* AesNi(int blockBytes) {
    static constexpr Kernels<AesNiCipher> kernels("AES-NI");
    static const bool present = HasAesNi();
    return present ? &kernels.For(blockBytes) : nullptr;
}
#else
const Kernel* AesNi(int) {
    return nullptr;
}
#endif

const Kernel& Best(int blockBytes) {
    const Kernel* fast = AesNi(blockBytes);
    return fast ? *fast : Portable(blockBytes);
}

} // namespace Rijndael
} // namespace KelBase
