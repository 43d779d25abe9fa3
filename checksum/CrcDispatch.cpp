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

// The loops are read at each call rather than kept in a table built at start-up, so that no
// static object's construction depends on another's.
template <class Loop> Loop Pick(LoopKind kind, Loop portable, Loop clmul, Loop wide) {
    const Loop loops[] = {portable, clmul, wide};
    return Runs(kind) ? loops[static_cast<int>(kind)] : nullptr;
}

} // namespace

const char* LoopName(LoopKind kind) {
    static const char* const names[] = {"portable", "clmul", "wide"};
    return names[static_cast<int>(kind)];
}

Crc32Loop Crc32LoopOf(LoopKind kind) {
    return Pick(kind, Crc32Slice8, Crc32Clmul, Crc32Wide);
}

Crc16Loop Crc16LoopOf(LoopKind kind) {
    return Pick(kind, Crc16Slice8, Crc16Clmul, Crc16Wide);
}

LoopKind SelectedLoop() {
    static const LoopKind selected = Choose();
    return selected;
}

namespace {

template <class Reg, class Loop, std::atomic<Loop>* Dispatch, Loop (*LoopOf)(LoopKind)>
Reg Resolve(Reg crc, const unsigned char* data, std::size_t length, const Reg (*tables)[256],
            const std::uint64_t* constants) {
    const Loop loop = LoopOf(SelectedLoop());
    Dispatch->store(loop, std::memory_order_relaxed);
    return loop(crc, data, length, tables, constants);
}

} // namespace

std::atomic<Crc32Loop> Crc32Dispatch{
    Resolve<std::uint32_t, Crc32Loop, &Crc32Dispatch, Crc32LoopOf>};
std::atomic<Crc16Loop> Crc16Dispatch{
    Resolve<std::uint16_t, Crc16Loop, &Crc16Dispatch, Crc16LoopOf>};

} // namespace Crc
} // namespace KelBase
