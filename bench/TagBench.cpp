// Tagged files: listing the tags of a large file against reading only its headers with plain
// unbuffered reads, and CONVERT against a plain copy of the same file. Arguments: the file size
// in MiB (default 256) and the tag count (default 25000), so 10 KiB per tag by default.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "BenchTiming.h"
#include "MFile.h"
#include "MFileName.h"
#include "MTagList.h"

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
int Seek(std::FILE* file, long long position) {
    return _fseeki64(file, position, SEEK_SET);
}
void Sync(std::FILE* file) {
    _commit(_fileno(file));
}
#else
int Seek(std::FILE* file, long long position) {
    return fseeko(file, position, SEEK_SET);
}
void Sync(std::FILE* file) {
    fsync(fileno(file));
}
#endif

void PutHeader(std::FILE* file, const char* name, unsigned char major, unsigned length) {
    unsigned char header[12] = {};
    for (int i = 0; i < 6 && name[i]; ++i)
        header[i] = static_cast<unsigned char>(name[i]);
    header[6] = major;
    for (int i = 0; i < 4; ++i)
        header[8 + i] = static_cast<unsigned char>(length >> (8 * i));
    std::fwrite(header, 1, sizeof header, file);
}

// A version 1.0 file of `tags` tags filling `bytes` bytes.
void MakeFile(const char* name, unsigned long long bytes, unsigned tags) {
    std::FILE* file = std::fopen(name, "wb");
    PutHeader(file, "KELCOM", 1, 0);
    const unsigned long long pitch = (bytes - 12) / tags;
    std::vector<unsigned char> data(static_cast<size_t>(pitch - 12));
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<unsigned char>(i * 131);
    for (unsigned i = 0; i < tags; ++i) {
        PutHeader(file, i % 2 ? "MESH" : "BODY", 1, static_cast<unsigned>(data.size()));
        std::fwrite(data.data(), 1, data.size(), file);
    }
    std::fclose(file);
}

// Marks the file as version 1.0 again, so that the next CONVERT has work to do.
void MakeOld(const char* name) {
    std::FILE* file = std::fopen(name, "r+b");
    std::fseek(file, 6, SEEK_SET);
    std::fputc(1, file);
    std::fclose(file);
}

// The reference walk: a seek and a 12-byte read per header, without a stream buffer.
size_t ReadHeaders(const char* name) {
    std::FILE* file = std::fopen(name, "rb");
    std::setvbuf(file, nullptr, _IONBF, 0);
    size_t count = 0;
    unsigned char header[12];
    for (long long position = 0;
         Seek(file, position) == 0 && std::fread(header, 1, sizeof header, file) == sizeof header;
         ++count)
        position += 12 + (header[8] | header[9] << 8 | header[10] << 16 |
                          static_cast<long long>(header[11]) << 24);
    std::fclose(file);
    return count;
}

// With sync, the copy is put on the disk before it counts as done, as CONVERT does.
void PlainCopy(const char* from, const char* to, bool sync) {
    std::FILE* in = std::fopen(from, "rb");
    std::FILE* out = std::fopen(to, "wb");
    std::vector<char> buffer(1 << 20);
    for (size_t got; (got = std::fread(buffer.data(), 1, buffer.size(), in)) > 0;)
        std::fwrite(buffer.data(), 1, got, out);
    if (sync && std::fflush(out) == 0)
        Sync(out);
    std::fclose(in);
    std::fclose(out);
}

} // namespace

int main(int argc, char** argv) {
    const unsigned long long mib = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 256;
    const unsigned tags =
        argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : 25000;
    const fs::path folder = fs::temp_directory_path() / "kel_tag_bench";
    fs::create_directories(folder);
    const fs::path previous = fs::current_path();
    // Relative names: MFileName takes Windows paths, which a native absolute path is not.
    fs::current_path(folder);
    MakeFile("big.kel", mib << 20, tags);
    std::printf("%llu MiB, %u tags\n", mib, tags);

    size_t listed = 0, walked = 0;
    const double listNs = KelBench::NsPerCall(
        [&](size_t) {
            MFile file;
            MTagList list;
            file.OPEN_READ(L"big.kel");
            list.BUILD_TAG_LIST(file);
            listed = list.SIZE();
        },
        1);
    const double headersNs =
        KelBench::NsPerCall([&](size_t) { walked = ReadHeaders("big.kel"); }, 1);
    std::printf("tags listed %zu, headers read %zu\n", listed, walked);
    KelBench::Report("BUILD_TAG_LIST, whole file", listNs, headersNs);
    KelBench::Report("reference: a seek and a read per header", headersNs, headersNs);

    // Conversion and copies in turns, best of several rounds each, so that a busy machine
    // slows all of them alike.
    bool converted = true;
    std::vector<KelBench::Candidate> candidates = {
        {"CONVERT (put on the disk)",
         [&] {
             MakeOld("big.kel");
             MFileName name(L"big.kel");
             converted = MTagList::CONVERT(name, 0, 0) && converted;
             return 0u;
         }},
        {"plain copy, 1 MiB reads and writes",
         [] {
             PlainCopy("big.kel", "copy.kel", false);
             return 0u;
         }},
        {"plain copy, put on the disk",
         [] {
             PlainCopy("big.kel", "copy.kel", true);
             return 0u;
         }},
    };
    KelBench::MeasureInTurns(candidates, 9);
    const size_t bytes = static_cast<size_t>(mib << 20);
    std::printf("CONVERT %s\n", converted ? "succeeded" : "FAILED");
    // The goal: conversion at 80 % or more of the throughput of a copy doing the same work.
    KelBench::Speedup(candidates[0], candidates[2], 0.8, bytes);
    KelBench::Speedup(candidates[0], candidates[1], 0.0, bytes);
    KelBench::Speedup(candidates[1], candidates[2], 0.0, bytes);

    fs::current_path(previous);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return converted ? 0 : 1;
}
