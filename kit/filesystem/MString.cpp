#include "MString.h"

#include <utility>
#include <vector>

#include "MFile.h"
#include "SettingsText.h"
#include "StdBase.h"

MString::MString(const wchar_t* text) : m_text(text ? text : L"") {}

MString::MString(std::wstring text) : m_text(std::move(text)) {}

void MString::FORMAT(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    VFORMAT(format, args);
    va_end(args);
}

void MString::VFORMAT(const wchar_t* format, va_list args) {
    m_text = format ? StdBase::VFormatString(format, args) : std::wstring();
}

MString& MString::operator+=(const MString& other) {
    m_text += other.m_text;
    return *this;
}

MString& MString::operator+=(const wchar_t* text) {
    if (text)
        m_text += text;
    return *this;
}

MString& MString::operator+=(wchar_t c) {
    m_text += c;
    return *this;
}

bool MString::LOAD_INI_STRING(const wchar_t* file, const wchar_t* section, const wchar_t* key) {
    m_text.clear();
    if (!file || !section || !key)
        return false;
    std::vector<unsigned char> bytes;
    if (!MFile::READ_ALL(file, bytes))
        return false;
    return KelSDK::FileIO::FindSettingsValue(
        KelSDK::FileIO::DecodeSettingsText(bytes.data(), bytes.size()), section, key, m_text);
}
