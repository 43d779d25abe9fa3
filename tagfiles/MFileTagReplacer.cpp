#include "MFileTagReplacer.h"

#include <algorithm>
#include <cstdint>

#include "LibLog.h"
#include "MFileName.h"
#include "TagFileRewrite.h"

namespace {

const wchar_t* const Class = L"MFileTagReplacer";
const size_t NONE = MFileTagged::NONE;

bool HoldsRawData(const MTag& tag) {
    return tag.HasName("DATA") || tag.HasName("MUID");
}

// "tag 3 (BODY)", for messages.
std::wstring Describe(const MFileTagged& file, size_t index) {
    std::wstring text = L"tag " + std::to_wstring(index) + L" (";
    for (const char* c = file.GetTag(index).m_name; *c; ++c)
        text += static_cast<wchar_t>(static_cast<unsigned char>(*c));
    return text + L")";
}

} // namespace

MFileTagReplacer::MFileTagReplacer() = default;

MFileTagReplacer::~MFileTagReplacer() = default;

bool MFileTagReplacer::Open(const MFileName& file) {
    m_edits.clear();
    return m_file.Open(file);
}

bool MFileTagReplacer::Replace(size_t index, const void* data, size_t size) {
    Edit edit(Edit::Replace, index);
    return SetData(L"Replace", edit, data, size) && Add(L"Replace", std::move(edit));
}

bool MFileTagReplacer::Replace(size_t index, const MFileName& dataFile) {
    Edit edit(Edit::Replace, index);
    return SetData(L"Replace", edit, dataFile) && Add(L"Replace", std::move(edit));
}

bool MFileTagReplacer::Remove(size_t index) {
    return Add(L"Remove", Edit(Edit::Remove, index));
}

bool MFileTagReplacer::Insert(size_t index, enum Place place, const MTag& tag, const void* data,
                              size_t size) {
    Edit edit(Edit::Insert, index, place, tag);
    return SetData(L"Insert", edit, data, size) && Add(L"Insert", std::move(edit));
}

bool MFileTagReplacer::Insert(size_t index, enum Place place, const MTag& tag,
                              const MFileName& dataFile) {
    Edit edit(Edit::Insert, index, place, tag);
    return SetData(L"Insert", edit, dataFile) && Add(L"Insert", std::move(edit));
}

bool MFileTagReplacer::SetData(const wchar_t* operation, Edit& edit, const void* data,
                               size_t size) {
    if (!data && size) {
        KelBase::LogError(Class, operation, L"No data given");
        return false;
    }
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    edit.m_data.assign(bytes, bytes + size);
    edit.m_size = size;
    return true;
}

bool MFileTagReplacer::SetData(const wchar_t* operation, Edit& edit, const MFileName& dataFile) {
    MFile file;
    if (!file.OPEN_READ(dataFile.GET()) || !file.SEEK_FROM_END()) {
        KelBase::LogError(Class, operation,
                          L"Could not read the data file '" + std::wstring(dataFile.GET()) + L"'");
        return false;
    }
    edit.m_dataFile = dataFile.GET();
    edit.m_size = static_cast<unsigned long long>(file.TELL());
    return true;
}

bool MFileTagReplacer::Add(const wchar_t* operation, Edit edit) {
    auto refuse = [&](const std::wstring& why) {
        KelBase::LogError(Class, operation, why);
        return false;
    };
    if (!m_file.IsOpen())
        return refuse(L"No tagged file is open");
    if (edit.m_anchor >= m_file.GetCount())
        return refuse(L"The file '" + m_file.GetName() + L"' has no tag " +
                      std::to_wstring(edit.m_anchor));
    if (edit.m_size > INT32_MAX)
        return refuse(L"The data of " + std::to_wstring(edit.m_size) +
                      L" bytes is too large for a tag");
    const MTag& tag = m_file.GetTag(edit.m_anchor);
    const long long end = tag.m_data_pos + tag.m_length;
    const long long size = static_cast<long long>(edit.m_size);
    const size_t parent = m_file.GetParent(edit.m_anchor);
    const bool head = edit.m_anchor == 0;
    switch (edit.m_kind) {
    case Edit::Replace:
        edit.m_from = tag.m_data_pos;
        edit.m_to = end;
        edit.m_owner = edit.m_anchor;
        edit.m_delta = size - tag.m_length;
        break;
    case Edit::Remove:
        edit.m_from = tag.m_header_pos;
        edit.m_to = end;
        edit.m_owner = parent;
        edit.m_delta = -(MTag::HEADER_SIZE + tag.m_length);
        break;
    case Edit::Insert:
        edit.m_from = edit.m_to = edit.m_place == Before ? tag.m_header_pos : end;
        edit.m_owner = edit.m_place == Inside ? edit.m_anchor : parent;
        edit.m_delta = MTag::HEADER_SIZE + size;
        if (edit.m_place == Inside && HoldsRawData(tag))
            return refuse(L"The " + Describe(m_file, edit.m_anchor) + L" holds raw data, no tags");
        break;
    }
    // The head tag carries the file's version; only a tag after it is allowed.
    if (head && !(edit.m_kind == Edit::Insert && edit.m_place == After))
        return refuse(L"The head tag takes no edit but an insertion after it");
    if (!Compatible(edit))
        return refuse(L"The edit of " + Describe(m_file, edit.m_anchor) +
                      L" goes against an edit pending");
    m_edits.push_back(std::move(edit));
    return true;
}

