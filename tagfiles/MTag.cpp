#include "MTag.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include "MFile.h"

unsigned char MTag::m_file_vmajor = 2;
unsigned char MTag::m_file_vminor = 1;

MTag::MTag() {
    INIT(nullptr, 1, 0);
}

MTag::MTag(const char* name) {
    INIT(name);
}

MTag::MTag(const char* name, unsigned char major, unsigned char minor) {
    INIT(name, major, minor);
}

void MTag::INIT(const char* name) {
    INIT(name, m_file_vmajor, m_file_vminor);
}

void MTag::INIT(const char* name, unsigned char major, unsigned char minor) {
    // Zero-padded, so that WRITE puts six defined bytes on disk.
    std::memset(m_name, 0, sizeof m_name);
    if (name)
        std::strncpy(m_name, name, NAME_SIZE);
    m_written = false;
    m_updated = false;
    m_vmajor = major;
    m_vminor = minor;
    m_header_pos = -1;
    m_data_pos = -1;
    m_length = 0;
    m_reserved = 0;
}

bool MTag::HasName(const char* name) const {
    return std::strncmp(m_name, name ? name : "", NAME_SIZE) == 0;
}

bool MTag::operator==(const MTag& other) const {
    return HasName(other.m_name) && m_vmajor == other.m_vmajor;
}

bool MTag::COMPARE(const MTag& other, int mode) const {
    if (!HasName(other.m_name))
        return false;
    if (mode == 0)
        return true;
    if (m_vmajor < other.m_vmajor)
        return false;
    return mode == 1 || m_vmajor == other.m_vmajor;
}

bool MTag::WRITE(MFile& file) {
    m_header_pos = file.TELL();
    m_data_pos = m_header_pos + HEADER_SIZE;
    const int32_t length = static_cast<int32_t>(m_length);
    if (file.WRITE(m_name, NAME_SIZE) != NAME_SIZE || file.WRITE(VERSION(), 2) != 2 ||
        file.WRITE(&length, 1) != 1)
        return false;
    m_written = true;
    m_updated = false;
    return true;
}

bool MTag::READ(MFile& file) {
    m_header_pos = file.TELL();
    m_data_pos = m_header_pos + HEADER_SIZE;
    int32_t length = 0;
    if (file.READ(m_name, NAME_SIZE) != NAME_SIZE || file.READ(VERSION(), 2) != 2 ||
        file.READ(&length, 1) != 1)
        return false;
    m_name[NAME_SIZE] = '\0';
    m_length = length;
    m_written = false;
    m_updated = false;
    return true;
}

bool MTag::UPDATE_SKIP(MFile& file) {
    if (m_updated)
        return true;
    const long long length = file.TELL() - m_data_pos;
    if (m_data_pos < 0 || length < 0 || length > INT32_MAX)
        return false;
    const int32_t field = static_cast<int32_t>(length);
    if (!file.SEEK(m_header_pos + 8) || file.WRITE(&field, 1) != 1 ||
        !file.SEEK(m_data_pos + length))
        return false;
    m_length = length;
    m_updated = true;
    return true;
}
