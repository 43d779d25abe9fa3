// The trimming and folding rules are the framework CString's; these forward to it.
#include "miscstr.h"

#include "CString.h"
#include "CStringToMString.h"
#include "StdBase.h"

namespace miscstr {

namespace {

CString ToCString(std::wstring_view text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

} // namespace

std::wstring Trim(std::wstring_view text) {
    return CStringToStdString(ToCString(text).Trim());
}

std::wstring TrimLeft(std::wstring_view text) {
    return CStringToStdString(ToCString(text).TrimLeft());
}

std::wstring TrimRight(std::wstring_view text) {
    return CStringToStdString(ToCString(text).TrimRight());
}

std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator, bool trim) {
    std::vector<std::wstring> parts;
    if (text.empty())
        return parts;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        const std::wstring_view part = text.substr(start, end - start);
        parts.push_back(trim ? Trim(part) : std::wstring(part));
        if (end == std::wstring_view::npos)
            return parts;
        start = end + 1;
    }
}

int CompareNoCase(std::wstring_view a, std::wstring_view b) {
    return StdBase::CompareNoCase(a, b);
}

bool EqualNoCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && StdBase::CompareNoCase(a, b) == 0;
}

std::wstring ToLower(std::wstring_view text) {
    return CStringToStdString(ToCString(text).MakeLower());
}

} // namespace miscstr
