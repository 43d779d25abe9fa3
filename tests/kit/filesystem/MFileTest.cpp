#include <algorithm>
#include <climits>
#include <cstring>
#include <random>

#include "FileOs.h"
#include "MFile.h"
#include "TempFolder.h"

class MFileTest : public TempFolderTest {};

namespace {
std::string Pattern(size_t size, unsigned seed = 1) {
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>((i * 31 + seed * 7) & 0xFF);
    return bytes;
}
} // namespace

// Random reads, writes and seeks of each kind against an in-memory model, with buffers from one
// byte up; transfers larger than the buffer take the unbuffered path.
TEST_F(MFileTest, MixedOperationsMatchModel) {
    for (size_t bufferSize : {1u, 3u, 16u, 4096u}) {
        SCOPED_TRACE(bufferSize);
        std::mt19937 random(static_cast<unsigned>(bufferSize));
        std::string model = Pattern(300, 2);
        WriteRaw(L"mixed.bin", model);
        MFile file(bufferSize);
        ASSERT_TRUE(file.OPEN_UPDATE(Path(L"mixed.bin").c_str()));
        size_t pos = 0; // never beyond the end: seeks stay inside, writes extend
        for (unsigned step = 0; step < 2000; ++step) {
            SCOPED_TRACE(step);
            const size_t count = random() % 3 == 0 ? random() % 64 : random() % 5;
            const unsigned operation = random() % 3;
            if (operation == 0) {
                std::string got(count, '\0');
                got.resize(file.READ(&got[0], count));
                ASSERT_EQ(model.substr(pos, count), got);
                pos += got.size();
            } else if (operation == 1) {
                const std::string put = Pattern(count, step);
                ASSERT_EQ(count, file.WRITE(put.data(), count));
                model.resize(std::max(model.size(), pos + count));
                model.replace(pos, count, put);
                pos += count;
            } else {
                const size_t to = random() % (model.size() + 1);
                const long long offset = static_cast<long long>(to);
                const unsigned kind = random() % 3;
                ASSERT_TRUE(kind == 0   ? file.SEEK(offset)
                            : kind == 1 ? file.SEEK_RELATIVE(offset - static_cast<long long>(pos))
                                        : file.SEEK_FROM_END(offset -
                                                             static_cast<long long>(model.size())));
                pos = to;
            }
            if (step % 700 == 699) // what the buffer holds must not get lost; 0 is taken as 1
                file.SET_BUFFER_SIZE(step < 700 ? 0 : bufferSize);
            ASSERT_EQ(static_cast<long long>(pos), file.TELL());
        }
        // Before the start is refused and leaves the position alone.
        ASSERT_TRUE(file.SEEK_FROM_END());
        EXPECT_FALSE(file.SEEK(-1));
        EXPECT_FALSE(file.SEEK_RELATIVE(-1 - static_cast<long long>(model.size())));
        EXPECT_FALSE(file.SEEK_FROM_END(-1 - static_cast<long long>(model.size())));
        EXPECT_EQ(static_cast<long long>(model.size()), file.TELL());
        file.CLOSE();
        EXPECT_EQ(model, ReadRaw(L"mixed.bin"));
    }
}

TEST_F(MFileTest, IntegersAreLittleEndianOnDiskAndReadsStopAtTheEnd) {
    const int32_t values[] = {0x01020304, -2, INT32_MIN, 0x7F00FF80};
    MFile file(5); // every integer but the first straddles a buffer boundary
    ASSERT_TRUE(file.CREATE(Path(L"ints.bin").c_str()));
    ASSERT_EQ(4u, file.WRITE(values, 4));
    ASSERT_EQ(2u, file.WRITE("xy", 2));
    file.CLOSE();
    EXPECT_EQ(std::string("\x04\x03\x02\x01\xFE\xFF\xFF\xFF\0\0\0\x80\x80\xFF\0\x7Fxy", 18),
              ReadRaw(L"ints.bin"));

    // Four whole integers and two bytes of a fifth: the partial one is not consumed.
    ASSERT_TRUE(file.OPEN_READ(Path(L"ints.bin").c_str()));
    int32_t back[5] = {};
    ASSERT_EQ(4u, file.READ(back, 5));
    EXPECT_EQ(0, std::memcmp(values, back, sizeof values));
    EXPECT_EQ(16, file.TELL());
    char text[8] = {};
    EXPECT_EQ(2u, file.READ(text, sizeof text));
    EXPECT_STREQ("xy", text);
    EXPECT_EQ(0u, file.READ(text, 1));
}

