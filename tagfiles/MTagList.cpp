#include "MTagList.h"

#include <algorithm>
#include <climits>
#include <string>

#include "IStatusCallback.h"
#include "LibLog.h"
#include "MFile.h"
#include "MFileName.h"

namespace {

const char* const HEAD_NAME = "KELCOM";

// Tags whose data is known to be raw bytes, never child tags.
bool HoldsRawData(const MTag& tag) {
    return tag.HasName("DATA") || tag.HasName("MUID");
}

} // namespace

MTagList::MTagList() : m_head(HEAD_NAME) {}

MTagList::~MTagList() = default;

void MTagList::Add(const MTag& tag) {
    if (tag.HasName(HEAD_NAME))
        m_head = tag;
    else
        m_tags.push_back(tag);
}

void MTagList::AddFlat(MFile& file, unsigned long long limit, long long end) {
    unsigned long long listed = 0;
    MTag tag;
    while (end == -1 || file.TELL() < end) {
        // A negative length would lead back to this header or before it, round and round.
        if (!tag.READ(file) || tag.m_length < 0 ||
            (end != -1 && tag.m_data_pos + tag.m_length > end))
            break;
        Add(tag);
        listed += MTag::HEADER_SIZE + static_cast<unsigned long long>(tag.m_length);
        if (listed >= limit || !file.SEEK(tag.m_data_pos + tag.m_length))
            break;
    }
}

bool MTagList::BUILD_TAG_LIST(MFile& file) {
    if (!file.IS_OPEN())
        return false;
    const long long position = file.TELL();
    MTag head;
    if (!file.REWIND() || !head.READ(file) || !head.HasName(HEAD_NAME)) {
        file.SEEK(position);
        return false;
    }
    m_head = head;
    m_tags.clear();
    AddFlat(file, ULLONG_MAX, -1);
    file.SEEK(position);
    return true;
}

bool MTagList::BUILD_TAG_LIST(MFile& file, unsigned long long limit) {
    if (!file.IS_OPEN())
        return false;
    m_tags.clear();
    AddFlat(file, limit, -1);
    return true;
}

bool MTagList::BUILD_TAG_LIST(MFile& file, MTag& tag, bool nested) {
    if (!file.IS_OPEN())
        return false;
    const long long position = file.TELL();
    if (tag.m_data_pos < 0 || !file.SEEK(tag.m_data_pos)) {
        KelBase::LogError(L"MTagList", L"CONVERT", L"Could not find given tag data position");
        return false;
    }
    m_tags.clear();
    const long long end = tag.m_data_pos + tag.m_length;
    if (!HoldsRawData(tag) && tag.m_vmajor >= 2 && tag.m_length >= MTag::HEADER_SIZE) {
        if (nested) {
            // The end of the file bounds the walk as it does for a whole tree.
            file.SEEK_FROM_END();
            const long long fileEnd = file.TELL();
            AddTree(file, tag.m_data_pos, end, fileEnd, 1);
        } else
            AddFlat(file, ULLONG_MAX, end);
    }
    file.SEEK(position);
    return true;
}

void MTagList::BUILD_TAG_TREE(MFile& file, long long start, long long end) {
    m_tags.clear();
    if (!file.SEEK_FROM_END())
        return;
    AddTree(file, start, end, file.TELL(), 1);
}

// Recursion is bounded by MAX_TREE_DEPTH; each level reads a header at most once per position,
// so hostile lengths cannot make the walk loop or read past the end of the file.
void MTagList::AddTree(MFile& file, long long start, long long end, long long fileEnd, int depth) {
    long long position = start;
    MTag tag;
    // The range is checked before a header is read: an empty range holds no tags, so the
    // children of a tag of length 0 are not its next siblings.
    while ((end == -1 || position < end) && file.SEEK(position) && tag.READ(file)) {
        const long long next = tag.m_data_pos + tag.m_length;
        if (tag.m_length < 0 || next > fileEnd || (end != -1 && next > end))
            break;
        Add(tag);
        if (!HoldsRawData(tag) && depth < MAX_TREE_DEPTH)
            AddTree(file, tag.m_data_pos, next, fileEnd, depth + 1);
        position = next;
    }
}

