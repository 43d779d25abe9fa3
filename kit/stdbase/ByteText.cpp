// Bytes as hexadecimal text and back, and wiping memory that held secrets.
#include <cstring>

#include "StdBase.h"

namespace StdBase {

std::wstring ConvertBytesToHex(const unsigned char* data, size_t size) {
    static const wchar_t digits[] = L"0123456789abcdef";
    std::wstring text(2 * size, L'0');
    for (size_t i = 0; i < size; ++i) {
        text[2 * i] = digits[data[i] >> 4];
        text[2 * i + 1] = digits[data[i] & 0xF];
    }
    return text;
}

namespace {

int DigitValue(wchar_t c) {
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    return -1;
}

} // namespace

bool ConvertHexToBytes(const std::wstring& text, std::vector<unsigned char>& bytes) {
    bytes.clear();
    if (text.size() % 2)
        return false;
    bytes.reserve(text.size() / 2);
    for (size_t i = 0; i < text.size(); i += 2) {
        const int high = DigitValue(text[i]), low = DigitValue(text[i + 1]);
        if (high < 0 || low < 0) {
            bytes.clear();
            return false;
        }
        bytes.push_back(static_cast<unsigned char>(high << 4 | low));
    }
    return true;
}

void SecureZero(void* data, size_t size) {
    if (!data)
        return;
    std::memset(data, 0, size);
    // The memory counts as read here, so the compiler cannot drop the stores before it.
    __asm__ __volatile__("" : : "r"(data) : "memory");
}

} // namespace StdBase
