#include <windows.h>

#include <cwchar>

#include "MSysError.h"

namespace {

// The one form that fits any buffer of more than 40 characters.
const std::size_t UnknownTextMinimum = 41;

} // namespace

bool MSysError::Fill(wchar_t* buffer, std::size_t size, DWORD code) {
    if (!buffer || size == 0)
        return false;
    buffer[0] = L'\0';
    if (code == LastError)
        code = ::GetLastError();
    if (code == 0)
        return false;
    wchar_t* message = nullptr;
    DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, LANG_USER_DEFAULT, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
    if (length == 0) {
        if (size < UnknownTextMinimum)
            return false;
        swprintf(buffer, size, L"<error code=%lu (0x%08lX)>", static_cast<unsigned long>(code),
                 static_cast<unsigned long>(code));
        return true;
    }
    while (length > 0 && std::wcschr(L"\r\n ", message[length - 1]))
        --length;
    const std::size_t kept = length < size - 1 ? length : size - 1;
    std::wmemcpy(buffer, message, kept);
    buffer[kept] = L'\0';
    LocalFree(message);
    return kept > 0;
}

bool MSysError::Fill(DWORD code) {
    m_code = code == LastError ? ::GetLastError() : code;
    return Fill(m_text, TextCapacity, m_code);
}

CString& MSysErrorCode::LoadError(CString& text, DWORD code) {
    wchar_t buffer[MSysError::TextCapacity];
    MSysError::Fill(buffer, MSysError::TextCapacity, code);
    text = buffer;
    return text;
}