size_t MTagList::IndexAfter(const MTag* after) const {
    if (!after)
        return 0;
    for (size_t i = 0; i < m_tags.size(); ++i)
        if (&m_tags[i] == after)
            return i + 1;
    return m_tags.size();
}

MTag* MTagList::FIND_TAG_EX(MFile& file, const MTag* after, MTag& tag, unsigned long versionMode,
                            unsigned long kind, bool seek) {
    if (m_tags.empty() || tag.m_name[0] == '\0' || kind > 1)
        return nullptr;
    for (size_t i = IndexAfter(after); i < m_tags.size(); ++i) {
        MTag& element = m_tags[i];
        // The tag asked for is the one compared: mode 1 accepts elements of a lower major.
        if (!tag.COMPARE(element, static_cast<int>(std::min(versionMode, 2ul))) ||
            (kind == 1 && element.m_written))
            continue;
        if (seek)
            file.SEEK(element.m_data_pos);
        tag = element;
        return &element;
    }
    return nullptr;
}

MTag* MTagList::FIND_TAG(MFile& file, const MTag* after, MTag& tag, unsigned long kind, bool seek) {
    return FIND_TAG_EX(file, after, tag, 2, kind, seek);
}

MTag* MTagList::NEXT_TAG(MFile& file, const MTag* after, bool seek) {
    const size_t index = IndexAfter(after);
    if (index >= m_tags.size())
        return nullptr;
    if (seek)
        file.SEEK(m_tags[index].m_data_pos);
    return &m_tags[index];
}

bool MTagList::REMOVE_TAGS(MTag& tag, unsigned long kind) {
    if (kind > 1)
        return false;
    const size_t before = m_tags.size();
    m_tags.erase(std::remove_if(m_tags.begin(), m_tags.end(),
                                [&](const MTag& element) {
                                    return element == tag && (kind == 0 || !element.m_written);
                                }),
                 m_tags.end());
    return m_tags.size() != before;
}

bool MTagList::WRITE_TAG_BEGIN(MFile& file, MTag& tag) {
    MTag* element = nullptr;
    if (tag.m_name[0] != '\0')
        for (MTag& candidate : m_tags)
            if (candidate == tag && !candidate.m_written) {
                element = &candidate;
                break;
            }
    if (element)
        tag = *element;
    else {
        // Meant for rewriting the tags of a built list: a tag it does not hold goes out
        // without its name.
        m_tags.emplace_back();
        element = &m_tags.back();
    }
    element->m_vmajor = tag.m_vmajor;
    element->m_vminor = tag.m_vminor;
    element->WRITE(file);
    element->m_length = 0;
    tag = *element;
    return true;
}

bool MTagList::WRITE_TAG_END(MFile& file, MTag& tag) {
    return tag.UPDATE_SKIP(file);
}

