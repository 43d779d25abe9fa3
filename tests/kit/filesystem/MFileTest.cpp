#include <cstring>
#include <random>

#include "MFile.h"
#include "TempFolder.h"

using Bytes = std::vector<unsigned char>;

class MFileTest : public TempFolderTest {};

namespace {
Bytes Pattern(size_t size, unsigned seed = 1) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>((i * 31 + seed * 7) & 0xFF);
    return bytes;
}
} // namespace

TEST_F(MFileTest, SeekAndTellAcrossSmallBuffer) {
    const Bytes data = Pattern(100);
    MFile file(7);
    ASSERT_TRUE(file.CREATE(Path(L"seek.bin").c_str()));
    for (size_t i = 0; i < data.size(); ++i) {
        ASSERT_EQ(1u, file.WRITE(&data[i], 1));
        ASSERT_EQ(static_cast<long long>(i + 1), file.TELL());
    }
    unsigned char b = 0;
    for (long long pos : {0LL, 6LL, 7LL, 8LL, 99LL, 3LL, 50LL, 49LL, 14LL, 13LL}) {
        ASSERT_TRUE(file.SEEK(pos));
        EXPECT_EQ(pos, file.TELL());
        ASSERT_EQ(1u, file.READ(&b, 1));
        EXPECT_EQ(data[static_cast<size_t>(pos)], b) << "at " << pos;
        EXPECT_EQ(pos + 1, file.TELL());
    }
    ASSERT_TRUE(file.SEEK(20));
    ASSERT_TRUE(file.SEEK_RELATIVE(-15));
    EXPECT_EQ(5, file.TELL());
    ASSERT_TRUE(file.SEEK_RELATIVE(30));
    ASSERT_EQ(1u, file.READ(&b, 1));
    EXPECT_EQ(data[35], b);

    ASSERT_TRUE(file.SEEK_FROM_END(-3));
    EXPECT_EQ(97, file.TELL());
    unsigned char tail[8] = {};
    EXPECT_EQ(3u, file.READ(tail, sizeof tail));
    EXPECT_EQ(0, std::memcmp(tail, &data[97], 3));

    // Before the start is refused and leaves the position alone.
    EXPECT_FALSE(file.SEEK(-1));
    EXPECT_FALSE(file.SEEK_RELATIVE(-101));
    EXPECT_FALSE(file.SEEK_FROM_END(-101));
    EXPECT_EQ(100, file.TELL());

    ASSERT_TRUE(file.REWIND());
    Bytes all(100);
    EXPECT_EQ(100u, file.READ(all.data(), all.size()));
    EXPECT_EQ(data, all);
    file.CLOSE();
    EXPECT_EQ(data, ReadRaw(L"seek.bin"));
}

// Random reads, writes and seeks against an in-memory model, with buffers from one byte up;
// transfers larger than the buffer take the unbuffered path.
TEST_F(MFileTest, MixedOperationsMatchModel) {
    for (size_t bufferSize : {1u, 3u, 16u, 4096u}) {
        SCOPED_TRACE(bufferSize);
        std::mt19937 random(static_cast<unsigned>(bufferSize));
        Bytes model = Pattern(300, 2);
        const std::wstring name = Path(L"mixed.bin");
        {
            MFile seed;
            ASSERT_TRUE(seed.CREATE(name.c_str()));
            ASSERT_EQ(model.size(), seed.WRITE(model.data(), model.size()));
        }
        MFile file(bufferSize);
        ASSERT_TRUE(file.OPEN_UPDATE(name.c_str()));
        size_t pos = 0;
        for (int step = 0; step < 2000; ++step) {
            const size_t count = random() % 3 == 0 ? random() % 64 : random() % 5;
            switch (random() % 3) {
            case 0: {
                Bytes got(count);
                const size_t expected =
                    pos < model.size() ? std::min(count, model.size() - pos) : 0;
                ASSERT_EQ(expected, file.READ(got.data(), count)) << "step " << step;
                ASSERT_TRUE(std::equal(got.begin(), got.begin() + expected, model.begin() + pos));
                pos += expected;
                break;
            }
            case 1: {
                const Bytes put = Pattern(count, static_cast<unsigned>(step));
                ASSERT_EQ(count, file.WRITE(put.data(), count)) << "step " << step;
                if (model.size() < pos + count)
                    model.resize(pos + count);
                std::copy(put.begin(), put.end(), model.begin() + pos);
                pos += count;
                break;
            }
            default:
                pos = random() % (model.size() + 1);
                ASSERT_TRUE(file.SEEK(static_cast<long long>(pos)));
                break;
            }
            ASSERT_EQ(static_cast<long long>(pos), file.TELL()) << "step " << step;
        }
        ASSERT_TRUE(file.SEEK_FROM_END());
        EXPECT_EQ(static_cast<long long>(model.size()), file.TELL());
        file.CLOSE();
        EXPECT_EQ(model, ReadRaw(L"mixed.bin"));
    }
}

