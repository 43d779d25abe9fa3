#pragma once
// What the processor offers the CRC loops, probed once per process.

namespace KelBase {

struct CpuFeatures {
    // PCLMULQDQ with SSSE3 and SSE4.1: 128-bit carry-less folding.
    bool clmul = false;
    // VPCLMULQDQ with AVX-512 F and BW, and a system that saves the AVX-512 registers.
    bool wide = false;
};

const CpuFeatures& ProcessorFeatures();

} // namespace KelBase
