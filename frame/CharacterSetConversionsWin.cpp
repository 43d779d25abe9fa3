// Conversions between UTF-16 and the active code page (CP_ACP, flags 0). Each asks the
// platform for the length first, allocates exactly that, and converts a second time. StdBase's
// conversions do not serve here: they take no replacement character and report no failure.
#include "CharacterSetConversions.h"

#include <windows.h>

#include "ConversionBuffers.h"

namespace CharacterSetConversions {

bool CopyToNewMBCS(char*& out, size_t& length, const wchar_t* source, const char* defaultChar) {
    const int count = WideCharToMultiByte(CP_ACP, 0, source, -1, nullptr, 0, defaultChar, nullptr);
    if (count <= 0)
        return false;
    char* text = NewTextArray<char>(count);
    if (WideCharToMultiByte(CP_ACP, 0, source, -1, text, count, defaultChar, nullptr) != count) {
        ::operator delete(text);
        return false;
    }
    out = text;
    length = count;
    return true;
}

bool CopyToNewMBCS(char*& out, size_t& length, const MString& source) {
    return CopyToNewMBCS(out, length, source.C_STR(), nullptr);
}

bool CopyToNewMBCS(char*& out, size_t& length, const CString& source) {
    return CopyToNewMBCS(out, length, source.GetString(), nullptr);
}

bool CopyToNewMBCS(char*& out, size_t& length, const std::wstring& source) {
    return CopyToNewMBCS(out, length, source.c_str(), nullptr);
}

bool CopyToNewWCS(wchar_t*& out, size_t& length, const char* source) {
    const int count = MultiByteToWideChar(CP_ACP, 0, source, -1, nullptr, 0);
    if (count <= 0)
        return false;
    wchar_t* text = NewTextArray<wchar_t>(count);
    if (MultiByteToWideChar(CP_ACP, 0, source, -1, text, count) != count) {
        ::operator delete(text);
        return false;
    }
    out = text;
    length = count;
    return true;
}

bool CopyToNewTCS(wchar_t*& out, size_t& length, const char* source) {
    return CopyToNewWCS(out, length, source);
}

String<char>::String(const wchar_t* text, char defaultChar) : m_text(NewMBCS(text, &defaultChar)) {}

String<char>::String(const CString& text) : m_text(NewMBCS(text)) {}

String<char>::String(const MString& text) : m_text(NewMBCS(text)) {}

String<char>::String(const std::wstring& text) : m_text(NewMBCS(text)) {}

String<wchar_t>::String(const char* text) : m_text(NewWCS(text)) {}

} // namespace CharacterSetConversions
