#include "TagFileRewrite.h"

#include <algorithm>

#include "LibLog.h"

namespace KelBase {

namespace {

// Files of rewritten tagged files are read and written through buffers of this size.
const size_t BufferSize = 262144;
// The status channel hears of the copy, and the abort flag is polled, once per this many
// source bytes: often enough for a display, rare enough to cost nothing beside the copying.
const long long ReportStep = 1ll << 20;

// Moves `name` aside to the first free "<name>.~<kind><n>"; empty when that fails.
std::wstring MoveAside(const std::wstring& name, const wchar_t* kind) {
    for (int n = 1; n <= 10000; ++n) {
        const std::wstring aside = name + L".~" + kind + std::to_wstring(n);
        MFile probe;
        if (probe.OPEN_READ(aside.c_str()))
            continue;
        return MFile::RENAME(name.c_str(), aside.c_str(), false) ? aside : std::wstring();
    }
    return std::wstring();
}

} // namespace

TagFileRewrite::TagFileRewrite(const wchar_t* cls, const wchar_t* op, const std::wstring& name,
                               const wchar_t* kind)
    : m_class(cls), m_operation(op), m_name(name), m_kind(kind), m_source(BufferSize),
      m_target(BufferSize) {}

TagFileRewrite::~TagFileRewrite() {
    RollBack();
}

void TagFileRewrite::Log(const std::wstring& text) const {
    LogError(m_class, m_operation, text);
}

bool TagFileRewrite::Begin() {
    m_aside = MoveAside(m_name, m_kind);
    if (m_aside.empty()) {
        Log(L"Could not move the file '" + m_name + L"' aside");
        return false;
    }
    m_pending = true;
    if (!m_source.OPEN_READ(m_aside.c_str()) || !m_source.SEEK_FROM_END() ||
        (m_size = m_source.TELL()) < 0 || !m_source.REWIND())
        return Fail(L"Could not read the tagged file '" + m_aside + L".");
    if (!m_target.CREATE(m_name.c_str()))
        return Fail(L"Could not create the file '" + m_name);
    m_level.emplace(0.0, m_size ? static_cast<double>(m_size) : 1.0, L"");
    // The level's text is the file's name (texts are shown as given, begins are formatted).
    IStatusCallback::STATUS_TEXT(0, m_name.c_str());
    return true;
}

bool TagFileRewrite::Report() {
    const long long position = m_source.TELL();
    if (position - m_reported < ReportStep && position < m_size)
        return true;
    m_reported = position;
    m_aborted = !IStatusCallback::STATUS_COUNT(static_cast<double>(position)) ||
                IStatusCallback::STATUS_GET_ABORT();
    return !m_aborted;
}

bool TagFileRewrite::Copy(unsigned long long count) {
    while (count) {
        const unsigned long long part =
            std::min(count, static_cast<unsigned long long>(ReportStep));
        if (m_target.COPY_FROM(m_source, part) != part || !Report())
            return false;
        count -= part;
    }
    return true;
}

bool TagFileRewrite::Write(const void* data, size_t size) {
    return m_target.WRITE(static_cast<const unsigned char*>(data), size) == size;
}

bool TagFileRewrite::Skip(unsigned long long count) {
    return m_source.SEEK_RELATIVE(static_cast<long long>(count)) && Report();
}

bool TagFileRewrite::Fail(const std::wstring& message) {
    Log(m_aborted ? L"Aborted by the user, the file '" + m_name + L"' is left as it was" : message);
    RollBack();
    return false;
}

bool TagFileRewrite::Finish(const std::wstring& writeError) {
    // A last look at the abort flag: a small file is done before the first report.
    m_aborted = m_aborted || IStatusCallback::STATUS_GET_ABORT();
    // The original goes only once the new file is complete and on the disk.
    if (m_aborted || !m_target.COMMIT() || !m_target.CLOSE())
        return Fail(writeError);
    m_level.reset();
    m_source.CLOSE();
    m_pending = false;
    if (!MFile::REMOVE(m_aside.c_str()))
        KelBase::Log(KelSDK::Common::Logging::LogSeverity::Warning, m_class, m_operation,
                     L"Could not delete the old copy '" + m_aside + L"'");
    return true;
}

void TagFileRewrite::RollBack() {
    m_level.reset();
    m_source.CLOSE();
    m_target.CLOSE();
    if (!m_pending)
        return;
    m_pending = false;
    // Puts the original back under its name, replacing whatever was written there.
    if (!MFile::RENAME(m_aside.c_str(), m_name.c_str(), true))
        Log(L"Could not restore the file '" + m_name + L"', the original is kept as '" + m_aside +
            L"'");
}

} // namespace KelBase
