// BUILD_TAG_LIST and BUILD_TAG_TREE over any bytes, read through an MFile with a buffer size
// drawn from the input. The flat list must equal the one a plain walk over the bytes in memory
// finds, the file position must be restored, and the tree must list only tags that lie inside
// the file and inside their parent, parents first, never more levels than the bound.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

#include "FuzzSupport.h"
#include "MFile.h"
#include "MTagList.h"

namespace {

struct Header {
    std::string name;
    long long position;
    long long length;
};

long long LengthAt(const std::vector<unsigned char>& bytes, size_t at) {
    return static_cast<int32_t>(uint32_t(bytes[at + 8]) | uint32_t(bytes[at + 9]) << 8 |
                                uint32_t(bytes[at + 10]) << 16 | uint32_t(bytes[at + 11]) << 24);
}

// The flat list as the format defines it: headers one after another from offset 12, a negative
// length or a short header ending it; a "KELCOM" header is the head tag, not an element.
std::vector<Header> Walk(const std::vector<unsigned char>& bytes) {
    std::vector<Header> headers;
    for (long long at = 12; at >= 0 && static_cast<size_t>(at) + 12 <= bytes.size();) {
        const size_t i = static_cast<size_t>(at);
        const long long length = LengthAt(bytes, i);
        if (length < 0)
            break;
        std::string name(reinterpret_cast<const char*>(&bytes[i]), 6);
        name.resize(name.find('\0') == std::string::npos ? 6 : name.find('\0'));
        if (name != "KELCOM")
            headers.push_back({name, at, length});
        at += 12 + length;
    }
    return headers;
}

std::wstring TempFile() {
    const std::string path = (access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : "/tmp/") +
                             std::string("kel_tag_fuzz_") + std::to_string(getpid());
    return std::wstring(path.begin(), path.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    const size_t bufferSize = input.ConsumeIntegralInRange<size_t>(1, 4096);
    const std::vector<unsigned char> bytes = input.ConsumeRemainingBytes<unsigned char>();
    static const std::wstring path = TempFile();
    {
        MFile file;
        FUZZ_CHECK(file.CREATE(path.c_str()));
        FUZZ_CHECK(file.WRITE(bytes.data(), bytes.size()) == bytes.size());
    }
    MFile file(bufferSize);
    FUZZ_CHECK(file.OPEN_READ(path.c_str()));
    const long long fileSize = static_cast<long long>(bytes.size());
    const long long start = static_cast<long long>(bytes.size() / 2);
    FUZZ_CHECK(file.SEEK(start));

    MTagList list;
    const bool tagged =
        bytes.size() >= 12 && std::string(bytes.begin(), bytes.begin() + 6) == "KELCOM";
    FUZZ_CHECK(list.BUILD_TAG_LIST(file) == tagged);
    FUZZ_CHECK(file.TELL() == start);
    if (tagged) {
        const std::vector<Header> expected = Walk(bytes);
        FUZZ_CHECK(list.SIZE() == expected.size());
        for (size_t i = 0; i < expected.size(); ++i) {
            const MTag& tag = list.GetTags()[i];
            FUZZ_CHECK(expected[i].name == tag.m_name);
            FUZZ_CHECK(expected[i].position == tag.m_header_pos);
            FUZZ_CHECK(tag.m_data_pos == tag.m_header_pos + 12);
            FUZZ_CHECK(expected[i].length == tag.m_length);
        }
    }

    list.BUILD_TAG_TREE(file, 0, -1);
    FUZZ_CHECK(list.SIZE() <= bytes.size() / 12);
    // The ends of the tags holding the current one.
    std::vector<long long> open;
    long long previous = -1;
    for (const MTag& tag : list.GetTags()) {
        const long long end = tag.m_data_pos + tag.m_length;
        FUZZ_CHECK(tag.m_length >= 0);
        FUZZ_CHECK(end <= fileSize);
        FUZZ_CHECK(tag.m_header_pos > previous);
        previous = tag.m_header_pos;
        while (!open.empty() && tag.m_header_pos >= open.back())
            open.pop_back();
        FUZZ_CHECK(open.empty() || end <= open.back());
        open.push_back(end);
        FUZZ_CHECK(open.size() <= static_cast<size_t>(MTagList::MAX_TREE_DEPTH));
    }

    // The tags inside each top-level tag: the same as the tree's children.
    if (tagged && !list.GetTags().empty()) {
        MTag first = list.GetTags()[0];
        FUZZ_CHECK(list.BUILD_TAG_LIST(file, first, true));
        for (const MTag& tag : list.GetTags()) {
            FUZZ_CHECK(tag.m_header_pos >= first.m_data_pos);
            FUZZ_CHECK(tag.m_data_pos + tag.m_length <= first.m_data_pos + first.m_length);
        }
    }
    return 0;
}
