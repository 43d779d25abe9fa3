#pragma once
// Checks a CFileException, or runs a call that must throw one (the framework throws them on the
// heap) and checks and deletes it.
#include <gtest/gtest.h>

#include <string>

#include "Afx.h"

inline void ExpectFileError(const CFileException& e, int cause, LONG osError,
                            const std::wstring& name) {
    EXPECT_EQ(cause, e.m_cause);
    EXPECT_EQ(osError, e.m_lOsError);
    EXPECT_STREQ(name.c_str(), e.m_strFileName);
}

template <class Call>
void ExpectFileException(Call call, int cause, LONG osError, const std::wstring& name) {
    try {
        call();
        ADD_FAILURE() << "nothing thrown";
    } catch (CFileException* e) {
        ExpectFileError(*e, cause, osError, name);
        e->Delete(); // the leak checker reports it if Delete does not free
    }
}
