#include "CpuFeatures.h"

#ifdef __x86_64__
#include <cpuid.h>
#endif

namespace KelBase {
namespace {

CpuFeatures Probe() {
    CpuFeatures features;
#ifdef __x86_64__
    unsigned eax, ebx, ecx, edx;
    if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx))
        return features;
    features.clmul = (ecx & bit_PCLMUL) && (ecx & bit_SSSE3) && (ecx & bit_SSE4_1);
    if (!features.clmul || !(ecx & bit_OSXSAVE))
        return features;
    unsigned xcr0, xcr0High;
    __asm__("xgetbv" : "=a"(xcr0), "=d"(xcr0High) : "c"(0));
    const unsigned sseAvxAvx512State = 0xE6;
    features.wide = (xcr0 & sseAvxAvx512State) == sseAvxAvx512State &&
                    __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_AVX512F) &&
                    (ebx & bit_AVX512BW) && (ecx & bit_VPCLMULQDQ);
#endif
    return features;
}

} // namespace

const CpuFeatures& ProcessorFeatures() {
    static const CpuFeatures features = Probe();
    return features;
}

} // namespace KelBase
