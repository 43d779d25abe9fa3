// Against the real clipboard of the system (under Wine, the prefix's).
#include <gtest/gtest.h>

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>

#include <windows.h>

#include "Clipboard.h"

namespace {

// Puts raw blocks on the clipboard, as another program would.
void Put(std::initializer_list<std::pair<UINT, std::string>> blocks) {
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

std::string Bytes(const void* data, std::size_t size) {
    return std::string(static_cast<const char*>(data), size);
}

// The bytes of the clipboard's block of `format`, as many as `size`.
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

TEST(ClipboardTest, EmptyStringsPutOnlyTheTerminator) {
    EXPECT_EQ(1, CopyStringToClipboard(""));
    EXPECT_EQ(std::string(1, '\0'), Block(CF_TEXT, 1));
    CString text(L"previous");
    EXPECT_EQ(1, GetTextFromClipboard(text));
    EXPECT_EQ(L"", std::wstring(text.GetString()));

    EXPECT_EQ(1, CopyStringToClipboard(L""));
    EXPECT_EQ(std::string(2, '\0'), Block(CF_UNICODETEXT, 2));
}

TEST(ClipboardTest, CopiesReplaceTheWholeContent) {
    Put({{CF_TEXT, std::string("old\0", 4)}, {CF_DIF, "data"}});
    const char narrow[] = "narrow text";
    EXPECT_EQ(1, CopyStringToClipboard(narrow));
    EXPECT_EQ(Bytes(narrow, sizeof narrow), Block(CF_TEXT, sizeof narrow));
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_DIF));

    const wchar_t wide[] = L"Gr\u00fc\u00dfe \u2713 \u65e5\u672c";
    EXPECT_EQ(1, CopyStringToClipboard(wide));
    EXPECT_EQ(Bytes(wide, sizeof wide), Block(CF_UNICODETEXT, sizeof wide));
    CString text;
    EXPECT_EQ(1, GetTextFromClipboard(text));
    EXPECT_EQ(std::wstring(wide), text.GetString());
}

TEST(ClipboardTest, NarrowOnlyIsReadAsWideText) {
    Put({{CF_TEXT, std::string("only narrow\0", 12)}});
    CString text;
    EXPECT_EQ(1, GetTextFromClipboard(text));
    EXPECT_EQ(L"only narrow", std::wstring(text.GetString()));
}

TEST(ClipboardTest, WideTextIsPreferredWhenBothArePresent) {
    const wchar_t wide[] = L"the wide one";
    Put({{CF_TEXT, std::string("the narrow one\0", 15)},
         {CF_UNICODETEXT, Bytes(wide, sizeof wide)}});
    CString text;
    EXPECT_EQ(1, GetTextFromClipboard(text));
    EXPECT_EQ(std::wstring(wide), text.GetString());
}

TEST(ClipboardTest, NoTextLeavesTheStringUntouched) {
    Put({});
    CString text(L"kept");
    EXPECT_EQ(0, GetTextFromClipboard(text));
    EXPECT_EQ(L"kept", std::wstring(text.GetString()));

    Put({{CF_DIF, "not text"}});
    EXPECT_EQ(0, GetTextFromClipboard(text));
    EXPECT_EQ(L"kept", std::wstring(text.GetString()));
}

// While a window of another thread holds the clipboard open, every call fails with 0 and
// changes nothing.
TEST(ClipboardTest, FailsWhileAnotherThreadHoldsTheClipboard) {
    ASSERT_EQ(1, CopyStringToClipboard(L"before"));
    std::mutex lock;
    std::condition_variable changed;
    bool opened = false, release = false;
    std::thread holder([&] {
        HWND window = CreateWindowExW(0, L"STATIC", L"holder", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      nullptr, nullptr);
        const bool ok = window && OpenClipboard(window);
        std::unique_lock<std::mutex> guard(lock);
        opened = true;
        changed.notify_all();
        changed.wait(guard, [&] { return release; });
        if (ok)
            CloseClipboard();
        DestroyWindow(window);
    });
    {
        std::unique_lock<std::mutex> guard(lock);
        changed.wait(guard, [&] { return opened; });
    }
    EXPECT_NE(nullptr, GetOpenClipboardWindow());
    CString text(L"kept");
    EXPECT_EQ(0, CopyStringToClipboard("narrow"));
    EXPECT_EQ(0, CopyStringToClipboard(L"wide"));
    EXPECT_EQ(0, GetTextFromClipboard(text));
    EXPECT_EQ(L"kept", std::wstring(text.GetString()));
    {
        std::lock_guard<std::mutex> guard(lock);
        release = true;
    }
    changed.notify_all();
    holder.join();
    EXPECT_EQ(1, GetTextFromClipboard(text));
    EXPECT_EQ(L"before", std::wstring(text.GetString()));
}

} // namespace
