// The kit's Unicode codecs against references built from the definitions alone: a well-formed
// UTF-8 sequence is the encoding of one scalar value, and malformed input is replaced one maximal
// subpart (the longest start of some well-formed sequence, or else one byte) at a time.
//
// Input: one selector byte, then the data.
//   0: UTF-8 bytes to wide text, then back to UTF-8;
//   1: UTF-16LE bytes to wide text;
//   2: wide characters (4 bytes each, any value) to UTF-8.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "StdBase.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalarValue(char32_t c) {
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

std::string EncodeUtf8(char32_t c) {
    const auto byte = [](char32_t b) { return static_cast<char>(b); };
    const auto tail = [&](int shift) { return byte(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80)
        return {byte(c)};
    if (c < 0x800)
        return {byte(0xC0 | c >> 6), tail(0)};
    if (c < 0x10000)
        return {byte(0xE0 | c >> 12), tail(6), tail(0)};
    return {byte(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

uint32_t Packed(const unsigned char* bytes, size_t length) {
    uint32_t packed = 0;
    for (size_t k = 0; k < length; ++k)
        packed |= static_cast<uint32_t>(bytes[k]) << (8 * k);
    return packed;
}

// Which 1-, 2- and 3-byte strings start (or are) the encoding of some scalar value.
const std::vector<bool>& Starts(size_t length) {
    static const std::vector<std::vector<bool>> starts = [] {
        std::vector<std::vector<bool>> all{std::vector<bool>(1u << 8), std::vector<bool>(1u << 16),
                                           std::vector<bool>(1u << 24)};
        for (char32_t c = 0; c <= 0x10FFFF; ++c) {
            if (!IsScalarValue(c))
                continue;
            const std::string bytes = EncodeUtf8(c);
            const auto* u = reinterpret_cast<const unsigned char*>(bytes.data());
            for (size_t length = 1; length <= std::min<size_t>(bytes.size(), 3); ++length)
                all[length - 1][Packed(u, length)] = true;
        }
        return all;
    }();
    return starts[length - 1];
}

// True when the bytes are the encoding of one scalar value, which lands in `value`.
bool IsWhole(const unsigned char* bytes, size_t length, char32_t& value) {
    value = bytes[0] & (length == 1 ? 0x7F : 0x7F >> length);
    for (size_t k = 1; k < length; ++k)
        value = (value << 6) | (bytes[k] & 0x3F);
    return IsScalarValue(value) &&
           EncodeUtf8(value) == std::string(reinterpret_cast<const char*>(bytes), length);
}

// Decodes by the definition; `wellFormed` tells whether no replacement was needed.
std::u32string ReferenceUtf8(const unsigned char* s, size_t size, bool& wellFormed) {
    std::u32string out;
    wellFormed = true;
    for (size_t i = 0; i < size;) {
        // The longest start of a well-formed sequence here (starts of starts are starts).
        size_t longest = 0;
        while (longest < 4 && i + longest < size) {
            const size_t length = longest + 1;
            char32_t ignored;
            if (length <= 3 ? !Starts(length)[Packed(s + i, length)]
                            : !IsWhole(s + i, length, ignored))
                break;
            longest = length;
        }
        char32_t value = 0;
        if (longest > 0 && IsWhole(s + i, longest, value)) {
            out += value;
        } else {
            out += kReplacement;
            wellFormed = false;
        }
        i += std::max<size_t>(longest, 1);
    }
    return out;
}

std::u32string Widened(const std::wstring& text) {
    std::u32string out;
    for (const wchar_t c : text)
        out += static_cast<char32_t>(c);
    return out;
}

void CheckUtf8(const unsigned char* data, size_t size) {
    const std::wstring wide =
        StdBase::ConvertUtf8ToUnicode(reinterpret_cast<const char*>(data), size);
    bool wellFormed = false;
    const std::u32string expected = ReferenceUtf8(data, size, wellFormed);
    FUZZ_CHECK(Widened(wide) == expected);
    const std::string back = StdBase::ConvertUnicodeToUtf8(wide);
    FUZZ_CHECK((back == std::string(reinterpret_cast<const char*>(data), size)) == wellFormed);
}

void CheckUtf16(const unsigned char* data, size_t size) {
    std::u32string expected;
    const auto unit = [data](size_t k) {
        return static_cast<char32_t>(data[2 * k] | data[2 * k + 1] << 8);
    };
    const size_t count = size / 2;
    for (size_t k = 0; k < count; ++k) {
        const char32_t c = unit(k);
        if (c >= 0xD800 && c <= 0xDBFF && k + 1 < count && unit(k + 1) >= 0xDC00 &&
            unit(k + 1) <= 0xDFFF) {
            expected += 0x10000 + ((c - 0xD800) << 10) + (unit(k + 1) - 0xDC00);
            ++k;
        } else {
            expected += c >= 0xD800 && c <= 0xDFFF ? kReplacement : c;
        }
    }
    if (size % 2 != 0)
        expected += kReplacement; // a unit cut short
    const std::wstring wide = StdBase::ConvertUtf16LeToUnicode(data, size);
    FUZZ_CHECK(Widened(wide) == expected);
    // Decoded text holds scalar values only, so it survives a trip through UTF-8.
    const std::string utf8 = StdBase::ConvertUnicodeToUtf8(wide);
    FUZZ_CHECK(StdBase::ConvertUtf8ToUnicode(utf8.data(), utf8.size()) == wide);
}

void CheckWide(const unsigned char* data, size_t size) {
    std::wstring wide;
    std::string expected;
    for (size_t k = 0; k + 4 <= size; k += 4) {
        const uint32_t value = data[k] | data[k + 1] << 8 | data[k + 2] << 16 |
                               static_cast<uint32_t>(data[k + 3]) << 24;
        wide += static_cast<wchar_t>(value);
        // wchar_t is 4 bytes natively, so a unit is a whole character or none.
        expected += EncodeUtf8(IsScalarValue(value) ? value : kReplacement);
    }
    FUZZ_CHECK(StdBase::ConvertUnicodeToUtf8(wide) == expected);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    Starts(1); // built once, before the clock of the first input starts
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    switch (data[0] % 3) {
    case 0:
        CheckUtf8(data + 1, size - 1);
        break;
    case 1:
        CheckUtf16(data + 1, size - 1);
        break;
    default:
        CheckWide(data + 1, size - 1);
        break;
    }
    return 0;
}
