#pragma once
// The Rijndael cipher without object state: the key schedule and the block loops of the three
// modes, for blocks of 16, 24 and 32 bytes. Two kernels compute the same results: a portable
// one that looks nothing up by secret data (its S-box is computed, not read from a table), and
// one built on the AES instructions of x86-64, which runs every block size (the wider blocks
// through a byte shuffle before each round). Neither needs an operating system.
#include <cstddef>
#include <cstdint>

namespace KelBase {
namespace Rijndael {

constexpr int MaxRounds = 14;
constexpr int MaxBlockBytes = 32;

// Round keys, one row of the block's width per round (unused bytes zero). `dec` holds the keys
// of the equivalent inverse cipher: the encryption keys in reverse order, the inner ones
// passed through InvMixColumns.
struct Schedule {
    int rounds;
    int blockBytes;
    alignas(16) std::uint8_t enc[MaxRounds + 1][MaxBlockBytes];
    alignas(16) std::uint8_t dec[MaxRounds + 1][MaxBlockBytes];
};

// `keyBytes` and `blockBytes` are each 16, 24 or 32; the caller checks them.
void Expand(const std::uint8_t* key, int keyBytes, int blockBytes, Schedule& schedule);

// Whole blocks in, whole blocks out; `out` may be `in` but must not overlap it otherwise.
// `chain` is one block: the vector before the call, the vector for the next call after it.
using EcbLoop = void (*)(const Schedule&, const std::uint8_t* in, std::uint8_t* out,
                         std::size_t blocks);
using ChainLoop = void (*)(const Schedule&, std::uint8_t* chain, const std::uint8_t* in,
                           std::uint8_t* out, std::size_t blocks);

// The loops of the three modes for one block width.
struct Kernel {
    const char* name;
    EcbLoop ecbEncrypt;
    EcbLoop ecbDecrypt;
    ChainLoop cbcEncrypt;
    ChainLoop cbcDecrypt;
    // Cipher feedback over whole blocks: the vector is enciphered and XORed onto the data.
    ChainLoop cfbEncrypt;
    ChainLoop cfbDecrypt;
};

// The loops for blocks of `blockBytes` (16, 24 or 32).
const Kernel& Portable(int blockBytes);
// Null when the processor has no AES instructions.
const Kernel* AesNi(int blockBytes);
// The fastest loops this processor runs.
const Kernel& Best(int blockBytes);

} // namespace Rijndael
} // namespace KelBase
