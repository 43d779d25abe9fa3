#pragma once
// The classic Boost.Filesystem decomposition of Windows paths, written out so that paths split
// the same way on every host (the native build's std::filesystem follows POSIX rules, and the
// runtime's own type on Windows follows the later standard). Both slash and backslash separate.
// Where the classic rules differ from the standard's:
// - a first element that ends with a colon ("C:", also "prn:") is a root name, and so is a
//   network name ("\\server", "\\?", "\\."); "\??" is no root;
// - a lone root name ("C:", "\\server") is its own file name element, a lone root directory
//   ("\", "C:\") too, with the separator as written;
// - a path that ends with a separator (other than the root directory) has the file name ".";
// - a name that starts with a dot and has no other dot is all extension (".profile"); "." and
//   ".." have none.
#include <algorithm>
#include <cstddef>
#include <string_view>

namespace KelBase {
namespace PathGrammar {

inline bool IsSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

struct Parts {
    std::wstring_view rootName;      // "C:", "prn:", "\\server" or empty
    std::wstring_view rootDirectory; // the separator of the root directory, as written, or empty
    std::wstring_view relativePath;  // what follows the root and its redundant separators
    std::wstring_view fileName;      // the last element, "." after a trailing separator
};

namespace Detail {

constexpr std::size_t npos = std::wstring_view::npos;
constexpr std::wstring_view kSeparators = L"\\/";
constexpr std::wstring_view kDot = L".";

inline bool IsLetter(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

// "\\name" with exactly two separators in front.
inline bool IsNetworkName(std::wstring_view element) {
    return element.size() > 2 && IsSeparator(element[0]) && IsSeparator(element[1]) &&
           !IsSeparator(element[2]);
}

// Where the root directory's separator stands; npos when there is none.
inline std::size_t RootDirectoryStart(std::wstring_view path) {
    const std::size_t size = path.size();
    if (size > 2 && path[1] == L':' && IsSeparator(path[2]))
        return 2;
    if (size == 2 && IsSeparator(path[0]) && IsSeparator(path[1]))
        return npos;
    // "\\?\" and "\\name\": the first separator after the name (after "\\?\" for the former).
    // A one-character network name counts as a name too, not as a root directory.
    const bool longPrefix = size > 4 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
                            path[2] == L'?' && IsSeparator(path[3]);
    if (longPrefix || IsNetworkName(path)) {
        const std::size_t pos = path.find_first_of(kSeparators, longPrefix ? 4 : 2);
        return pos < size ? pos : npos;
    }
    return size > 0 && IsSeparator(path[0]) ? 0 : npos;
}

// Whether the separator at pos (or the run of separators it ends) is the root directory.
inline bool IsRootSeparator(std::wstring_view path, std::size_t pos) {
    while (pos > 0 && IsSeparator(path[pos - 1]))
        --pos;
    if (pos == 0)
        return true;
    if (pos == 2 && IsLetter(path[0]) && path[1] == L':')
        return true;
    if (pos < 3 || !IsSeparator(path[0]) || !IsSeparator(path[1]))
        return false;
    return path.find_first_of(kSeparators, 2) == pos;
}

// One element of a walk through the path: where it starts and what it is (a separator stands
// for the root directory, "." for a trailing separator).
struct Element {
    std::size_t pos;
    std::wstring_view text;
};

inline Element FirstElement(std::wstring_view path) {
    if (path.empty())
        return {0, {}};
    std::size_t pos = 0, end = 0;
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
        (path.size() == 2 || !IsSeparator(path[2]))) {
        end = 2; // a network name goes on below
    } else if (IsSeparator(path[0])) {
        // The last of the leading separators is the root directory.
        while (pos + 1 < path.size() && IsSeparator(path[pos + 1]))
            ++pos;
        return {pos, path.substr(pos, 1)};
    }
    while (end < path.size() && path[end] != L':' && !IsSeparator(path[end]))
        ++end;
    if (end < path.size() && path[end] == L':')
        ++end;
    return {pos, path.substr(pos, end - pos)};
}

inline Element NextElement(std::wstring_view path, Element current) {
    std::size_t pos = current.pos + current.text.size();
    if (pos == path.size())
        return {pos, {}};
    if (IsSeparator(path[pos])) {
        if (IsNetworkName(current.text) || current.text.back() == L':')
            return {pos, path.substr(pos, 1)};
        while (pos < path.size() && IsSeparator(path[pos]))
            ++pos;
        if (pos == path.size() && !IsRootSeparator(path, pos - 1))
            return {pos - 1, kDot};
    }
    const std::size_t end = std::min(path.find_first_of(kSeparators, pos), path.size());
    return {pos, path.substr(pos, end - pos)};
}

// Where the file name element starts.
inline std::size_t FileNameStart(std::wstring_view path) {
    const std::size_t end = path.size();
    if (end == 2 && IsSeparator(path[0]) && IsSeparator(path[1]))
        return 0;
    if (end > 0 && IsSeparator(path[end - 1]))
        return end - 1;
    std::size_t pos = end > 0 ? path.find_last_of(kSeparators, end - 1) : npos;
    if (pos == npos && end > 1)
        pos = path.find_last_of(L':', end - 2);
    return pos == npos || (pos == 1 && IsSeparator(path[0])) ? 0 : pos + 1;
}

} // namespace Detail

inline std::wstring_view RootName(std::wstring_view path) {
    const std::wstring_view first = Detail::FirstElement(path).text;
    const bool isRoot = (first.size() > 1 && IsSeparator(first[0]) && IsSeparator(first[1])) ||
                        (!first.empty() && first.back() == L':');
    return isRoot ? first : std::wstring_view();
}

inline std::wstring_view RootDirectory(std::wstring_view path) {
    const std::size_t pos = Detail::RootDirectoryStart(path);
    return pos == Detail::npos ? std::wstring_view() : path.substr(pos, 1);
}

// What follows the root: the walk skips the root name, the root directory and anything else
// that is a separator or ends with a colon.
inline std::wstring_view RelativePath(std::wstring_view path) {
    Detail::Element element = Detail::FirstElement(path);
    while (element.pos != path.size() &&
           (IsSeparator(element.text[0]) || element.text.back() == L':'))
        element = Detail::NextElement(path, element);
    return path.substr(element.pos);
}

inline std::wstring_view FileName(std::wstring_view path) {
    const std::size_t pos = Detail::FileNameStart(path);
    if (pos != 0 && IsSeparator(path[pos]) && !Detail::IsRootSeparator(path, pos))
        return Detail::kDot;
    return path.substr(pos);
}

inline Parts Decompose(std::wstring_view path) {
    return {RootName(path), RootDirectory(path), RelativePath(path), FileName(path)};
}

// Where the extension of a file name element begins (its size when it has none): at the last
// dot, a leading one included; "." and ".." have no extension.
inline std::size_t ExtensionStart(std::wstring_view fileName) {
    if (fileName == L"." || fileName == L"..")
        return fileName.size();
    return std::min(fileName.rfind(L'.'), fileName.size());
}

inline std::wstring_view Stem(std::wstring_view fileName) {
    return fileName.substr(0, ExtensionStart(fileName));
}

inline std::wstring_view Extension(std::wstring_view fileName) {
    return fileName.substr(ExtensionStart(fileName));
}

} // namespace PathGrammar
} // namespace KelBase
