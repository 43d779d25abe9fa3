#pragma once
// What the fuzz targets share: the assertion that makes a broken property a finding, and wide
// text drawn from the input.
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

// A broken property aborts, so libFuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition))                                                                          \
            Fuzz::Fail(__FILE__, __LINE__, #condition);                                            \
    } while (false)

namespace Fuzz {

// What the target works on, shown when a check fails (the input itself is binary).
inline std::wstring& Context() {
    static std::wstring context;
    return context;
}

[[noreturn]] inline void Fail(const char* file, int line, const char* condition) {
    std::fprintf(stderr, "%s:%d: check failed: %s\n", file, line, condition);
    std::fprintf(stderr, "context: ");
    for (const wchar_t c : Context())
        std::fprintf(stderr, c >= 0x20 && c < 0x7F ? "%lc" : "\\x{%X}", c);
    std::fprintf(stderr, "\n");
    std::abort();
}

// Wide text of at most `maxLength` characters, ended early by a zero byte. Most bytes pick a
// character from `alphabet` (those the code under test treats specially, so that mutations
// meet them often); unless `alphabetOnly`, a byte 0xFF takes the next four as any value but
// zero, which ends the text instead.
inline std::wstring ConsumeText(FuzzedDataProvider& input, const std::wstring& alphabet,
                                std::size_t maxLength = 64, bool alphabetOnly = false) {
    std::wstring text;
    while (text.size() < maxLength && input.remaining_bytes() > 0) {
        const unsigned char byte = input.ConsumeIntegral<unsigned char>();
        if (byte == 0)
            break;
        if (byte != 0xFF || alphabetOnly) {
            text += alphabet[byte % alphabet.size()];
            continue;
        }
        const auto value = static_cast<wchar_t>(input.ConsumeIntegral<unsigned int>());
        if (value == 0)
            break;
        text += value;
    }
    return text;
}

} // namespace Fuzz
