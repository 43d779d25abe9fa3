// The framework headers before <windows.h>: both orders must compile.
#include "Afx.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

// The cause table is kept by number; check a few entries against the SDK's names.
TEST(WinErrorCausesTest, NumbersMatchTheSdkErrorCodes) {
    EXPECT_EQ(CFileException::fileNotFound,
              CFileException::OsErrorToException(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(CFileException::badPath, CFileException::OsErrorToException(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(CFileException::sharingViolation,
              CFileException::OsErrorToException(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(CFileException::endOfFile, CFileException::OsErrorToException(ERROR_HANDLE_EOF));
    EXPECT_EQ(CFileException::badSeek, CFileException::OsErrorToException(ERROR_NEGATIVE_SEEK));
    EXPECT_EQ(CFileException::removeCurrentDir,
              CFileException::OsErrorToException(ERROR_DIR_NOT_EMPTY));
    EXPECT_EQ(CFileException::accessDenied,
              CFileException::OsErrorToException(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(CFileException::badPath, CFileException::OsErrorToException(ERROR_DIRECTORY));
    EXPECT_EQ(CFileException::hardIO, CFileException::OsErrorToException(ERROR_OPERATION_ABORTED));
    EXPECT_EQ(CFileException::accessDenied, CFileException::OsErrorToException(ERROR_SWAPERROR));
}

} // namespace
