// Against the real clipboard of the system (under Wine, the prefix's).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

#include "Clipboard.h"

namespace {

std::string Bytes(const void* data, std::size_t size) {
    return std::string(static_cast<const char*>(data), size);
}

// Puts raw blocks on the clipboard, as another program would.
void Put(const std::vector<std::pair<UINT, std::string>>& blocks) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    for (const auto& block : blocks) {
        HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, block.second.size());
        std::memcpy(GlobalLock(memory), block.second.data(), block.second.size());
        GlobalUnlock(memory);
        EXPECT_NE(nullptr, SetClipboardData(block.first, memory));
    }
    CloseClipboard();
}

// The first `size` bytes of the clipboard's block of `format`.
std::string Block(UINT format, std::size_t size) {
    std::string bytes;
    EXPECT_TRUE(OpenClipboard(nullptr));
    if (HANDLE block = GetClipboardData(format)) {
        EXPECT_GE(GlobalSize(block), size);
        bytes = Bytes(GlobalLock(block), size);
        GlobalUnlock(block);
    }
    CloseClipboard();
    return bytes;
}

// Each copy replaces the whole content with one block holding the text and its terminator.
TEST(ClipboardTest, CopiesPutTheTextWithItsTerminator) {
    EXPECT_EQ(1, CopyStringToClipboard(L""));
    EXPECT_EQ(std::string(2, '\0'), Block(CF_UNICODETEXT, 2));

    Put({{CF_DIF, "data"}});
    const char narrow[] = "narrow text";
    EXPECT_EQ(1, CopyStringToClipboard(narrow));
    EXPECT_EQ(Bytes(narrow, sizeof narrow), Block(CF_TEXT, sizeof narrow));
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_DIF));

    const wchar_t wide[] = L"Gr\u00fc\u00dfe \u2713 \u65e5\u672c";
    EXPECT_EQ(1, CopyStringToClipboard(wide));
    EXPECT_EQ(Bytes(wide, sizeof wide), Block(CF_UNICODETEXT, sizeof wide));
}

// Wide text is preferred, narrow text is read as wide, and without text the string is kept.
TEST(ClipboardTest, GetTextFromEachContent) {
    const wchar_t wide[] = L"the wide one \u2713";
    const std::string narrow("the narrow one\0", 15);
    const struct {
        std::vector<std::pair<UINT, std::string>> blocks;
        int result;
        std::wstring text;
    } cases[] = {
        {{{CF_TEXT, narrow}, {CF_UNICODETEXT, Bytes(wide, sizeof wide)}}, 1, wide},
        {{{CF_TEXT, narrow}}, 1, L"the narrow one"},
        {{{CF_TEXT, std::string(1, '\0')}}, 1, L""},
        {{}, 0, L"kept"},
        {{{CF_DIF, "not text"}}, 0, L"kept"},
    };
    for (const auto& c : cases) {
        Put(c.blocks);
        CString text(L"kept");
        EXPECT_EQ(c.result, GetTextFromClipboard(text)) << c.blocks.size();
        EXPECT_EQ(c.text, text.GetString());
    }
}

} // namespace