TEST_F(MFileTest, IntegersAreLittleEndianOnDisk) {
    const int32_t values[] = {0x01020304, -2, INT32_MIN, 0x7F00FF80};
    MFile file(5); // every integer but the first straddles a buffer boundary
    ASSERT_TRUE(file.CREATE(Path(L"ints.bin").c_str()));
    ASSERT_EQ(4u, file.WRITE(values, 4));
    file.CLOSE();
    const Bytes expected = {0x04, 0x03, 0x02, 0x01, 0xFE, 0xFF, 0xFF, 0xFF,
                            0x00, 0x00, 0x00, 0x80, 0x80, 0xFF, 0x00, 0x7F};
    EXPECT_EQ(expected, ReadRaw(L"ints.bin"));

    ASSERT_TRUE(file.OPEN_READ(Path(L"ints.bin").c_str()));
    int32_t back[4] = {};
    ASSERT_EQ(4u, file.READ(back, 4));
    EXPECT_EQ(0, std::memcmp(values, back, sizeof back));
}

TEST_F(MFileTest, PartialReadsAtEndOfFile) {
    WriteRaw(L"ten.bin", "0123456789");
    MFile file(4);
    ASSERT_TRUE(file.OPEN_READ(Path(L"ten.bin").c_str()));
    char text[16] = {};
    EXPECT_EQ(10u, file.READ(text, sizeof text));
    EXPECT_STREQ("0123456789", text);
    EXPECT_EQ(0u, file.READ(text, 1));
    EXPECT_EQ(10, file.TELL());

    // Two whole integers and two bytes of a third: the partial one is not consumed.
    ASSERT_TRUE(file.REWIND());
    int32_t ints[3] = {};
    EXPECT_EQ(2u, file.READ(ints, 3));
    EXPECT_EQ(8, file.TELL());
    EXPECT_EQ(0x33323130, ints[0]);
    EXPECT_EQ(2u, file.READ(text, 5));
    EXPECT_EQ('8', text[0]);
    EXPECT_EQ('9', text[1]);

    // Reading past the end after a seek beyond it transfers nothing.
    ASSERT_TRUE(file.SEEK(50));
    EXPECT_EQ(0u, file.READ(text, 3));
}

