#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "KelResource.h"

namespace {

// Knows string 7 only; writes "hk" into buffers so the tests see what came from here.
struct FakeStrings : IResStringWrapper {
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        ++calls;
        text = id == 7 ? L"seven" : text;
        return id == 7;
    }
    int LoadCharEx(wchar_t* buffer, unsigned int id, unsigned int size) override {
        ++calls;
        if (size > 3)
            wcscpy(buffer, L"hk");
        return static_cast<int>(id * 10);
    }
    int calls = 0;
};

} // namespace

TEST(ResStringHook, ExLookupsGoToTheHookOnly) {
    FakeStrings fake;
    SetMResStringWrapper(&fake);
    std::wstring standard;
    EXPECT_TRUE(KelResLoadStringEx(standard, 7));
    EXPECT_EQ(standard, L"seven");
    EXPECT_FALSE(KelResLoadStringEx(standard, 8));
    CString framework = L"before";
    EXPECT_FALSE(KelResLoadStringEx(framework, 8));
    EXPECT_EQ(framework, L"before");
    EXPECT_TRUE(KelResLoadStringEx(framework, 7));
    EXPECT_EQ(framework, L"seven");
    EXPECT_EQ(KelResLoadStringEx(7u), L"seven");
    EXPECT_EQ(KelResLoadStringEx(9u), L"");
    wchar_t buffer[8] = {};
    EXPECT_EQ(KelResLoadCharEx(buffer, 4, 8), 40);
    EXPECT_STREQ(buffer, L"hk");
    SetMResStringWrapper(nullptr);

    // Removed, it finds nothing: only the std::wstring overload empties its text.
    standard = framework = L"before";
    EXPECT_FALSE(KelResLoadStringEx(standard, 7));
    EXPECT_EQ(standard, L"");
    EXPECT_FALSE(KelResLoadStringEx(framework, 7));
    EXPECT_EQ(framework, L"before");
    EXPECT_EQ(KelResLoadStringEx(7u), L"");
    wcscpy(buffer, L"xxxxxxx");
    EXPECT_EQ(KelResLoadCharEx(buffer, 7, 8), 0);
    EXPECT_EQ(std::wstring(buffer, 2), std::wstring(L"\0x", 2));
    // A buffer without room for the terminator is not written.
    buffer[0] = L'x';
    EXPECT_EQ(KelResLoadCharEx(buffer, 7, 0), 0);
    EXPECT_EQ(KelResLoadCharEx(nullptr, 7, 0), 0);
    EXPECT_EQ(buffer[0], L'x');
    EXPECT_EQ(fake.calls, 7);
}
