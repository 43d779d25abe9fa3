#include "MFileTagged.h"

#include <algorithm>

#include "MFileName.h"
#include "MTagList.h"

MFileTagged::MFileTagged() = default;

MFileTagged::~MFileTagged() = default;

bool MFileTagged::Open(const MFileName& file) {
    Close();
    m_name = file.GET();
    MTag head;
    if (!m_file.OPEN_READ(m_name.c_str()) || !head.READ(m_file) || !head.HasName("KELCOM") ||
        !m_file.SEEK_FROM_END()) {
        Close();
        return false;
    }
    m_size = m_file.TELL();
    MTagList list;
    list.BUILD_TAG_TREE(m_file, 0, -1);
    // A read that failed cut the walk short at its level, and the walk went on after it: the
    // list would miss a subtree, and every later index would name another tag.
    if (m_file.HasFailed()) {
        Close();
        return false;
    }
    // The head tag as the file starts with it (the list keeps the last head tag it met).
    m_tags.push_back(head);
    m_tags.insert(m_tags.end(), list.GetTags().begin(), list.GetTags().end());
    // In file order a tag's parent is the nearest tag before it whose data holds it: the tags
    // still open when it starts are its ancestors, the innermost last.
    std::vector<size_t> open;
    for (size_t i = 0; i < m_tags.size(); ++i) {
        const MTag& tag = m_tags[i];
        while (!open.empty() &&
               m_tags[open.back()].m_data_pos + m_tags[open.back()].m_length <= tag.m_header_pos)
            open.pop_back();
        m_parents.push_back(open.empty() ? NONE : open.back());
        open.push_back(i);
        if (m_parents.back() == NONE)
            m_tagsEnd = std::max(m_tagsEnd, tag.m_data_pos + tag.m_length);
    }
    return true;
}

void MFileTagged::Close() {
    m_file.CLOSE();
    m_size = 0;
    m_tagsEnd = 0;
    m_tags.clear();
    m_parents.clear();
}

int MFileTagged::GetDepth(size_t index) const {
    int depth = 0;
    for (size_t parent = m_parents[index]; parent != NONE; parent = m_parents[parent])
        ++depth;
    return depth;
}

size_t MFileTagged::Find(const MTag& tag, unsigned long versionMode,
                         unsigned long occurrence) const {
    if (tag.m_name[0] == '\0')
        return NONE;
    const int mode = static_cast<int>(std::min(versionMode, 2ul));
    for (size_t i = 0; i < m_tags.size(); ++i)
        if (tag.COMPARE(m_tags[i], mode) && occurrence-- == 0)
            return i;
    return NONE;
}

bool MFileTagged::ReadData(size_t index, std::vector<unsigned char>& data) {
    if (index >= m_tags.size())
        return false;
    const MTag& tag = m_tags[index];
    data.resize(static_cast<size_t>(tag.m_length));
    return m_file.SEEK(tag.m_data_pos) && m_file.READ(data.data(), data.size()) == data.size();
}
