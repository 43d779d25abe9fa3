#pragma once
// The Windows path grammar, written out so that paths decompose the same way on every host
// (the native build's std::filesystem follows POSIX rules). The results are those of
// std::filesystem::path on Windows: both slash and backslash separate, "X:" is a root name,
// and so are the network root "\\server" and the device prefixes "\\?", "\\." and "\??".
// (The mingw runtime agrees except there: it takes a leading pair of separators for a root
// directory.)
#include <cstddef>
#include <string_view>

namespace KelBase {
namespace PathGrammar {

inline bool IsSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

struct Parts {
    std::wstring_view rootName;      // "C:", "\\server", "\\?" or empty
    std::wstring_view rootDirectory; // the one separator after the root name, as written
    std::wstring_view relativePath;  // what follows the root and its redundant separators
    std::wstring_view fileName;      // the last element; empty when the path ends in a separator
};

inline std::size_t RootNameLength(std::wstring_view path) {
    // Any character before the colon makes a drive, as for the system's own path parser.
    if (path.size() >= 2 && path[1] == L':')
        return 2;
    if (path.size() < 3 || !IsSeparator(path[0]))
        return 0;
    if (path.size() >= 4 && path[1] == L'?' && path[2] == L'?' && IsSeparator(path[3]) &&
        (path.size() == 4 || !IsSeparator(path[4])))
        return 3;
    if (!IsSeparator(path[1]) || IsSeparator(path[2]))
        return 0;
    std::size_t end = 3;
    while (end < path.size() && !IsSeparator(path[end]))
        ++end;
    return end;
}

inline Parts Decompose(std::wstring_view path) {
    Parts parts;
    std::size_t pos = RootNameLength(path);
    parts.rootName = path.substr(0, pos);
    if (pos < path.size() && IsSeparator(path[pos])) {
        parts.rootDirectory = path.substr(pos, 1);
        while (pos < path.size() && IsSeparator(path[pos]))
            ++pos;
    }
    parts.relativePath = path.substr(pos);
    const std::size_t last = parts.relativePath.find_last_of(L"\\/");
    parts.fileName =
        last == std::wstring_view::npos ? parts.relativePath : parts.relativePath.substr(last + 1);
    return parts;
}

// Where the extension of a file name element begins (its size when it has none): at the last
// dot, unless that dot starts the name; "." and ".." have no extension.
inline std::size_t ExtensionStart(std::wstring_view fileName) {
    if (fileName == L"." || fileName == L"..")
        return fileName.size();
    const std::size_t dot = fileName.rfind(L'.');
    return dot == std::wstring_view::npos || dot == 0 ? fileName.size() : dot;
}

inline std::wstring_view Stem(std::wstring_view fileName) {
    return fileName.substr(0, ExtensionStart(fileName));
}

inline std::wstring_view Extension(std::wstring_view fileName) {
    return fileName.substr(ExtensionStart(fileName));
}

} // namespace PathGrammar
} // namespace KelBase
