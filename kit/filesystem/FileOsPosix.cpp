// POSIX file layer for the native build: wide names are passed to the system as UTF-8.
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileOs.h"
#include "StdBase.h"

namespace FileOs {

namespace {
// A call the probe fails reports an input/output error, as a failing disk would.
bool Refused(Call call, size_t bytes = 0) {
    if (Allowed(call, bytes))
        return false;
    errno = EIO;
    return true;
}

std::string Utf8(const wchar_t* name) {
    return StdBase::ConvertUnicodeToUtf8(name);
}
} // namespace

Handle Open(const wchar_t* name, Mode mode) {
    if (Refused(Call::Open))
        return INVALID;
    int flags = O_RDWR;
    switch (mode) {
    case Mode::Read:
        flags = O_RDONLY;
        break;
    case Mode::Create:
        flags |= O_CREAT | O_TRUNC;
        break;
    case Mode::CreateNew:
        flags |= O_CREAT | O_EXCL;
        break;
    case Mode::OpenOrCreate:
        flags |= O_CREAT;
        break;
    case Mode::Update:
        break;
    }
    int fd = open(Utf8(name).c_str(), flags | O_CLOEXEC, 0666);
    if (fd < 0)
        return INVALID;
    struct stat info;
    // Directories open read-only on POSIX but are no files.
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        close(fd);
        return INVALID;
    }
    return fd;
}

void Close(Handle handle) {
    close(static_cast<int>(handle));
}

long long Read(Handle handle, void* data, size_t count) {
    if (Refused(Call::Read, count))
        return -1;
    size_t done = 0;
    while (done < count) {
        ssize_t got = read(static_cast<int>(handle), static_cast<char*>(data) + done, count - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return done ? static_cast<long long>(done) : -1;
        if (got == 0)
            break;
        done += static_cast<size_t>(got);
    }
    return static_cast<long long>(done);
}

long long Write(Handle handle, const void* data, size_t count) {
    if (Refused(Call::Write, count))
        return -1;
    size_t done = 0;
    while (done < count) {
        ssize_t put =
            write(static_cast<int>(handle), static_cast<const char*>(data) + done, count - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return done ? static_cast<long long>(done) : -1;
        done += static_cast<size_t>(put);
    }
    return static_cast<long long>(done);
}

long long Seek(Handle handle, long long offset, Origin origin) {
    if (Refused(Call::Seek))
        return -1;
    int whence = origin == Origin::Begin     ? SEEK_SET
                 : origin == Origin::Current ? SEEK_CUR
                                             : SEEK_END;
    off_t result = lseek(static_cast<int>(handle), static_cast<off_t>(offset), whence);
    return result < 0 ? -1 : static_cast<long long>(result);
}

bool Truncate(Handle handle) {
    return !Refused(Call::Truncate) && ftruncate(static_cast<int>(handle), 0) == 0 &&
           Seek(handle, 0, Origin::Begin) == 0;
}

bool SameFile(Handle a, Handle b) {
    struct stat ia, ib;
    if (fstat(static_cast<int>(a), &ia) != 0 || fstat(static_cast<int>(b), &ib) != 0)
        return false;
    return ia.st_dev == ib.st_dev && ia.st_ino == ib.st_ino;
}

bool Rename(const wchar_t* from, const wchar_t* to, bool replace) {
    if (Refused(Call::Rename))
        return false;
    const std::string source = Utf8(from), target = Utf8(to);
    return (replace ? rename(source.c_str(), target.c_str())
                    : renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(),
                                RENAME_NOREPLACE)) == 0;
}

bool Remove(const wchar_t* name) {
    return !Refused(Call::Remove) && unlink(Utf8(name).c_str()) == 0;
}

bool Sync(Handle handle) {
    return !Refused(Call::Sync) && fsync(static_cast<int>(handle)) == 0;
}

} // namespace FileOs