namespace {

void LogConvert(const std::wstring& text) {
    KelBase::LogError(L"MTagList", L"CONVERT", text);
}

std::wstring VersionText(unsigned char major, unsigned char minor) {
    return std::to_wstring(major) + L"." + std::to_wstring(minor);
}

// Moves `name` aside to the first free "<name>.~convert<n>"; empty when that fails.
std::wstring MoveAside(const std::wstring& name) {
    for (int n = 1; n <= 10000; ++n) {
        const std::wstring aside = name + L".~convert" + std::to_wstring(n);
        MFile probe;
        if (probe.OPEN_READ(aside.c_str()))
            continue;
        return MFile::RENAME(name.c_str(), aside.c_str(), false) ? aside : std::wstring();
    }
    return std::wstring();
}

// Whether copying the elements of `list` copies every byte of `file`. A list that ends early
// (at a failed read, or bytes that are no tag) or a later head tag with data would lose them.
bool CoversFile(MTagList& list, MFile& file) {
    const MTag& head = list.GET_HEAD_TAG();
    const MTag& last = list.SIZE() ? list.GetTags().back() : head;
    return (head.m_header_pos == 0 || head.m_length == 0) && file.SEEK_FROM_END() &&
           file.TELL() == last.m_data_pos + last.m_length;
}

// Copies the data of every tag of `list` from `source` into `target` behind a new head tag of
// the given version, reporting the bytes done on the status channel.
bool CopyTags(MTagList& list, MFile& source, MFile& target, unsigned char major,
              unsigned char minor) {
    const unsigned long long step = 16ull << 20;
    unsigned long long total = 0;
    for (const MTag& tag : list.GetTags())
        total += MTag::HEADER_SIZE + static_cast<unsigned long long>(tag.m_length);
    IStatusCallback::Session level(0.0, total ? static_cast<double>(total) : 1.0, L"");
    MTag head(HEAD_NAME, major, minor);
    if (!head.WRITE(target) || !head.UPDATE_SKIP(target))
        return false;
    unsigned long long done = 0;
    for (const MTag& element : list.GetTags()) {
        MTag tag = element;
        if (!source.SEEK(element.m_data_pos) || !tag.WRITE(target))
            return false;
        done += MTag::HEADER_SIZE;
        for (unsigned long long left = static_cast<unsigned long long>(element.m_length); left;) {
            const unsigned long long part = std::min(left, step);
            if (target.COPY_FROM(source, part) != part)
                return false;
            left -= part;
            done += part;
            IStatusCallback::STATUS_COUNT(static_cast<double>(done));
        }
        if (!tag.UPDATE_SKIP(target))
            return false;
    }
    return true;
}

} // namespace

bool MTagList::CONVERT(MFileName& file, unsigned char major, unsigned char minor) {
    if (major == 0 && minor == 0) {
        major = MTag::m_file_vmajor;
        minor = MTag::m_file_vminor;
    }
    const std::wstring name = file.GET();
    const size_t bufferSize = 262144;
    MFile source(bufferSize);
    if (!source.OPEN_READ(name.c_str())) {
        LogConvert(L"Could not open file '" + name);
        return false;
    }
    MTag head;
    // A file that starts with another header is no tagged file: it has no header tag.
    if (!head.READ(source) || !head.HasName(HEAD_NAME)) {
        LogConvert(L"Could not read header tag from '" + name);
        return false;
    }
    source.CLOSE();
    if (head.m_vmajor == major) {
        KelBase::Log(KelSDK::Common::Logging::LogSeverity::Info, L"MTagList", L"CONVERT",
                     L"File '" + name + L"' already contains version V" +
                         VersionText(head.m_vmajor, head.m_vminor));
        return true;
    }
    if (head.m_vmajor > major) {
        LogConvert(L"File '" + name + L"' contains a newer version number V" +
                   VersionText(head.m_vmajor, head.m_vminor) + L", cannot process !");
        return false;
    }

    const std::wstring aside = MoveAside(name);
    if (aside.empty()) {
        LogConvert(L"Could not move the file '" + name + L"' aside");
        return false;
    }
    MFile target(bufferSize);
    // Puts the original back under its name, replacing whatever was written there.
    auto rollBack = [&](const std::wstring& message) {
        LogConvert(message);
        source.CLOSE();
        target.CLOSE();
        if (!MFile::RENAME(aside.c_str(), name.c_str(), true))
            LogConvert(L"Could not restore the file '" + name + L"', the original is kept as '" +
                       aside + L"'");
        return false;
    };
    if (!source.OPEN_READ(aside.c_str()))
        return rollBack(L"Could not read the tagged file '" + aside + L".");
    if (!target.CREATE(name.c_str()))
        return rollBack(L"Could not create the file '" + name);
    MTagList list;
    if (!list.BUILD_TAG_LIST(source) || !CoversFile(list, source))
        return rollBack(L"Could not build tag list of given file '" + name);
    // The original goes only once the new file is complete and on the disk.
    if (!CopyTags(list, source, target, major, minor) || !target.COMMIT() || !target.CLOSE())
        return rollBack(L"Error writing to file '" + name);
    source.CLOSE();
    if (!MFile::REMOVE(aside.c_str()))
        KelBase::Log(KelSDK::Common::Logging::LogSeverity::Warning, L"MTagList", L"CONVERT",
                     L"Could not delete the old copy '" + aside + L"'");
    return true;
}
