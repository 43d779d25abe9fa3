#pragma once
// Paths made of every combination of a root, up to three elements and an ending, with the
// separators between the elements varied.
#include <iterator>
#include <string>
#include <vector>

inline std::vector<std::wstring> GeneratedPaths() {
    const wchar_t* const roots[] = {L"",        L"C:",     L"z:",         L"C:\\",      L"C:/",
                                    L"c:\\\\",  L"\\",     L"/",          L"\\\\",      L"//",
                                    L"\\\\\\",  L"\\/",    L"\\\\srv\\",  L"//srv/sh/", L"\\\\?\\",
                                    L"\\\\.\\", L"\\??\\", L"\\\\?\\C:\\"};
    const wchar_t* const elements[] = {L"a",     L"Dir",   L".",  L"..",  L".x",
                                       L"f.txt", L"a.b.c", L"x.", L"..x", L"n m"};
    const wchar_t* const separators[] = {L"\\", L"/", L"\\\\"};
    const wchar_t* const endings[] = {L"", L"\\", L"/"};
    const std::size_t elementCount = std::size(elements);

    std::vector<std::wstring> paths;
    for (const wchar_t* root : roots) {
        std::size_t combinations = 1;
        for (int depth = 0; depth <= 3; ++depth, combinations *= elementCount) {
            for (std::size_t combination = 0; combination < combinations; ++combination) {
                std::wstring body;
                std::size_t rest = combination;
                for (int i = 0; i < depth; ++i, rest /= elementCount) {
                    if (i > 0)
                        body += separators[(combination + i) % std::size(separators)];
                    body += elements[rest % elementCount];
                }
                for (const wchar_t* ending : endings) {
                    if (depth > 0 || *ending == 0)
                        paths.push_back(root + body + ending);
                }
            }
        }
    }
    return paths;
}