TEST_F(MFileTest, OpenModesAndClosedFiles) {
    MFile file(2);
    char c = 'x';
    EXPECT_EQ(-1, file.TELL());
    EXPECT_FALSE(file.SEEK(0));
    EXPECT_EQ(0u, file.READ(&c, 1) + file.WRITE(&c, 1));
    EXPECT_FALSE(file.OPEN_UPDATE(Path(L"upd.bin").c_str())); // only an existing file
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"upd.bin"));
    EXPECT_FALSE(file.OPEN_READ(nullptr));
    EXPECT_FALSE(file.CREATE(m_folder.wstring().c_str())); // a folder is no file

    WriteRaw(L"upd.bin", "abcdef");
    ASSERT_TRUE(file.OPEN_READ(Path(L"upd.bin").c_str()));
    EXPECT_EQ(0u, file.WRITE("zz", 2));
    ASSERT_TRUE(file.OPEN_UPDATE(Path(L"upd.bin").c_str())); // closes the read-only one first
    ASSERT_TRUE(file.SEEK(2));
    ASSERT_EQ(2u, file.WRITE("XY", 2));
    ASSERT_TRUE(file.SEEK(8)); // past the end: the gap fills with zeros
    ASSERT_EQ(1u, file.WRITE("!", 1));
    file.CLOSE();
    EXPECT_EQ(std::string("abXYef\0\0!", 9), ReadRaw(L"upd.bin"));

    ASSERT_TRUE(file.CREATE(Path(L"upd.bin").c_str()));
    file.CLOSE();
    EXPECT_EQ("", ReadRaw(L"upd.bin")); // truncated
}

TEST_F(MFileTest, CopyFromAnotherFileAndWholeFiles) {
    const std::string data = Pattern(200000, 3); // larger than the default buffer
    WriteRaw(L"src.bin", data);
    MFile source;
    ASSERT_TRUE(source.OPEN_READ(Path(L"src.bin").c_str()));
    ASSERT_TRUE(source.SEEK(10));
    MFile target(1000);
    ASSERT_TRUE(target.CREATE(Path(L"dst.bin").c_str()));
    ASSERT_EQ(3u, target.WRITE("pre", 3));
    EXPECT_EQ(150000u, target.COPY_FROM(source, 150000));
    EXPECT_EQ(49990u, target.COPY_FROM(source, 1000000)); // only the rest is there
    EXPECT_EQ(0u, target.COPY_FROM(target, 5));
    target.CLOSE();
    EXPECT_EQ("pre" + data.substr(10), ReadRaw(L"dst.bin"));
    EXPECT_EQ(0u, target.COPY_FROM(source, 1)); // closed target

    const std::wstring a = Path(L"src.bin");
    // The standard library converts wide paths through the locale natively, so the expected
    // name on disk is given in UTF-8.
    const std::wstring b = m_folder.wstring() + L"/caf\u00e9 \u20ac \U0001F600.bin";
    const auto onDisk = m_folder / std::filesystem::u8path(u8"caf\u00e9 \u20ac \U0001F600.bin");
    ASSERT_TRUE(MFile::COPY(a.c_str(), b.c_str(), false)); // a new target needs no overwrite
    EXPECT_EQ(data, ReadRaw(onDisk));

    // An existing, longer target is replaced entirely, or left alone without overwrite.
    std::ofstream(onDisk, std::ios::binary) << std::string(250000, 'z');
    EXPECT_FALSE(MFile::COPY(a.c_str(), b.c_str(), false));
    EXPECT_EQ(250000u, std::filesystem::file_size(onDisk));
    ASSERT_TRUE(MFile::COPY(a.c_str(), b.c_str(), true));
    EXPECT_EQ(data, ReadRaw(onDisk));

    EXPECT_FALSE(MFile::COPY(a.c_str(), a.c_str())); // onto itself: must not destroy it
    EXPECT_EQ(data, ReadRaw(L"src.bin"));
    EXPECT_FALSE(MFile::COPY(Path(L"missing.bin").c_str(), Path(L"c.bin").c_str()));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"c.bin"));
}

