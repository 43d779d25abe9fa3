#pragma once
/// @file
/// MFile, a buffered binary file.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "FileSystemExport.h"

namespace FileOs {
enum class Mode;
}

/// Buffered binary file. Reads, writes and seeks may be mixed freely: they all go through one
/// buffer that is written back before the file position leaves it. Reading adapts to the way
/// the file is walked: after a jump the buffer is filled with a small window only, which
/// doubles while reading goes on where it stopped, so skipping through a large file reads
/// little more than what is asked for, and reading it through still reads whole buffers.
class KELFS_API MFile {
public:
    /// The buffer size of a file constructed without one, in bytes.
    static constexpr size_t DEFAULT_BUFFER_SIZE = 65536;

    /// A closed file with a buffer of `bufferSize` bytes (0 is taken as 1), allocated on first use.
    explicit MFile(size_t bufferSize = DEFAULT_BUFFER_SIZE);
    /// Closes the file; buffered data that cannot be written then is lost.
    ~MFile();
    MFile(const MFile&) = delete;
    MFile& operator=(const MFile&) = delete;

    /// A size of 0 is taken as 1. Takes effect at once: buffered data is written first, and
    /// when that fails the old size stays.
    void SET_BUFFER_SIZE(size_t bufferSize);

    /// Opens an existing file for reading only. Each open closes a file already open first and
    /// returns false when the file cannot be opened.
    bool OPEN_READ(const wchar_t* name);
    /// Creates a file, or truncates an existing one, for reading and writing.
    bool CREATE(const wchar_t* name);
    /// Creates a file for reading and writing; false when it exists already.
    bool CREATE_EXCLUSIVE(const wchar_t* name);
    /// Opens an existing file for reading and writing, its content kept.
    bool OPEN_UPDATE(const wchar_t* name);
    /// Whether a file is open.
    bool IS_OPEN() const;
    /// Whether a read, write or seek of the system failed since the file was opened (the end
    /// of the file is no failure). For callers that walk a file until a read comes up short
    /// and must tell a damaged walk from the end of the data.
    bool HasFailed() const { return m_failed; }
    /// False when buffered data could not be written; the file is closed either way.
    bool CLOSE();
    /// Writes buffered data and asks the system to put the file's data on the disk.
    bool COMMIT();

    /// The current position, a byte offset from the start; -1 when the file is not open.
    long long TELL() const;
    /// Moves to a position from the start; false when the file is not open, the position is
    /// negative or buffered data cannot be written.
    bool SEEK(long long position);
    /// Moves by `delta` bytes from the current position.
    bool SEEK_RELATIVE(long long delta);
    /// Moves to `offset` bytes from the end (negative: before it). Not SEEK_END, the C
    /// library's macro, which every header using `<cstdio>` brings in.
    bool SEEK_FROM_END(long long offset = 0);
    /// Moves to the start.
    bool REWIND();

    /// Reads `count` items at the current position and returns the number read: fewer than
    /// asked at the end of the file, 0 on failure. 32-bit integers are little-endian on disk
    /// whatever the host.
    ///@{
    size_t READ(char* data, size_t count);
    size_t READ(unsigned char* data, size_t count);
    size_t READ(int32_t* data, size_t count);
    ///@}
    /// Writes `count` items at the current position and returns the number written (0 on
    /// failure or for a file opened read only). 32-bit integers are written little-endian.
    ///@{
    size_t WRITE(const char* data, size_t count);
    size_t WRITE(const unsigned char* data, size_t count);
    size_t WRITE(const int32_t* data, size_t count);
    ///@}

    /// Copies count bytes from source's current position to this file's current position;
    /// returns the number of bytes copied.
    unsigned long long COPY_FROM(MFile& source, unsigned long long count);

    /// Reads a whole file into `bytes`; false (and `bytes` empty) when it cannot be read.
    static bool READ_ALL(const wchar_t* name, std::vector<unsigned char>& bytes);
    /// Copies a file. With overwrite false an existing target is left alone and the copy fails.
    static bool COPY(const wchar_t* from, const wchar_t* to, bool overwrite = true);
    /// Renames (moves) a file. With overwrite false an existing target makes it fail.
    static bool RENAME(const wchar_t* from, const wchar_t* to, bool overwrite = false);
    /// Deletes a file.
    static bool REMOVE(const wchar_t* name);

private:
    bool OpenAs(const wchar_t* name, FileOs::Mode mode);
    size_t ReadBytes(unsigned char* data, size_t count);
    size_t WriteBytes(const unsigned char* data, size_t count);
    /// Runs one transfer that bypasses the empty buffer at its position, and moves the buffer
    /// past what was transferred. Returns the byte count.
    template <class Transfer> size_t Unbuffered(Transfer transfer);
    bool Flush();
    bool MoveOsTo(long long position);
    /// Notes a failed call of the system; where its file pointer stands is unknown then.
    void OsFailed();
    /// Fills the buffer from the current position with at least `wanted` bytes when the
    /// buffer holds that many, otherwise with the read window.
    bool Refill(size_t wanted);
    void StartBufferAt(long long position);

    intptr_t m_handle = -1; ///< the system's handle or descriptor, -1 when closed
    bool m_writable = false;
    size_t m_bufferSize;
    std::vector<unsigned char> m_buffer; ///< allocated on first use
    long long m_bufferPos = 0;           ///< file position of m_buffer[0]
    size_t m_bufferLen = 0;              ///< valid bytes in the buffer
    size_t m_current = 0;                ///< current position inside the buffer, <= m_bufferLen
    size_t m_dirtyBegin = 0; ///< [m_dirtyBegin, m_dirtyEnd) is not written to the file yet
    size_t m_dirtyEnd = 0;
    long long m_osPos = -1; ///< position of the system's file pointer, -1 when unknown
    bool m_failed = false;  ///< see HasFailed()
    size_t m_readWindow;    ///< bytes the next refill reads, between MIN_READ_WINDOW and the size
    static constexpr size_t MIN_READ_WINDOW = 512;
};
