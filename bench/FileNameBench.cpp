// Splitting and composing paths with MFileName against the standard path type's decomposition
// (root name, parent path, stem, extension) of the same paths in the same run. Natively the
// standard type follows POSIX rules, so only the Windows figures compare like with like.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchTiming.h"
#include "MFileName.h"

namespace {

const std::size_t Calls = 200000;

// Drive, network and relative paths of a few depths, with both separators.
std::vector<std::wstring> SamplePaths() {
    const wchar_t* const roots[] = {L"C:\\", L"D:/", L"\\\\server\\share\\", L"", L"..\\"};
    const wchar_t* const dirs[] = {L"", L"Parts\\", L"Projects/2024/", L"a\\b\\c\\d\\e\\"};
    const wchar_t* const names[] = {L"mesh.stl", L"slice.0001.cli", L"README", L""};
    std::vector<std::wstring> paths;
    for (const wchar_t* root : roots) {
        for (const wchar_t* dir : dirs) {
            for (const wchar_t* name : names)
                paths.push_back(std::wstring(root) + dir + name);
        }
    }
    return paths;
}

} // namespace

int main() {
    const std::vector<std::wstring> paths = SamplePaths();
    const std::size_t count = paths.size();
    std::size_t sink = 0;

    const double standardNs = KelBench::NsPerCall(
        [&](std::size_t i) {
            const std::filesystem::path path(paths[i % count]);
            sink += path.root_name().native().size() + path.parent_path().native().size() +
                    path.stem().native().size() + path.extension().native().size();
        },
        Calls);
    std::printf("%zu paths; %-40s %9.2f ns/call (reference)\n", count,
                "std::filesystem::path decomposition", standardNs);

    MFileName name;
    KelBench::Report("MFileName::SET (split and compose)",
                     KelBench::NsPerCall(
                         [&](std::size_t i) {
                             name.SET(paths[i % count].c_str());
                             sink += name.GET()[0];
                         },
                         Calls),
                     standardNs);

    std::wstring drive, dir, file, ext;
    KelBench::Report("POSITION_PATH_PARTS (split only)",
                     KelBench::NsPerCall(
                         [&](std::size_t i) {
                             POSITION_PATH_PARTS(paths[i % count], drive, dir, file, ext, false);
                             sink += drive.size() + dir.size() + file.size() + ext.size();
                         },
                         Calls),
                     standardNs);
    return sink == 0 ? 1 : 0;
}
