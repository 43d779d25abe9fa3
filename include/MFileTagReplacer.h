#pragma once
/// @file
/// Rewriting a tagged file: the data of chosen tags replaced, tags inserted and removed.
#include <cstddef>
#include <string>
#include <vector>

#include "KelBaseExport.h"
#include "MFileTagged.h"

/// Rewrites a tagged file: the data of chosen tags replaced, tags inserted and removed, and
/// every other byte copied unchanged.
///
/// Tags are chosen by their index in the opened file (MFileTagged::Find chooses one by name,
/// version and occurrence). The edits are collected and written together by Apply(), in one
/// pass over the file that writes the lengths of the tags around an edit (its parent, the
/// parent's parent, ...) with their new values, so no header is patched afterwards. The
/// headers of replaced tags keep their name and version and take the new length.
///
/// Where an inserted tag goes: Before or After the chosen tag, as its sibling, or Inside it as
/// its last child. The head tag takes no edit but an insertion After it (which makes the new
/// tag the first after the head). Inserting Inside a tag that holds raw data ("DATA",
/// "MUID") is refused. Several tags may be inserted at one place; they follow each other in
/// the order the calls were made.
///
/// A tag takes at most one replacement or removal, and no tag inside a tag that is replaced or
/// removed takes any edit (an insertion Before or After the replaced or removed tag itself is
/// allowed). Data is given in memory or as a file that Apply() reads; it must be shorter than
/// 2 GiB, as must every length that results.
///
/// Apply() never loses the file: it is moved aside to "<name>.~replace<n>" and the new file
/// written under its name; when anything fails the original is put back, byte for byte, and
/// after success it is deleted once the new file is on the disk. Apply() reports on the status
/// channel and stops, with the original put back, when its abort flag is set. Failures return
/// false and are logged to "lib.kelbase" as "In MFileTagReplacer::<operation>() : ...".
class KELBASE_API MFileTagReplacer {
public:
    /// Where an inserted tag goes, relative to the chosen tag.
    enum Place {
        Before, ///< Right before it, as its sibling.
        After,  ///< Right after it (after its data), as its sibling.
        Inside, ///< At the end of its data, as its last child.
    };

    MFileTagReplacer();
    ~MFileTagReplacer();
    MFileTagReplacer(const MFileTagReplacer&) = delete;
    MFileTagReplacer& operator=(const MFileTagReplacer&) = delete;

    /// Opens the tagged file to edit (see MFileTagged::Open); pending edits are dropped.
    bool Open(const MFileName& file);
    /// The opened file and its tags, by which edits choose their tag.
    MFileTagged& GetFile() { return m_file; }

    /// Replaces the data of the tag at `index`: `size` bytes at `data`, or the content of the
    /// file `dataFile`. False (logged) when the edit is not allowed.
    ///@{
    bool Replace(size_t index, const void* data, size_t size);
    bool Replace(size_t index, const MFileName& dataFile);
    ///@}
    /// Removes the tag at `index` with its data and the tags inside it.
    bool Remove(size_t index);
    /// Inserts a tag with `tag`'s name and version and the given data at `place` relative to the
    /// tag at `index`.
    ///@{
    bool Insert(size_t index, Place place, const MTag& tag, const void* data, size_t size);
    bool Insert(size_t index, Place place, const MTag& tag, const MFileName& dataFile);
    ///@}

    size_t GetEditCount() const { return m_edits.size(); } ///< Edits waiting for Apply().
    void ClearEdits() { m_edits.clear(); }                 ///< Drops the edits waiting for Apply().

    /// Writes the file with every pending edit. On success the file is opened again as it now
    /// is (indices change) and no edit is pending; on failure the file is as it was, opened as
    /// before, and the edits are kept. True without any edit pending.
    bool Apply();

private:
    /// One edit: the bytes [m_from, m_to) of the file give way to a new header (inserts) and
    /// the new data; the length of m_owner and of the tags around it change by m_delta.
    struct Edit {
        enum Kind { Replace, Remove, Insert };
        Edit(Kind kind, size_t anchor, enum Place place = Inside, const MTag& tag = MTag())
            : m_kind(kind), m_anchor(anchor), m_place(place), m_tag(tag) {}

        Kind m_kind;
        size_t m_anchor;      // the chosen tag
        enum Place m_place;   // where an inserted tag goes
        MTag m_tag;           // the inserted tag's name and version
        size_t m_owner = 0;   // the innermost tag whose data changes length; NONE at the top
        long long m_from = 0; // the range of the original that the edit stands for
        long long m_to = 0;
        long long m_delta = 0;
        std::vector<unsigned char> m_data;
        std::wstring m_dataFile;       // the data's file, when not in m_data
        unsigned long long m_size = 0; // the data's size
    };

    // Fills the data of `edit` from memory or a file; false (logged) when it cannot be used.
    bool SetData(const wchar_t* operation, Edit& edit, const void* data, size_t size);
    bool SetData(const wchar_t* operation, Edit& edit, const MFileName& dataFile);
    // Works out where the edit goes and queues it; false (logged) when it is not allowed.
    bool Add(const wchar_t* operation, Edit edit);
    // Whether the tag at `inner` is `outer` or lies inside it.
    bool Within(size_t inner, size_t outer) const;
    // Whether `edit` may go with the pending edits.
    bool Compatible(const Edit& edit) const;
    // Writes the file from the original and the edits; false (logged) on failure.
    bool Write();

    MFileTagged m_file;
    std::vector<Edit> m_edits;
};
