#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "KelResource.h"

namespace {

// Knows string 7 only; fills buffers with a marker so the tests see what came from here.
class FakeStrings : public IResStringWrapper {
public:
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        ++calls;
        if (id != 7)
            return false;
        text = L"seven";
        return true;
    }
    int LoadCharEx(wchar_t* buffer, unsigned int id, unsigned int size) override {
        ++calls;
        if (size > 3)
            wcscpy(buffer, L"hk");
        return static_cast<int>(id * 10);
    }
    int calls = 0;
};

// Installs a hook for one test and removes it afterwards.
class HookInstalled {
public:
    explicit HookInstalled(IResStringWrapper* hook) { SetMResStringWrapper(hook); }
    ~HookInstalled() { SetMResStringWrapper(nullptr); }
};

} // namespace

TEST(ResStringHook, WithoutHookNothingIsFoundAndOnlyTheStdStringIsEmptied) {
    std::wstring standard = L"before";
    EXPECT_FALSE(KelResLoadStringEx(standard, 7));
    EXPECT_EQ(standard, L"");

    CString framework = L"before";
    EXPECT_FALSE(KelResLoadStringEx(framework, 7));
    EXPECT_EQ(framework, L"before");

    EXPECT_EQ(KelResLoadStringEx(7u), L"");

    wchar_t buffer[8] = L"xxxxxxx";
    EXPECT_EQ(KelResLoadCharEx(buffer, 7, 8), 0);
    EXPECT_EQ(buffer[0], L'\0');
    EXPECT_EQ(buffer[1], L'x');
    // A buffer without room for the terminator is not written.
    buffer[0] = L'x';
    EXPECT_EQ(KelResLoadCharEx(buffer, 7, 0), 0);
    EXPECT_EQ(buffer[0], L'x');
    EXPECT_EQ(KelResLoadCharEx(nullptr, 7, 0), 0);
}

TEST(ResStringHook, HookServesEveryExLookup) {
    FakeStrings fake;
    HookInstalled installed(&fake);

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
    EXPECT_EQ(fake.calls, 7);
}

TEST(ResStringHook, RemovingTheHookRestoresTheEmptyResults) {
    FakeStrings fake;
    SetMResStringWrapper(&fake);
    SetMResStringWrapper(nullptr);
    std::wstring standard = L"before";
    EXPECT_FALSE(KelResLoadStringEx(standard, 7));
    EXPECT_EQ(standard, L"");
    EXPECT_EQ(fake.calls, 0);
}
