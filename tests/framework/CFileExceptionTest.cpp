#include <gtest/gtest.h>

#include "ExpectFileException.h"

namespace {

TEST(CFileExceptionTest, ThrowOsErrorThrowsOnTheHeapWithCauseOsErrorAndName) {
    EXPECT_NO_THROW(CFileException::ThrowOsError(0, L"x"));
    ExpectFileException([] { CFileException::ThrowOsError(5, L"C:\\locked.bin"); },
                        CFileException::accessDenied, 5, L"C:\\locked.bin");
}

} // namespace
