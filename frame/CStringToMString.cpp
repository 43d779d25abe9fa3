#include "CStringToMString.h"

#include "StdBase.h"

MString CStringToMString(const CString& text) {
    return MString(CStringToStdString(text));
}

CString MStringToCString(const MString& text) {
    return StdStringToCString(text.str());
}

std::wstring CStringToStdString(const CString& text) {
    return std::wstring(text.GetString(), static_cast<size_t>(text.GetLength()));
}

CString StdStringToCString(const std::wstring& text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

std::string CStringToAnsi(const CString& text) {
    return StdBase::ConvertUnicodeToAnsi(CStringToStdString(text));
}

CString AnsiToCString(const std::string& text) {
    return StdStringToCString(StdBase::ConvertAnsiToUnicode(text));
}
