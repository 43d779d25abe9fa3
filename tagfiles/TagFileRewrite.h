#pragma once
// Rewriting a file under its own name without ever losing it, for the operations that rewrite
// tagged files (MTagList::CONVERT, MFileTagReplacer). The original is moved aside to
// "<name>.~<kind><n>" beside it (the first n from 1 that names nothing) and read from there;
// the new file is written under the name in one forward pass. Finish() puts the new file on
// the disk and only then deletes the original. A rewrite that fails, is aborted or is dropped
// before Finish() puts the original back under its name, replacing what was written.
//
// The copying reports the source bytes passed on the status channel (one level for the whole
// rewrite) and polls its abort flag between steps.
#include <optional>
#include <string>

#include "IStatusCallback.h"
#include "MFile.h"

namespace KelBase {

class TagFileRewrite {
public:
    // Messages are logged as "In cls::op() : ..."; `kind` names the moved-aside file.
    TagFileRewrite(const wchar_t* cls, const wchar_t* op, const std::wstring& name,
                   const wchar_t* kind);
    ~TagFileRewrite();
    TagFileRewrite(const TagFileRewrite&) = delete;
    TagFileRewrite& operator=(const TagFileRewrite&) = delete;

    // Moves the original aside, opens it and creates the new file; false (logged, with the
    // original back in place) when any of that fails.
    bool Begin();

    MFile& Source() { return m_source; }
    MFile& Target() { return m_target; }
    // The size of the original.
    long long SourceSize() const { return m_size; }

    // Copies `count` bytes from the source's position to the target's; false on a short copy
    // or when the user aborted (then Aborted() is true).
    bool Copy(unsigned long long count);
    // Writes bytes to the target; false on a short write.
    bool Write(const void* data, size_t size);
    // Skips `count` bytes of the source.
    bool Skip(unsigned long long count);
    bool Aborted() const { return m_aborted; }

    // Logs `message` (or, after an abort, that the user stopped the rewrite) and puts the
    // original back. Returns false.
    bool Fail(const std::wstring& message);
    // Puts the new file on the disk and deletes the original; on a write failure the same as
    // Fail(writeError).
    bool Finish(const std::wstring& writeError);

private:
    // Reports the source position on the status channel once it has moved on by a step, and
    // polls the abort flag; false when aborted.
    bool Report();
    void Log(const std::wstring& text) const;
    void RollBack();

    const wchar_t* m_class;
    const wchar_t* m_operation;
    std::wstring m_name;
    std::wstring m_aside;
    const wchar_t* m_kind;
    MFile m_source;
    MFile m_target;
    long long m_size = 0;
    long long m_reported = 0;
    bool m_aborted = false;
    bool m_pending = false; // the original is aside and not yet put back or deleted
    std::optional<IStatusCallback::Session> m_level;
};

} // namespace KelBase