TEST_F(MFileTest, ModesAndClosedFiles) {
    MFile file;
    EXPECT_FALSE(file.IS_OPEN());
    EXPECT_EQ(-1, file.TELL());
    EXPECT_FALSE(file.SEEK(0));
    EXPECT_FALSE(file.SEEK_FROM_END());
    char c = 'x';
    EXPECT_EQ(0u, file.READ(&c, 1));
    EXPECT_EQ(0u, file.WRITE(&c, 1));

    EXPECT_FALSE(file.OPEN_READ(Path(L"missing.bin").c_str()));
    EXPECT_FALSE(file.OPEN_UPDATE(Path(L"missing.bin").c_str()));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"missing.bin"));
    EXPECT_FALSE(file.OPEN_READ(nullptr));
    EXPECT_FALSE(file.CREATE(m_folder.wstring().c_str())); // a folder is no file
    EXPECT_FALSE(file.OPEN_READ(m_folder.wstring().c_str()));

    WriteRaw(L"ro.bin", "abc");
    ASSERT_TRUE(file.OPEN_READ(Path(L"ro.bin").c_str()));
    EXPECT_EQ(0u, file.WRITE("zz", 2));
    file.CLOSE();
    EXPECT_FALSE(file.IS_OPEN());
    EXPECT_EQ(Bytes({'a', 'b', 'c'}), ReadRaw(L"ro.bin"));

    // CREATE truncates and allows reading back what was written.
    ASSERT_TRUE(file.CREATE(Path(L"ro.bin").c_str()));
    EXPECT_TRUE(file.SEEK_FROM_END());
    EXPECT_EQ(0, file.TELL());
    ASSERT_EQ(2u, file.WRITE("xy", 2));
    ASSERT_TRUE(file.REWIND());
    char back[2] = {};
    EXPECT_EQ(2u, file.READ(back, 2));
    EXPECT_EQ('y', back[1]);
    file.CLOSE();
    EXPECT_EQ(Bytes({'x', 'y'}), ReadRaw(L"ro.bin"));
}

TEST_F(MFileTest, OpenUpdateKeepsContent) {
    WriteRaw(L"upd.bin", "abcdef");
    MFile file(2);
    ASSERT_TRUE(file.OPEN_UPDATE(Path(L"upd.bin").c_str()));
    ASSERT_TRUE(file.SEEK(2));
    ASSERT_EQ(2u, file.WRITE("XY", 2));
    // A seek far past the end and a write there extends the file with zeros.
    ASSERT_TRUE(file.SEEK(8));
    ASSERT_EQ(1u, file.WRITE("!", 1));
    file.CLOSE();
    EXPECT_EQ(Bytes({'a', 'b', 'X', 'Y', 'e', 'f', 0, 0, '!'}), ReadRaw(L"upd.bin"));

    // Overwriting the start of a buffer that was filled by reading, then reading on past it:
    // the write must land where it was made, not where the system's file pointer stood.
    WriteRaw(L"upd.bin", "abcdefghij");
    MFile again(4);
    ASSERT_TRUE(again.OPEN_UPDATE(Path(L"upd.bin").c_str()));
    char got[4] = {};
    ASSERT_EQ(2u, again.READ(got, 2));
    ASSERT_TRUE(again.REWIND());
    ASSERT_EQ(2u, again.WRITE("XY", 2));
    ASSERT_EQ(2u, again.READ(got, 2));
    EXPECT_EQ(0, std::memcmp(got, "cd", 2));
    ASSERT_EQ(4u, again.READ(got, 4));
    EXPECT_EQ(0, std::memcmp(got, "efgh", 4));
    again.CLOSE();
    const Bytes raw = ReadRaw(L"upd.bin");
    EXPECT_EQ("XYcdefghij", std::string(raw.begin(), raw.end()));
}

TEST_F(MFileTest, BufferSizeChangeKeepsPendingData) {
    MFile file(64);
    ASSERT_TRUE(file.CREATE(Path(L"resize.bin").c_str()));
    ASSERT_EQ(5u, file.WRITE("hello", 5));
    file.SET_BUFFER_SIZE(2);
    EXPECT_EQ(5, file.TELL());
    ASSERT_EQ(6u, file.WRITE(" world", 6));
    file.SET_BUFFER_SIZE(0);
    ASSERT_TRUE(file.SEEK(4));
    char c = 0;
    ASSERT_EQ(1u, file.READ(&c, 1));
    EXPECT_EQ('o', c);
    file.CLOSE();
    const Bytes raw = ReadRaw(L"resize.bin");
    EXPECT_EQ("hello world", std::string(raw.begin(), raw.end()));
}

