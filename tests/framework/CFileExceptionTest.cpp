#include <gtest/gtest.h>

#include "Afx.h"

namespace {

TEST(CFileExceptionTest, ThrowOsErrorThrowsOnTheHeapWithCauseOsErrorAndName) {
    EXPECT_NO_THROW(CFileException::ThrowOsError(0, L"x"));
    try {
        CFileException::ThrowOsError(5, L"C:\\locked.bin");
        ADD_FAILURE() << "nothing thrown";
    } catch (CFileException* e) {
        EXPECT_EQ(CFileException::accessDenied, e->m_cause);
        EXPECT_EQ(5, e->m_lOsError);
        EXPECT_STREQ(L"C:\\locked.bin", e->m_strFileName);
        e->Delete(); // the leak checker reports it if Delete does not free
    }
}

} // namespace
