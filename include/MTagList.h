#pragma once
/// @file
/// MTagList, the tag layout of a tagged file.
#include <cstddef>
#include <vector>

#include "KelBaseExport.h"
#include "MTag.h"

class MFile;
class MFileName;

/// The tag layout of a tagged file (see MTag.h) read into a list, searched by name and
/// version, tags written with back-patched lengths, and whole files converted to another format
/// version. The list holds headers and positions only; tag data stays in the file.
class KELBASE_API MTagList {
public:
    /// Head tag "KELCOM" with the current format version; no elements.
    MTagList();
    ~MTagList();

    /// The number of elements (the head tag not counted).
    unsigned long long SIZE() const { return m_tags.size(); }
    /// The head tag, as read by BUILD_TAG_LIST or made by the constructor.
    MTag& GET_HEAD_TAG() { return m_head; }
    /// The elements in file order (pre-order for a tree).
    const std::vector<MTag>& GetTags() const { return m_tags; }

    /// The tags after the head tag, one level deep (data is skipped, never looked into). False
    /// when the file is not open or does not start with a "KELCOM" header; the file position is
    /// restored either way. A header that repeats "KELCOM" replaces the head tag. A negative
    /// length ends the list there.
    bool BUILD_TAG_LIST(MFile& file);
    /// The same from the current position, without a head tag and without restoring the
    /// position, until the tags listed (12 + length each) make up `limit` bytes or more. False
    /// only when the file is not open.
    bool BUILD_TAG_LIST(MFile& file, unsigned long long limit);
    /// The tags inside the data of `tag`, one level deep, or with `nested` all levels below it
    /// in pre-order. Tags named "DATA" or "MUID" hold raw data, as do tags of major version 1
    /// (the first format did not nest tags), and data shorter than a header holds no tag: their
    /// lists are empty. A child reaching past the end of `tag`'s data ends the list. False when
    /// the file is not open or `tag`'s data cannot be reached; the file position is restored.
    bool BUILD_TAG_LIST(MFile& file, MTag& tag, bool nested);
    /// Every tag between the positions `start` and `end` (-1: the end of the file), children
    /// listed right after their parent; tags named "DATA" and "MUID" are not looked into. An
    /// empty range holds no tags, so a tag of length 0 has no children. The walk stops at a tag
    /// with a negative length or one that reaches past the end of the file or of its parent,
    /// and does not descend more than MAX_TREE_DEPTH levels.
    void BUILD_TAG_TREE(MFile& file, long long start, long long end);
    static constexpr int MAX_TREE_DEPTH = 64; ///< The deepest nesting BUILD_TAG_TREE follows.

    /// The next element after `after` (from the first when null; null when `after` is not in the
    /// list) whose name is `tag`'s and whose version passes versionMode (0 any, 1 `tag`'s major
    /// at least the element's, other: equal majors). Kind 1 also skips elements written in the
    /// current pass; kinds above 1 match nothing. A match is copied into `tag` and, with seek,
    /// the file is positioned at its data.
    MTag* FIND_TAG_EX(MFile& file, const MTag* after, MTag& tag, unsigned long versionMode,
                      unsigned long kind, bool seek);
    /// FIND_TAG_EX with equal major versions.
    MTag* FIND_TAG(MFile& file, const MTag* after, MTag& tag, unsigned long kind, bool seek);
    /// The element after `after` (the first when null); null past the end.
    MTag* NEXT_TAG(MFile& file, const MTag* after, bool seek);
    /// Removes the elements with `tag`'s name and major version (kind 1: only those not written
    /// in the current pass). True when any was removed.
    bool REMOVE_TAGS(MTag& tag, unsigned long kind);

    /// Writes the header of `tag` at the current position, for rewriting a tag the list holds:
    /// the first element of that name and major version not written yet is used and marked
    /// written. A tag the list does not hold is added as an element with an empty name, and so
    /// is written with six zero bytes as its name. `tag` receives the element with its new
    /// positions; write the data, then call WRITE_TAG_END with the same `tag`.
    bool WRITE_TAG_BEGIN(MFile& file, MTag& tag);
    /// After the data of a tag begun with WRITE_TAG_BEGIN: writes its length into its header
    /// (see MTag::UPDATE_SKIP).
    bool WRITE_TAG_END(MFile& file, MTag& tag);

    /// Rewrites the tagged file to the format version major.minor (0.0: the current version)
    /// when it is older, with the data of every tag unchanged. A file of the same major version
    /// is left alone (true), a newer one is refused (false). The file is first renamed to
    /// "<name>.~convert<n>" beside it (the first n from 1 naming nothing), and the new file
    /// written under the old name in one pass over the original; when anything fails the
    /// original is renamed back, replacing what was written, and after success it is deleted
    /// once the new file is on the disk. Progress goes to the status channel (the bytes copied,
    /// one level); when its abort flag is set the conversion stops and the original is put back.
    /// Failures are logged.
    static bool CONVERT(MFileName& file, unsigned char major, unsigned char minor);

private:
    /// The walk of BUILD_TAG_TREE from `start` to `end` at `depth`.
    void AddTree(MFile& file, long long start, long long end, long long fileEnd, int depth);
    /// Reads headers from the current position as BUILD_TAG_LIST does, until `limit` bytes are
    /// listed or `end` (-1: none) is reached.
    void AddFlat(MFile& file, unsigned long long limit, long long end);
    /// Adds a header read from the file: a head tag replaces m_head.
    void Add(const MTag& tag);
    /// The position of `after` in the list, the first index to look at; size() when none.
    std::size_t IndexAfter(const MTag* after) const;

    MTag m_head;
    std::vector<MTag> m_tags;
};
