// CRC block loops on one 64 MiB buffer: COXCRC32 and the portable loop against zlib's crc32,
// COXCRC16 (two polynomials) against a one-lookup-per-byte table loop. The candidates run in
// turns and each keeps its best time, so that a busy machine slows all of them alike.
#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "BenchTiming.h"
#include "COXCheckBase.h"
#include "CrcKernels.h"

using KelBench::Candidate;

namespace {

const std::size_t BufferBytes = 64u << 20;
const int Rounds = 15;

std::uint16_t ByteWiseCrc16(const std::uint16_t* table, std::uint16_t crc,
                            const std::vector<unsigned char>& data) {
    for (unsigned char byte : data)
        crc = static_cast<std::uint16_t>(table[(crc >> 8) ^ byte] ^ (crc << 8));
    return crc;
}

} // namespace

int main() {
    KelBench::PrintBuildNote();
    std::vector<unsigned char> data(BufferBytes);
    std::mt19937_64 random(64);
    for (std::size_t i = 0; i < data.size(); i += 8) {
        const std::uint64_t word = random();
        for (int k = 0; k < 8; ++k)
            data[i + k] = static_cast<unsigned char>(word >> (8 * k));
    }
    const DWORD length = static_cast<DWORD>(data.size());

    COXCRC32 check32(0xEDB88320);
    COXCRC16 check16(0x1021), check16Other(0x8005);
    static std::uint32_t tables32[8][256];
    std::uint64_t constants32[KelBase::Crc::ConstantCount];
    KelBase::Crc::BuildTables(0xEDB88320u, tables32, constants32);
    const KelBase::Crc::Crc32Loop clmul = KelBase::Crc::Crc32LoopOf(KelBase::Crc::LoopKind::Clmul);

    enum { Zlib, Crc32, Portable, Bytes16, Crc16, BytesOther16, CrcOther16, Clmul };
    std::vector<Candidate> candidates = {
        {"zlib crc32", [&] { return static_cast<std::uint32_t>(crc32(0, data.data(), length)); }},
        {"COXCRC32(0xEDB88320)", [&] { return check32.CalculateBlock(data.data(), length, ~0u); }},
        {"portable loop, CRC-32",
         [&] {
             return KelBase::Crc::Crc32Slice8(~0u, data.data(), data.size(), tables32, constants32);
         }},
        {"byte-wise table loop, CRC-16 0x1021",
         [&] { return std::uint32_t{ByteWiseCrc16(check16.GetTable(), 0xFFFF, data)}; }},
        {"COXCRC16(0x1021)", [&] { return check16.CalculateBlock(data.data(), length, 0xFFFF); }},
        {"byte-wise table loop, CRC-16 0x8005",
         [&] { return std::uint32_t{ByteWiseCrc16(check16Other.GetTable(), 0xFFFF, data)}; }},
        {"COXCRC16(0x8005)",
         [&] { return check16Other.CalculateBlock(data.data(), length, 0xFFFF); }},
    };
    if (clmul)
        candidates.push_back(
            {"128-bit carry-less loop, CRC-32",
             [&] { return clmul(~0u, data.data(), data.size(), tables32, constants32); }});
    std::printf("CRC loops over %zu MiB, best of %d rounds; loop of the classes: %s\n",
                BufferBytes >> 20, Rounds, KelBase::Crc::LoopName(KelBase::Crc::SelectedLoop()));
    if ((~crc32(0, data.data(), length) & 0xFFFFFFFFu) !=
        check32.CalculateBlock(data.data(), length, ~0u)) {
        std::printf("COXCRC32 disagrees with zlib\n");
        return 1;
    }
    KelBench::MeasureInTurns(candidates, Rounds);
    KelBench::Speedup(candidates[Crc32], candidates[Zlib], 5.0, BufferBytes);
    KelBench::Speedup(candidates[Portable], candidates[Zlib], 1.0, BufferBytes);
    KelBench::Speedup(candidates[Crc16], candidates[Bytes16], 10.0, BufferBytes);
    KelBench::Speedup(candidates[CrcOther16], candidates[BytesOther16], 10.0, BufferBytes);
    if (clmul)
        KelBench::Speedup(candidates[Clmul], candidates[Zlib], 0.0, BufferBytes);
    return 0;
}
