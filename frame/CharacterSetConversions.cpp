#include "CharacterSetConversions.h"

#include <algorithm>

#include "ConversionBuffers.h"

namespace CharacterSetConversions {

namespace {

template <class T> bool CopyText(T*& out, size_t& length, const T* source) {
    if (!source)
        return false;
    const size_t count = std::char_traits<T>::length(source) + 1;
    T* text = NewTextArray<T>(count);
    std::copy(source, source + count, text);
    out = text;
    length = count;
    return true;
}

} // namespace

bool CopyToNewMBCS(char*& out, size_t& length, const char* source) {
    return CopyText(out, length, source);
}

bool CopyToNewWCS(wchar_t*& out, size_t& length, const wchar_t* source) {
    return CopyText(out, length, source);
}

bool CopyToNewWCS(wchar_t*& out, size_t& length, const MString& source) {
    return CopyText(out, length, source.C_STR());
}

bool CopyToNewWCS(wchar_t*& out, size_t& length, const CString& source) {
    return CopyText(out, length, source.GetString());
}

bool CopyToNewWCS(wchar_t*& out, size_t& length, const std::wstring& source) {
    return CopyText(out, length, source.c_str());
}

bool CopyToNewTCS(wchar_t*& out, size_t& length, const wchar_t* source) {
    return CopyText(out, length, source);
}

String<char>::String(const char* text) : m_text(NewMBCS(text)) {}

String<char>::~String() {
    ::operator delete(m_text);
}

String<wchar_t>::String(const wchar_t* text, char) : m_text(NewWCS(text)) {}

String<wchar_t>::String(const CString& text) : m_text(NewWCS(text)) {}

String<wchar_t>::String(const MString& text) : m_text(NewWCS(text)) {}

String<wchar_t>::String(const std::wstring& text) : m_text(NewWCS(text)) {}

String<wchar_t>::~String() {
    ::operator delete(m_text);
}

} // namespace CharacterSetConversions
