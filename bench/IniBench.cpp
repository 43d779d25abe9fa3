// 1,000 lookups in a settings file of 1,000 keys (20 sections of 50): MIniFile, loading the
// file once and then looking up in memory, against a lookup that reads the file each time (the
// system's profile function on Windows), in the same run. Every value is checked first.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "BenchTiming.h"
#include "IniBenchReference.h"
#include "MIniFile.h"

namespace {

// The reference reads the file for each lookup, so the ratio is given the other way round.
void ReportSpeedup(const char* name, double ns, double referenceNs) {
    std::printf("%-42s %12.0f ns %9.1f x faster than the reference\n", name, ns,
                KelBench::Ratio(referenceNs, ns));
}

const int Sections = 20, KeysPerSection = 50, Lookups = 1000;

struct Probe {
    std::wstring section, key, value;
};

} // namespace

int main() {
    KelBench::PrintBuildNote();
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "kel_ini_bench.ini";
    std::vector<Probe> probes;
    {
        std::ofstream out(file, std::ios::binary);
        for (int s = 0; s < Sections; ++s) {
            out << "[Section" << s << "]\r\n";
            for (int k = 0; k < KeysPerSection; ++k) {
                out << "Key" << k << " = value " << s << "." << k << "\r\n";
                probes.push_back({L"section" + std::to_wstring(s), L"KEY" + std::to_wstring(k),
                                  L"value " + std::to_wstring(s) + L"." + std::to_wstring(k)});
            }
        }
    }
    const std::wstring path = file.wstring();
    // Lookups spread over the file, in an order that is not the file's.
    std::vector<const Probe*> order;
    for (int i = 0; i < Lookups; ++i)
        order.push_back(&probes[(static_cast<size_t>(i) * 617) % probes.size()]);

    const MIniFile check(path);
    for (const Probe* probe : order) {
        if (check.GetString(probe->section, probe->key) != probe->value ||
            ReferenceLookup(path, probe->section, probe->key) != probe->value) {
            std::printf("wrong value for [%ls] %ls\n", probe->section.c_str(), probe->key.c_str());
            return 1;
        }
    }

    size_t sink = 0;
    const double referenceNs = KelBench::NsPerCall(
        [&](size_t) {
            for (const Probe* probe : order)
                sink += ReferenceLookup(path, probe->section, probe->key).size();
        },
        1, 3);
    std::printf("%d lookups in %d keys\n%-42s %12.0f ns (reference)\n", Lookups,
                Sections * KeysPerSection, ReferenceName(), referenceNs);
    ReportSpeedup("MIniFile: Load, then the lookups",
                  KelBench::NsPerCall(
                      [&](size_t) {
                          MIniFile ini(path);
                          for (const Probe* probe : order)
                              sink += ini.GetString(probe->section, probe->key).size();
                      },
                      1, 3),
                  referenceNs);
    MIniFile loaded(path);
    ReportSpeedup("MIniFile: the lookups of a loaded file",
                  KelBench::NsPerCall(
                      [&](size_t) {
                          for (const Probe* probe : order)
                              sink += loaded.GetString(probe->section, probe->key).size();
                      },
                      1, 5),
                  referenceNs);
    std::printf("(%zu characters read)\n", sink);
    std::filesystem::remove(file);
    return 0;
}
