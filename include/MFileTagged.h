#pragma once
/// @file
/// A tagged file opened for reading, with all its tags.
#include <cstddef>
#include <string>
#include <vector>

#include "KelBaseExport.h"
#include "MFile.h"
#include "MTag.h"

class MFileName;

/// A tagged file (see MTag.h) opened for reading: its head tag and every tag of its tree in
/// file order, each with the tag that encloses it, found by name, version and occurrence, and
/// its data read.
///
/// Index 0 is the head tag; the other tags follow in file order, a tag before its children, as
/// MTagList::BUILD_TAG_TREE lists them (the data of tags named "DATA" and "MUID" is not looked
/// into). A tag whose header or data would not fit the file ends the walk at its level: the
/// bytes from there on belong to no tag listed, and GetTagsEnd() tells where the listed tags
/// end. The file stays open for reading, shared with other readers, while the object is open.
class KELBASE_API MFileTagged {
public:
    /// The index that names no tag: no parent, nothing found.
    static constexpr size_t NONE = static_cast<size_t>(-1);

    MFileTagged();
    ~MFileTagged();
    MFileTagged(const MFileTagged&) = delete;
    MFileTagged& operator=(const MFileTagged&) = delete;

    /// Opens the file and lists its tags. False when it cannot be opened, does not start with a
    /// "KELCOM" header, or a read fails while its tags are listed (the object is then closed).
    bool Open(const MFileName& file);
    /// Closes the file; the tags are forgotten.
    void Close();
    bool IsOpen() const { return m_file.IS_OPEN(); }       ///< Whether a file is open.
    const std::wstring& GetName() const { return m_name; } ///< The name it was opened by.
    long long GetSize() const { return m_size; }           ///< The file's size in bytes.
    /// Where the listed tags end at the top level: the size of the file when every byte of
    /// it belongs to a tag.
    long long GetTagsEnd() const { return m_tagsEnd; }

    size_t GetCount() const { return m_tags.size(); } ///< The head tag and every other tag.
    /// The tag at `index` (below GetCount()), its positions and length as in the file.
    const MTag& GetTag(size_t index) const { return m_tags[index]; }
    /// The tag whose data holds the tag at `index`; NONE for the tags at the top level.
    size_t GetParent(size_t index) const { return m_parents[index]; }
    /// 0 for the tags at the top level, 1 for their children, ...
    int GetDepth(size_t index) const;

    /// The index of the tag with `tag`'s name whose version passes `versionMode` (as in
    /// MTagList::FIND_TAG_EX: 0 any, 1 `tag`'s major at least the tag's, other equal majors),
    /// counting such tags in file order from 0 to `occurrence`; NONE when there are fewer.
    size_t Find(const MTag& tag, unsigned long versionMode, unsigned long occurrence) const;
    /// Reads the data of the tag at `index`. False when it cannot be read.
    bool ReadData(size_t index, std::vector<unsigned char>& data);

private:
    MFile m_file;
    std::wstring m_name;
    long long m_size = 0;
    long long m_tagsEnd = 0;
    std::vector<MTag> m_tags;
    std::vector<size_t> m_parents;
};
