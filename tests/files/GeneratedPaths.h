#pragma once
// Paths made of every root, up to three elements and every ending, with the separators between
// the elements varied.
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
    // Breadth first: each body of up to two elements (1 + 10 + 100 of them) is extended by every
    // element.
    std::vector<std::wstring> bodies = {L""};
    for (std::size_t i = 0; i < 111; ++i)
        for (const wchar_t* element : elements)
            bodies.push_back(i == 0 ? element
                                    : bodies[i] + separators[bodies.size() % 3] + element);
    std::vector<std::wstring> paths;
    for (const wchar_t* root : roots)
        for (const std::wstring& body : bodies)
            for (const wchar_t* ending : {L"", L"\\", L"/"})
                if (!body.empty() || *ending == 0)
                    paths.push_back(root + body + ending);
    return paths;
}
