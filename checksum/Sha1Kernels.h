#pragma once
// The SHA-1 compression function over whole 64-byte blocks, without object state and without
// an operating system: a portable loop and one built on the SHA extensions of x86-64.
#include <cstddef>
#include <cstdint>

namespace KelBase {
namespace Sha1 {

// Folds `blocks` blocks of 64 bytes into the five state words.
using Compress = void (*)(std::uint32_t* state, const unsigned char* data, std::size_t blocks);

void CompressPortable(std::uint32_t* state, const unsigned char* data, std::size_t blocks);
// Null when the processor has no SHA extensions.
Compress CompressShaNi();
// The fastest loop this processor runs, chosen once.
Compress CompressBest();

} // namespace Sha1
} // namespace KelBase
