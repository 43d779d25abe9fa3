#include "Clipboard.h"

#include <cstring>
#include <string>

#include <windows.h>

namespace {

template <class Char> int CopyToClipboard(const Char* text, UINT format) {
    if (!OpenClipboard(nullptr))
        return 0;
    EmptyClipboard();
    const std::size_t bytes = (text ? std::char_traits<Char>::length(text) + 1 : 1) * sizeof(Char);
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_SHARE, bytes);
    bool handed = false;
    if (void* copy = block ? GlobalLock(block) : nullptr) {
        if (text)
            std::memcpy(copy, text, bytes);
        else
            std::memset(copy, 0, bytes);
        GlobalUnlock(block);
        handed = SetClipboardData(format, block) != nullptr;
    }
    CloseClipboard();
    if (!handed) {
        if (block)
            GlobalFree(block);
        return 0;
    }
    return 1;
}

// Assigns the locked text of `format` to `text`; false when its block cannot be had.
template <class Char> bool AssignClipboardText(UINT format, CString& text) {
    HANDLE block = GetClipboardData(format);
    const Char* locked = block ? static_cast<const Char*>(GlobalLock(block)) : nullptr;
    if (!locked)
        return false;
    text = locked;
    GlobalUnlock(block);
    return true;
}

} // namespace

int CopyStringToClipboard(const char* text) {
    return CopyToClipboard(text, CF_TEXT);
}

int CopyStringToClipboard(const wchar_t* text) {
    return CopyToClipboard(text, CF_UNICODETEXT);
}

int GetTextFromClipboard(CString& text) {
    if (!IsClipboardFormatAvailable(CF_UNICODETEXT) && !IsClipboardFormatAvailable(CF_TEXT))
        return 0;
    if (!OpenClipboard(nullptr))
        return 0;
    // Wide text is preferred; when it is announced but cannot be had, narrow text is not tried.
    bool assigned = false;
    if (IsClipboardFormatAvailable(CF_UNICODETEXT))
        assigned = AssignClipboardText<wchar_t>(CF_UNICODETEXT, text);
    else if (IsClipboardFormatAvailable(CF_TEXT))
        assigned = AssignClipboardText<char>(CF_TEXT, text);
    CloseClipboard();
    return assigned ? 1 : 0;
}
