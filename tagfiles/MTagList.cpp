#include "MTagList.h"

#include <algorithm>
#include <climits>
#include <string>

#include "LibLog.h"
#include "MFile.h"
#include "MFileName.h"
#include "TagFileRewrite.h"

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

enum class Copied { All, NoTags, WriteFailed };

// Copies the tags of the moved-aside original behind a new head tag as they stream by: each
// header is read where the copy stands, so the file is read once from front to back, without a
// tag list and without seeks, and the headers go out with the lengths they had, so none is
// patched. The bytes after the head tag's header are walked as tags, as BUILD_TAG_LIST walks
// them; a repeated head tag of length 0 is dropped, as the list drops it. Bytes that make no
// tag (a header cut short, a negative length, data past the end of the file, a repeated head
// tag with data) are no tags: copying them as tags would change them.
Copied CopyTags(KelBase::TagFileRewrite& rewrite, unsigned char major, unsigned char minor) {
    MFile& source = rewrite.Source();
    const long long size = rewrite.SourceSize();
    MTag head(HEAD_NAME, major, minor);
    if (!head.WRITE(rewrite.Target()))
        return Copied::WriteFailed;
    if (!source.SEEK(MTag::HEADER_SIZE))
        return Copied::NoTags;
    for (long long position = MTag::HEADER_SIZE; position < size;) {
        MTag tag;
        if (size - position < MTag::HEADER_SIZE || !tag.READ(source) || tag.m_length < 0 ||
            tag.m_length > size - tag.m_data_pos || (tag.HasName(HEAD_NAME) && tag.m_length != 0))
            return Copied::NoTags;
        position = tag.m_data_pos + tag.m_length;
        if (tag.HasName(HEAD_NAME))
            continue;
        if (!tag.WRITE(rewrite.Target()) ||
            !rewrite.Copy(static_cast<unsigned long long>(tag.m_length)))
            return Copied::WriteFailed;
    }
    return Copied::All;
}

} // namespace

bool MTagList::CONVERT(MFileName& file, unsigned char major, unsigned char minor) {
    if (major == 0 && minor == 0) {
        major = MTag::m_file_vmajor;
        minor = MTag::m_file_vminor;
    }
    const std::wstring name = file.GET();
    MFile source;
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

    KelBase::TagFileRewrite rewrite(L"MTagList", L"CONVERT", name, L"convert");
    if (!rewrite.Begin())
        return false;
    const std::wstring writeError = L"Error writing to file '" + name;
    switch (CopyTags(rewrite, major, minor)) {
    case Copied::NoTags:
        return rewrite.Fail(L"Could not build tag list of given file '" + name);
    case Copied::WriteFailed:
        return rewrite.Fail(writeError);
    case Copied::All:
        break;
    }
    return rewrite.Finish(writeError);
}
