// The structured-exception table and the classes each code throws (no fault involved).
#include <gtest/gtest.h>

#include <string>

#include "MHardException.h"

namespace {

// Each code of the table throws its class, carrying its row; other codes are left alone.
TEST(MHardExceptionTable, TranslateThrowsTheClassOfEachRow) {
    int count = 0;
    const MSeCodeText* table = MHardException::GetCodeTable(count);
    ASSERT_EQ(20, count);
    for (int i = 0; i < count; ++i) {
        const MSeCodeText& row = table[i];
        const std::wstring name = row.name;
        SCOPED_TRACE(name);
        std::wstring thrown;
        try {
            MMExceptionTranslator::Translate(row.code, nullptr);
        } catch (const MHardException& e) {
            thrown = e.GetName();
            EXPECT_EQ(row.code, e.GetCode());
            EXPECT_EQ(&row, &e.GetCodeText());
            EXPECT_EQ(std::wstring(row.description), e.GetMessage());
        }
        const bool integer =
            name == L"EXCEPTION_INT_DIVIDE_BY_ZERO\n" || name == L"EXCEPTION_INT_OVERFLOW\n";
        const bool floating = name.compare(0, 14, L"EXCEPTION_FLT_") == 0;
        const bool memory =
            name == L"EXCEPTION_ARRAY_BOUNDS_EXCEEDED\n" || name == L"EXCEPTION_STACK_OVERFLOW\n";
        EXPECT_EQ(integer    ? L"MMIntException"
                  : floating ? L"MMFltException"
                  : memory   ? L"MMException"
                             : L"MHardException",
                  thrown);
    }
    EXPECT_EQ(L"EXCEPTION_ACCESS_VIOLATION\n",
              std::wstring(MHardException::FindCode(0xC0000005)->name));
    EXPECT_EQ(nullptr, MHardException::FindCode(0xE06D7363));
    EXPECT_NO_THROW(MMExceptionTranslator::Translate(0xE06D7363, nullptr));
    const MHardException unknown(0x12345678);
    EXPECT_EQ(std::wstring(L""), unknown.GetCodeText().name);
}

} // namespace
