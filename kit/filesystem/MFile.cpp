#include "MFile.h"

#include <algorithm>
#include <cstring>

#include "FileOs.h"

using FileOs::Mode;

namespace {

// Little-endian 32-bit integers pass through a byte chunk on the stack. `transfer(chunk, first,
// items)` moves one chunk of `items` integers starting at item `first` and returns the bytes it
// moved; a short transfer ends the run.
template <class Transfer> size_t TransferInts(size_t count, Transfer transfer) {
    const size_t intsPerChunk = 1024;
    unsigned char chunk[4 * intsPerChunk];
    size_t done = 0;
    while (done < count) {
        const size_t items = std::min(count - done, intsPerChunk);
        const size_t bytes = transfer(chunk, done, items);
        done += bytes / 4;
        if (bytes < items * 4)
            break;
    }
    return done;
}

} // namespace

MFile::MFile(size_t bufferSize)
    : m_bufferSize(std::max<size_t>(bufferSize, 1)), m_readWindow(m_bufferSize) {}

MFile::~MFile() {
    CLOSE();
}

void MFile::SET_BUFFER_SIZE(size_t bufferSize) {
    // Data that cannot be written back keeps its buffer (and so the old size).
    if (IS_OPEN()) {
        if (!Flush())
            return;
        StartBufferAt(TELL());
    }
    m_bufferSize = std::max<size_t>(bufferSize, 1);
    m_readWindow = m_bufferSize;
    m_buffer.clear();
    m_buffer.shrink_to_fit();
}

bool MFile::OPEN_READ(const wchar_t* name) {
    return OpenAs(name, Mode::Read);
}

bool MFile::CREATE(const wchar_t* name) {
    return OpenAs(name, Mode::Create);
}

bool MFile::CREATE_EXCLUSIVE(const wchar_t* name) {
    return OpenAs(name, Mode::CreateNew);
}

bool MFile::OPEN_UPDATE(const wchar_t* name) {
    return OpenAs(name, Mode::Update);
}

bool MFile::OpenAs(const wchar_t* name, Mode mode) {
    CLOSE();
    if (!name)
        return false;
    m_handle = FileOs::Open(name, mode);
    if (m_handle == FileOs::INVALID)
        return false;
    m_writable = mode != Mode::Read;
    m_osPos = 0;
    m_failed = false;
    m_readWindow = m_bufferSize;
    StartBufferAt(0);
    return true;
}

bool MFile::IS_OPEN() const {
    return m_handle != FileOs::INVALID;
}

bool MFile::CLOSE() {
    if (!IS_OPEN())
        return true;
    const bool flushed = Flush();
    FileOs::Close(m_handle);
    m_handle = FileOs::INVALID;
    m_writable = false;
    m_dirtyBegin = m_dirtyEnd = 0;
    StartBufferAt(0);
    m_osPos = -1;
    m_buffer.clear();
    m_buffer.shrink_to_fit();
    return flushed;
}

bool MFile::COMMIT() {
    return IS_OPEN() && Flush() && FileOs::Sync(m_handle);
}

long long MFile::TELL() const {
    return IS_OPEN() ? m_bufferPos + static_cast<long long>(m_current) : -1;
}

bool MFile::SEEK(long long position) {
    if (!IS_OPEN() || position < 0)
        return false;
    if (position >= m_bufferPos && position - m_bufferPos <= static_cast<long long>(m_bufferLen)) {
        m_current = static_cast<size_t>(position - m_bufferPos);
        return true;
    }
    if (!Flush())
        return false;
    // Leaving a buffer that was mostly not read means the file is being skipped through: the
    // next fill starts over with a small window.
    if (m_current < m_bufferLen / 2)
        m_readWindow = std::min(MIN_READ_WINDOW, m_bufferSize);
    StartBufferAt(position);
    return true;
}

bool MFile::SEEK_RELATIVE(long long delta) {
    return IS_OPEN() && SEEK(TELL() + delta);
}

bool MFile::SEEK_FROM_END(long long offset) {
    if (!IS_OPEN() || !Flush())
        return false;
    // Everything buffered is on disk now, so the system knows the true size.
    const long long size = FileOs::Seek(m_handle, 0, FileOs::Origin::End);
    if (size < 0) {
        OsFailed();
        return false;
    }
    m_osPos = size;
    return SEEK(size + offset);
}

bool MFile::REWIND() {
    return SEEK(0);
}