bool MFileTagReplacer::Within(size_t inner, size_t outer) const {
    for (size_t index = inner; index != NONE; index = m_file.GetParent(index))
        if (index == outer)
            return true;
    return false;
}

bool MFileTagReplacer::Compatible(const Edit& edit) const {
    // A replaced or removed tag takes no other replacement or removal and nothing inside it.
    auto clash = [&](const Edit& whole, const Edit& other) {
        if (whole.m_kind == Edit::Insert || !Within(other.m_anchor, whole.m_anchor))
            return false;
        return other.m_anchor != whole.m_anchor || other.m_kind != Edit::Insert ||
               other.m_place == Inside;
    };
    for (const Edit& pending : m_edits)
        if (clash(pending, edit) || clash(edit, pending))
            return false;
    return true;
}

bool MFileTagReplacer::Apply() {
    if (m_edits.empty())
        return true;
    const MFileName name(m_file.GetName().c_str());
    const bool written = Write();
    if (written)
        m_edits.clear();
    // The file as it is now: new after success, the original after a failure.
    m_file.Open(name);
    return written;
}

bool MFileTagReplacer::Write() {
    // One place where the output leaves the original: an edit, or a length written anew.
    struct Step {
        long long at;     // position in the original
        long long to;     // the end of the original's bytes it stands for
        int depth;        // the depth of the tag an insertion goes in: deeper first at a place
        size_t order;     // the order of the calls
        const Edit* edit; // null for a length
        int32_t length;   // the new length
    };
    const std::wstring name = m_file.GetName();
    const long long size = m_file.GetSize();
    // Every length that changes, worked out before anything is written.
    std::vector<long long> lengths;
    for (size_t i = 0; i < m_file.GetCount(); ++i)
        lengths.push_back(m_file.GetTag(i).m_length);
    std::vector<bool> removed(m_file.GetCount(), false);
    std::vector<Step> steps;
    for (size_t i = 0; i < m_edits.size(); ++i) {
        const Edit& edit = m_edits[i];
        for (size_t owner = edit.m_owner; owner != NONE; owner = m_file.GetParent(owner))
            lengths[owner] += edit.m_delta;
        removed[edit.m_anchor] = removed[edit.m_anchor] || edit.m_kind == Edit::Remove;
        const int depth = edit.m_owner == NONE ? -1 : m_file.GetDepth(edit.m_owner);
        steps.push_back({edit.m_from, edit.m_to, depth, i, &edit, 0});
    }
    for (size_t i = 0; i < lengths.size(); ++i) {
        const MTag& tag = m_file.GetTag(i);
        if (lengths[i] == tag.m_length || removed[i])
            continue;
        if (lengths[i] > INT32_MAX) {
            KelBase::LogError(Class, L"Apply",
                              L"The " + Describe(m_file, i) + L" would be too large for a tag");
            return false;
        }
        steps.push_back({tag.m_header_pos + 8, tag.m_header_pos + 12, 0, m_edits.size(), nullptr,
                         static_cast<int32_t>(lengths[i])});
    }
    std::sort(steps.begin(), steps.end(), [](const Step& a, const Step& b) {
        if (a.at != b.at)
            return a.at < b.at;
        if (a.to != b.to)
            return a.to < b.to;
        if (a.depth != b.depth)
            return a.depth > b.depth;
        return a.order < b.order;
    });
    // The original is renamed while nothing holds it open.
    m_file.Close();

    KelBase::TagFileRewrite rewrite(Class, L"Apply", name, L"replace");
    if (!rewrite.Begin())
        return false;
    // Windows lets nobody write to the file while it is open here; elsewhere a change is
    // caught by its size.
    if (rewrite.SourceSize() != size)
        return rewrite.Fail(L"The file '" + name + L"' changed since it was read");
    const std::wstring writeError = L"Error writing to file '" + name;
    long long position = 0;
    for (const Step& step : steps) {
        if (!rewrite.Copy(static_cast<unsigned long long>(step.at - position)))
            return rewrite.Fail(writeError);
        if (!step.edit) {
            if (rewrite.Target().WRITE(&step.length, 1) != 1 || !rewrite.Skip(4))
                return rewrite.Fail(writeError);
            position = step.to;
            continue;
        }
        const Edit& edit = *step.edit;
        if (edit.m_kind == Edit::Insert) {
            MTag header = edit.m_tag;
            header.m_length = static_cast<long long>(edit.m_size);
            if (!header.WRITE(rewrite.Target()))
                return rewrite.Fail(writeError);
        }
        if (edit.m_kind != Edit::Remove) {
            if (edit.m_dataFile.empty()) {
                if (!rewrite.Write(edit.m_data.data(), edit.m_data.size()))
                    return rewrite.Fail(writeError);
            } else {
                MFile data;
                if (!data.OPEN_READ(edit.m_dataFile.c_str()) || !data.SEEK_FROM_END() ||
                    static_cast<unsigned long long>(data.TELL()) != edit.m_size || !data.REWIND())
                    return rewrite.Fail(L"Could not read the data file '" + edit.m_dataFile + L"'");
                if (rewrite.Target().COPY_FROM(data, edit.m_size) != edit.m_size)
                    return rewrite.Fail(writeError);
            }
        }
        if (!rewrite.Skip(static_cast<unsigned long long>(step.to - step.at)))
            return rewrite.Fail(writeError);
        position = step.to;
    }
    if (!rewrite.Copy(static_cast<unsigned long long>(size - position)))
        return rewrite.Fail(writeError);
    return rewrite.Finish(writeError);
}
