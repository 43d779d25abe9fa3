#include <cstdlib>
#include <cstring>

#include "CpuFeatures.h"
#include "CrcKernels.h"

namespace KelBase {
namespace Crc {
namespace {

const LoopKind Kinds[] = {LoopKind::Portable, LoopKind::Clmul, LoopKind::Wide};

bool Runs(LoopKind kind) {
    switch (kind) {
    case LoopKind::Wide:
        return ProcessorFeatures().wide;
    case LoopKind::Clmul:
        return ProcessorFeatures().clmul;
    default:
        return true;
    }
}

// Each kind needs what the one below it needs, so the fastest that runs is the last that does.
LoopKind Choose() {
    LoopKind fastest = LoopKind::Portable;
    for (LoopKind kind : Kinds)
        if (Runs(kind))
            fastest = kind;
    const char* forced = std::getenv("KEL_CRC_LOOP");
    for (LoopKind kind : Kinds)
        if (forced && std::strcmp(forced, LoopName(kind)) == 0 && kind < fastest)
            return kind;
    return fastest;
}

// Indexed by LoopKind.
#ifdef __x86_64__
const Crc32Loop Crc32Loops[] = {Crc32Slice8, Crc32Clmul, Crc32Wide};
const Crc16Loop Crc16Loops[] = {Crc16Slice8, Crc16Clmul, Crc16Wide};
#else
const Crc32Loop Crc32Loops[] = {Crc32Slice8, nullptr, nullptr};
const Crc16Loop Crc16Loops[] = {Crc16Slice8, nullptr, nullptr};
#endif

} // namespace

const char* LoopName(LoopKind kind) {
    static const char* const names[] = {"portable", "clmul", "wide"};
    return names[static_cast<int>(kind)];
}

Crc32Loop Crc32LoopOf(LoopKind kind) {
    return Runs(kind) ? Crc32Loops[static_cast<int>(kind)] : nullptr;
}

Crc16Loop Crc16LoopOf(LoopKind kind) {
    return Runs(kind) ? Crc16Loops[static_cast<int>(kind)] : nullptr;
}

LoopKind SelectedLoop() {
    static const LoopKind selected = Choose();
    return selected;
}

Crc32Loop Crc32Selected() {
    static const Crc32Loop loop = Crc32LoopOf(SelectedLoop());
    return loop;
}

Crc16Loop Crc16Selected() {
    static const Crc16Loop loop = Crc16LoopOf(SelectedLoop());
    return loop;
}

} // namespace Crc
} // namespace KelBase
