#pragma once
/// @file
/// MTag, the header of one tag of a tagged file.
#include "KelBaseExport.h"

class MFile;

/// One tag of the library's tagged file format. A tagged file is a sequence of blocks, each a
/// 12-byte header followed by its data; the data of a tag may itself be a sequence of tags.
/// The header holds
/// - at offset 0, 6 bytes: the name, up to six 8-bit characters, zero-padded, no terminator at
///   six;
/// - at offset 6, 1 byte: the major version;
/// - at offset 7, 1 byte: the minor version;
/// - at offset 8, 4 bytes: the data length, signed, little-endian.
///
/// The first block of a file is the head tag "KELCOM", which carries the file's format version.
class KELBASE_API MTag {
public:
    static constexpr int HEADER_SIZE = 12; ///< The size of a header in the file.
    static constexpr int NAME_SIZE = 6;    ///< The longest name.

    /// The current format version, which new named tags and new tag lists take: 2.1.
    ///@{
    static unsigned char m_file_vmajor;
    static unsigned char m_file_vminor;
    ///@}

    /// Empty name, version 1.0, positions unknown (-1), length 0.
    MTag();
    /// The first six characters of name (empty when null) and the current format version, or
    /// the version given; positions unknown, length 0.
    ///@{
    MTag(const char* name);
    MTag(const char* name, unsigned char major, unsigned char minor);
    ///@}

    /// Re-initialise exactly as the matching constructor.
    ///@{
    void INIT(const char* name);
    void INIT(const char* name, unsigned char major, unsigned char minor);
    ///@}

    /// Equal names and equal major versions; the minor version does not count.
    bool operator==(const MTag& other) const;
    /// Equal names, and by mode: 0 any versions; 1 this major at least the other's; any other
    /// mode equal majors.
    bool COMPARE(const MTag& other, int mode) const;
    /// The two version bytes, major then minor.
    unsigned char* VERSION() { return &m_vmajor; }

    /// Writes the header at the file's current position (the length as it is, usually 0 as a
    /// placeholder for UPDATE_SKIP). False on a short write.
    bool WRITE(MFile& file);
    /// Reads a header at the file's current position. False on a short read.
    bool READ(MFile& file);
    /// Once after the data is written: writes the length (current position - data position)
    /// into the header and returns to the current position. False when the length does not fit
    /// the header's 32 bits, so a tag of 2 GiB or more fails rather than being written wrong.
    bool UPDATE_SKIP(MFile& file);
    /// Lets the next UPDATE_SKIP patch the length again.
    void UNDO_UPDATE() { m_updated = false; }

    /// Whether the tag's name is the first six characters of `name` (null: empty).
    bool HasName(const char* name) const;

    char m_name[NAME_SIZE + 1]; ///< The name, zero-terminated.
    bool m_written;             ///< WRITE wrote this header in the current writing pass
    bool m_updated;             ///< UPDATE_SKIP wrote the length back
    unsigned char m_vmajor;     ///< The major version.
    unsigned char m_vminor;     ///< The minor version.
    long long m_header_pos;     ///< file position of the header, -1 when unknown
    long long m_data_pos;       ///< m_header_pos + 12, -1 when unknown
    long long m_length;         ///< data length (read as signed 32 bits)
    long long m_reserved;       ///< always 0
};
