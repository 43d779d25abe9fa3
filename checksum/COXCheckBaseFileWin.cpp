#include "COXCheckBase.h"

#include <algorithm>
#include <vector>

DWORD COXCheckBase::CalculateFile(CString path) {
    CFile file;
    CFileException error;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    const DWORD result = CalculateFile(&file, 0xFFFFFFFF, 2048);
    file.Close();
    return result;
}

DWORD COXCheckBase::CalculateFile(CFile* file, DWORD count, DWORD bufferSize) {
    if (!file)
        return m_nCurrent;
    DWORD chunk = std::min(count, bufferSize);
    std::vector<unsigned char> buffer(chunk);
    DWORD remaining = count;
    for (;;) {
        const UINT read = file->Read(buffer.data(), chunk);
        CalculateBlock(buffer.data(), read);
        remaining -= read;
        chunk = std::min(remaining, chunk);
        // Compared with the shrunk chunk on purpose: a remainder smaller than the buffer
        // ends the loop unread.
        if (chunk == 0 || read != chunk)
            break;
    }
    return m_nCurrent;
}