size_t MFile::READ(char* data, size_t count) {
    return ReadBytes(reinterpret_cast<unsigned char*>(data), count);
}

size_t MFile::READ(unsigned char* data, size_t count) {
    return ReadBytes(data, count);
}

size_t MFile::READ(int32_t* data, size_t count) {
    if (!data)
        return 0;
    return TransferInts(count, [&](unsigned char* chunk, size_t first, size_t items) {
        const size_t got = ReadBytes(chunk, items * 4);
        for (size_t i = 0; i < got / 4; ++i) {
            const unsigned char* b = chunk + 4 * i;
            data[first + i] = static_cast<int32_t>(uint32_t(b[0]) | uint32_t(b[1]) << 8 |
                                                   uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24);
        }
        // A trailing partial integer is not consumed: the position stays on whole items.
        if (got % 4)
            SEEK_RELATIVE(-static_cast<long long>(got % 4));
        return got;
    });
}

size_t MFile::WRITE(const char* data, size_t count) {
    return WriteBytes(reinterpret_cast<const unsigned char*>(data), count);
}

size_t MFile::WRITE(const unsigned char* data, size_t count) {
    return WriteBytes(data, count);
}

size_t MFile::WRITE(const int32_t* data, size_t count) {
    if (!data)
        return 0;
    return TransferInts(count, [&](unsigned char* chunk, size_t first, size_t items) {
        for (size_t i = 0; i < items; ++i) {
            const uint32_t v = static_cast<uint32_t>(data[first + i]);
            unsigned char* b = chunk + 4 * i;
            b[0] = static_cast<unsigned char>(v);
            b[1] = static_cast<unsigned char>(v >> 8);
            b[2] = static_cast<unsigned char>(v >> 16);
            b[3] = static_cast<unsigned char>(v >> 24);
        }
        return WriteBytes(chunk, items * 4);
    });
}

unsigned long long MFile::COPY_FROM(MFile& source, unsigned long long count) {
    if (&source == this || !IS_OPEN() || !source.IS_OPEN())
        return 0;
    // Straight from the source's buffer: one copy in memory, none when the target passes a
    // large piece on unbuffered.
    unsigned long long done = 0;
    while (done < count) {
        const unsigned long long rest = count - done;
        if (source.m_current == source.m_bufferLen &&
            !source.Refill(static_cast<size_t>(std::min<unsigned long long>(rest, SIZE_MAX))))
            break;
        const size_t n = static_cast<size_t>(
            std::min<unsigned long long>(rest, source.m_bufferLen - source.m_current));
        const size_t put = WriteBytes(source.m_buffer.data() + source.m_current, n);
        source.m_current += put;
        done += put;
        if (put < n)
            break;
    }
    return done;
}

bool MFile::READ_ALL(const wchar_t* name, std::vector<unsigned char>& bytes) {
    bytes.clear();
    MFile in;
    if (!in.OPEN_READ(name) || !in.SEEK_FROM_END())
        return false;
    bytes.resize(static_cast<size_t>(in.TELL()));
    if (in.REWIND() && in.READ(bytes.data(), bytes.size()) == bytes.size())
        return true;
    bytes.clear();
    return false;
}

bool MFile::COPY(const wchar_t* from, const wchar_t* to, bool overwrite) {
    MFile source;
    if (!to || !source.OPEN_READ(from) || !source.SEEK_FROM_END())
        return false;
    const long long size = source.TELL();
    MFile target;
    // The target is truncated only once it is known not to be the source itself.
    if (!source.REWIND() || !target.OpenAs(to, overwrite ? Mode::OpenOrCreate : Mode::CreateNew) ||
        FileOs::SameFile(source.m_handle, target.m_handle) || !FileOs::Truncate(target.m_handle))
        return false;
    return target.COPY_FROM(source, static_cast<unsigned long long>(size)) ==
               static_cast<unsigned long long>(size) &&
           target.Flush();
}

bool MFile::RENAME(const wchar_t* from, const wchar_t* to, bool overwrite) {
    return from && to && FileOs::Rename(from, to, overwrite);
}

bool MFile::REMOVE(const wchar_t* name) {
    return name && FileOs::Remove(name);
}