// What reaches the system, watched through the file layer's probe: skipping through a file
// reads little more than what is asked for, reading it through reads whole buffers, and a
// failing disk shows in CLOSE, COMMIT and HasFailed().
TEST_F(MFileTest, ReadsAdaptToSkippingAndFailuresShow) {
    const std::string data = Pattern(4000000, 4);
    WriteRaw(L"big.bin", data);
    size_t reads = 0, bytesRead = 0;
    bool failWrites = false;
    const FileOs::Probe previous = FileOs::SetProbe([&](FileOs::Call call, size_t bytes) {
        reads += call == FileOs::Call::Read;
        bytesRead += call == FileOs::Call::Read ? bytes : 0;
        return !(failWrites && (call == FileOs::Call::Write || call == FileOs::Call::Sync));
    });
    MFile file;
    ASSERT_TRUE(file.OPEN_READ(Path(L"big.bin").c_str()));
    char header[12];
    for (size_t at = 0; at + sizeof header <= data.size(); at += 100000) {
        ASSERT_TRUE(file.SEEK(static_cast<long long>(at)));
        ASSERT_EQ(sizeof header, file.READ(header, sizeof header));
        ASSERT_EQ(data.substr(at, sizeof header), std::string(header, sizeof header)) << at;
    }
    EXPECT_EQ(40u, reads);
    // The first fill reads a whole buffer, each one after a jump a small window.
    EXPECT_GE(MFile::DEFAULT_BUFFER_SIZE + 39u * 1024, bytesRead);

    // Reading on where the last read stopped: the window doubles up to the whole buffer.
    reads = bytesRead = 0;
    ASSERT_TRUE(file.SEEK(0));
    std::string back(data.size(), '\0');
    for (size_t at = 0; at < data.size(); at += 1000)
        ASSERT_EQ(1000u, file.READ(&back[at], 1000)) << at;
    EXPECT_EQ(data, back);
    EXPECT_GE(70u, reads) << bytesRead;
    EXPECT_EQ(0u, file.READ(&back[0], 1));
    EXPECT_FALSE(file.HasFailed()) << "the end of the file is no failure";

    ASSERT_TRUE(file.CREATE(Path(L"fail.bin").c_str()));
    ASSERT_EQ(3u, file.WRITE("abc", 3));
    failWrites = true;
    EXPECT_FALSE(file.COMMIT());
    EXPECT_TRUE(file.HasFailed());
    EXPECT_FALSE(file.CLOSE());
    EXPECT_FALSE(file.IS_OPEN());
    failWrites = false;
    EXPECT_TRUE(file.CLOSE()) << "nothing to write";
    ASSERT_TRUE(file.OPEN_READ(Path(L"fail.bin").c_str()));
    EXPECT_FALSE(file.HasFailed()) << "after opening again";
    FileOs::SetProbe(previous);
}

TEST_F(MFileTest, RenameAndRemove) {
    WriteRaw(L"a.bin", "first");
    WriteRaw(L"b.bin", "second");
    const std::wstring a = Path(L"a.bin"), b = Path(L"b.bin"), c = Path(L"c.bin");
    EXPECT_FALSE(MFile::RENAME(a.c_str(), b.c_str()));
    EXPECT_EQ("second", ReadRaw(L"b.bin"));
    EXPECT_TRUE(MFile::RENAME(a.c_str(), c.c_str()));
    EXPECT_TRUE(MFile::RENAME(c.c_str(), b.c_str(), true));
    EXPECT_EQ("first", ReadRaw(L"b.bin"));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"c.bin"));
    EXPECT_FALSE(MFile::RENAME(a.c_str(), c.c_str(), true)) << "a is gone";
    EXPECT_FALSE(MFile::RENAME(nullptr, c.c_str()));
    EXPECT_TRUE(MFile::REMOVE(b.c_str()));
    EXPECT_FALSE(MFile::REMOVE(b.c_str()));
    EXPECT_FALSE(MFile::REMOVE(nullptr));
}
