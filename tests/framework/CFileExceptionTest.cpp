#include <gtest/gtest.h>

#include "Afx.h"

namespace {

TEST(CFileExceptionTest, OsErrorsMapToCauses) {
    EXPECT_EQ(CFileException::none, CFileException::OsErrorToException(0));
    EXPECT_EQ(CFileException::fileNotFound, CFileException::OsErrorToException(2));
    EXPECT_EQ(CFileException::badPath, CFileException::OsErrorToException(3));
    EXPECT_EQ(CFileException::accessDenied, CFileException::OsErrorToException(5));
    EXPECT_EQ(CFileException::sharingViolation, CFileException::OsErrorToException(32));
    EXPECT_EQ(CFileException::lockViolation, CFileException::OsErrorToException(33));
    EXPECT_EQ(CFileException::diskFull, CFileException::OsErrorToException(112));
    EXPECT_EQ(CFileException::genericException, CFileException::OsErrorToException(12345));
    EXPECT_EQ(CFileException::genericException, CFileException::OsErrorToException(-1));
}

TEST(CFileExceptionTest, ThrowOsErrorThrowsAHeapExceptionUnlessNoError) {
    CFileException* caught = nullptr;
    try {
        CFileException::ThrowOsError(5, L"C:\\locked.bin");
    } catch (CFileException* e) {
        caught = e;
    }
    ASSERT_NE(nullptr, caught);
    EXPECT_EQ(CFileException::accessDenied, caught->m_cause);
    EXPECT_EQ(5, caught->m_lOsError);
    EXPECT_TRUE(caught->m_strFileName == L"C:\\locked.bin");
    caught->Delete(); // the leak checker reports it if Delete does not free

    EXPECT_NO_THROW(CFileException::ThrowOsError(0, L"x"));

    bool thrown = false;
    try {
        AfxThrowFileException(CFileException::endOfFile);
    } catch (CException* e) {
        thrown = true;
        ASSERT_TRUE(e->IsKindOf(RUNTIME_CLASS(CFileException)));
        const CFileException* file = static_cast<CFileException*>(e);
        EXPECT_EQ(CFileException::endOfFile, file->m_cause);
        EXPECT_EQ(-1, file->m_lOsError);
        EXPECT_TRUE(file->m_strFileName.IsEmpty());
        e->Delete();
    }
    EXPECT_TRUE(thrown);
}

} // namespace
