// The framework headers before <windows.h>: both orders must compile.
#include "Afx.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

// The cause table is kept by number; check it against the SDK's names (the causes that
// CFileTest meets from the system are checked there).
TEST(WinErrorCausesTest, NumbersMatchTheSdkErrorCodes) {
    const struct {
        LONG error;
        int cause;
    } cases[] = {{ERROR_PATH_NOT_FOUND, CFileException::badPath},
                 {ERROR_LOCK_VIOLATION, CFileException::lockViolation},
                 {ERROR_DISK_FULL, CFileException::diskFull},
                 {ERROR_HANDLE_EOF, CFileException::endOfFile},
                 {ERROR_DIR_NOT_EMPTY, CFileException::removeCurrentDir},
                 {ERROR_OPERATION_ABORTED, CFileException::hardIO},
                 {12345, CFileException::genericException},
                 {-1, CFileException::genericException}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.cause, CFileException::OsErrorToException(c.error)) << c.error;
    }
}

} // namespace
