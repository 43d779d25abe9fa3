#pragma once
// Tagged files written byte by byte, as the tests expect them on disk.
#include <string>

// A 12-byte header as it lies on disk.
inline std::string Header(const std::string& name, unsigned char major, unsigned char minor,
                          long length) {
    std::string bytes = name.substr(0, 6);
    bytes.resize(6, '\0');
    bytes += static_cast<char>(major);
    bytes += static_cast<char>(minor);
    const unsigned long value = static_cast<unsigned long>(length);
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((value >> shift) & 0xFF);
    return bytes;
}

// A tag with its data.
inline std::string Tag(const std::string& name, unsigned char major, const std::string& data) {
    return Header(name, major, 0, static_cast<long>(data.size())) + data;
}

inline std::string Head(unsigned char major, unsigned char minor) {
    return Header("KELCOM", major, minor, 0);
}