TEST_F(MFileTest, CopyFromAnotherFile) {
    const Bytes data = Pattern(200000, 3); // larger than the default buffer
    WriteRaw(L"src.bin", std::string(data.begin(), data.end()));
    MFile source;
    ASSERT_TRUE(source.OPEN_READ(Path(L"src.bin").c_str()));
    ASSERT_TRUE(source.SEEK(10));
    MFile target(1000);
    ASSERT_TRUE(target.CREATE(Path(L"dst.bin").c_str()));
    ASSERT_EQ(3u, target.WRITE("pre", 3));
    EXPECT_EQ(150000u, target.COPY_FROM(source, 150000));
    EXPECT_EQ(150010, source.TELL());
    EXPECT_EQ(150003, target.TELL());
    // More than the source holds: only the rest is copied.
    EXPECT_EQ(49990u, target.COPY_FROM(source, 1000000));
    EXPECT_EQ(0u, target.COPY_FROM(target, 5));
    target.CLOSE();

    Bytes expected = {'p', 'r', 'e'};
    expected.insert(expected.end(), data.begin() + 10, data.end());
    EXPECT_EQ(expected, ReadRaw(L"dst.bin"));
    EXPECT_EQ(0u, target.COPY_FROM(source, 1)); // closed target
}

TEST_F(MFileTest, CopyWholeFiles) {
    const Bytes data = Pattern(70000, 4);
    WriteRaw(L"a.bin", std::string(data.begin(), data.end()));
    const std::wstring a = Path(L"a.bin"), b = Path(L"b.bin");

    ASSERT_TRUE(MFile::COPY(a.c_str(), b.c_str()));
    EXPECT_EQ(data, ReadRaw(L"b.bin"));

    // An existing, longer target is replaced entirely, or left alone without overwrite.
    WriteRaw(L"b.bin", std::string(80000, 'z'));
    EXPECT_FALSE(MFile::COPY(a.c_str(), b.c_str(), false));
    EXPECT_EQ(80000u, ReadRaw(L"b.bin").size());
    ASSERT_TRUE(MFile::COPY(a.c_str(), b.c_str(), true));
    EXPECT_EQ(data, ReadRaw(L"b.bin"));

    // Copying a file onto itself must not destroy it.
    EXPECT_FALSE(MFile::COPY(a.c_str(), a.c_str()));
    EXPECT_EQ(data, ReadRaw(L"a.bin"));

    EXPECT_FALSE(MFile::COPY(Path(L"missing.bin").c_str(), Path(L"c.bin").c_str()));
    EXPECT_FALSE(std::filesystem::exists(m_folder / L"c.bin"));
    EXPECT_FALSE(MFile::COPY(nullptr, b.c_str()));
    EXPECT_FALSE(MFile::COPY(a.c_str(), nullptr));

    WriteRaw(L"empty.bin", "");
    ASSERT_TRUE(MFile::COPY(Path(L"empty.bin").c_str(), Path(L"empty2.bin").c_str(), false));
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"empty2.bin"));
}

TEST_F(MFileTest, NonAsciiFileName) {
    // The standard library converts wide paths through the locale natively, so the expected
    // name on disk is given in UTF-8.
    const std::wstring name = m_folder.wstring() + L"/caf\u00e9 \u20ac \U0001F600.bin";
    const auto onDisk = m_folder / std::filesystem::u8path(u8"caf\u00e9 \u20ac \U0001F600.bin");
    MFile file;
    ASSERT_TRUE(file.CREATE(name.c_str()));
    ASSERT_EQ(3u, file.WRITE("abc", 3));
    file.CLOSE();
    EXPECT_TRUE(std::filesystem::exists(onDisk));
    EXPECT_EQ(3u, std::filesystem::file_size(onDisk));
    ASSERT_TRUE(file.OPEN_READ(name.c_str()));
    char back[4] = {};
    EXPECT_EQ(3u, file.READ(back, 4));
    EXPECT_STREQ("abc", back);
}