size_t MFile::ReadBytes(unsigned char* data, size_t count) {
    if (!IS_OPEN() || !data)
        return 0;
    size_t done = 0;
    while (done < count) {
        if (m_current < m_bufferLen) {
            size_t n = std::min(count - done, m_bufferLen - m_current);
            std::memcpy(data + done, m_buffer.data() + m_current, n);
            m_current += n;
            done += n;
            continue;
        }
        size_t rest = count - done;
        if (rest < m_bufferSize) {
            if (!Refill(rest))
                break;
            continue;
        }
        // Large reads bypass the buffer.
        if (!Flush())
            break;
        StartBufferAt(m_bufferPos + static_cast<long long>(m_current));
        const size_t got = Unbuffered([&] { return FileOs::Read(m_handle, data + done, rest); });
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

size_t MFile::WriteBytes(const unsigned char* data, size_t count) {
    if (!IS_OPEN() || !m_writable || !data)
        return 0;
    if (m_buffer.size() != m_bufferSize)
        m_buffer.resize(m_bufferSize);
    size_t done = 0;
    while (done < count) {
        if (m_current == m_bufferSize) {
            if (!Flush())
                break;
            StartBufferAt(m_bufferPos + static_cast<long long>(m_current));
        }
        size_t rest = count - done;
        if (m_bufferLen == 0 && rest >= m_bufferSize) {
            // Large writes bypass the (empty) buffer.
            const size_t put =
                Unbuffered([&] { return FileOs::Write(m_handle, data + done, rest); });
            if (put == 0)
                break;
            done += put;
            continue;
        }
        size_t n = std::min(rest, m_bufferSize - m_current);
        std::memcpy(m_buffer.data() + m_current, data + done, n);
        // One dirty range covers both writes; whatever lies between them is valid file data.
        if (m_dirtyEnd == m_dirtyBegin) {
            m_dirtyBegin = m_current;
            m_dirtyEnd = m_current + n;
        } else {
            m_dirtyBegin = std::min(m_dirtyBegin, m_current);
            m_dirtyEnd = std::max(m_dirtyEnd, m_current + n);
        }
        m_current += n;
        m_bufferLen = std::max(m_bufferLen, m_current);
        done += n;
    }
    return done;
}

template <class Transfer> size_t MFile::Unbuffered(Transfer transfer) {
    if (!MoveOsTo(m_bufferPos))
        return 0;
    const long long moved = transfer();
    if (moved < 0) {
        OsFailed();
        return 0;
    }
    m_osPos += moved;
    m_bufferPos += moved;
    return static_cast<size_t>(moved);
}

bool MFile::Flush() {
    if (m_dirtyEnd == m_dirtyBegin)
        return true;
    const long long position = m_bufferPos + static_cast<long long>(m_dirtyBegin);
    const size_t size = m_dirtyEnd - m_dirtyBegin;
    if (!MoveOsTo(position))
        return false;
    long long put = FileOs::Write(m_handle, m_buffer.data() + m_dirtyBegin, size);
    if (put < 0) {
        OsFailed();
        return false;
    }
    m_osPos = position + put;
    m_dirtyBegin += static_cast<size_t>(put);
    if (m_dirtyBegin != m_dirtyEnd)
        return false;
    m_dirtyBegin = m_dirtyEnd = 0;
    return true;
}

bool MFile::MoveOsTo(long long position) {
    if (m_osPos != position) {
        m_osPos = FileOs::Seek(m_handle, position, FileOs::Origin::Begin);
        if (m_osPos < 0)
            OsFailed();
    }
    return m_osPos == position;
}

void MFile::OsFailed() {
    m_osPos = -1;
    m_failed = true;
}

bool MFile::Refill(size_t wanted) {
    if (!Flush())
        return false;
    StartBufferAt(m_bufferPos + static_cast<long long>(m_current));
    if (m_buffer.size() != m_bufferSize)
        m_buffer.resize(m_bufferSize);
    if (!MoveOsTo(m_bufferPos))
        return false;
    const size_t size = std::min(m_bufferSize, std::max(m_readWindow, wanted));
    m_readWindow = std::min(m_bufferSize, 2 * size);
    long long got = FileOs::Read(m_handle, m_buffer.data(), size);
    if (got < 0) {
        OsFailed();
        return false;
    }
    m_osPos += got;
    m_bufferLen = static_cast<size_t>(got);
    return got > 0;
}

void MFile::StartBufferAt(long long position) {
    m_bufferPos = position;
    m_bufferLen = 0;
    m_current = 0;
}
