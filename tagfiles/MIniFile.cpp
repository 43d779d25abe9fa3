#include "MIniFile.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "LibLog.h"
#include "MFile.h"
#include "StdBase.h"
#include "miscstr.h"

using KelSDK::FileIO::FindSettingsLineEnd;
using KelSDK::FileIO::IsSettingsBlank;
using KelSDK::FileIO::SettingsLine;
using KelSDK::FileIO::TrimSettingsBlanks;

namespace {

// One line of the file as read (or as set), with its parse.
struct Line {
    std::wstring text; // without its line end
    std::wstring end;  // "\r\n", "\n", "\r", or "" for a last line without one
    SettingsLine parsed;

    Line(std::wstring lineText, std::wstring lineEnd)
        : text(std::move(lineText)), end(std::move(lineEnd)),
          parsed(SettingsLine::Parse(text.data(), text.size())) {}

    bool IsEntry() const { return parsed.kind == SettingsLine::Entry; }
    std::wstring_view Name() const {
        return std::wstring_view(text).substr(parsed.nameBegin, parsed.nameEnd - parsed.nameBegin);
    }
    std::wstring_view Value() const {
        return std::wstring_view(text).substr(parsed.valueBegin,
                                              parsed.valueEnd - parsed.valueBegin);
    }
};

// The lines from one header to the next; the first section of a file is the part before the
// first header (section "", no header line).
struct Section {
    std::vector<Line> lines; // lines[0] is the header when there is one
    bool header = false;
    std::unordered_map<std::wstring, size_t> keys; // folded name -> its first entry line

    std::wstring_view Name() const { return header ? lines[0].Name() : std::wstring_view(); }

    void IndexKeys() {
        keys.clear();
        for (size_t i = header ? 1 : 0; i < lines.size(); ++i) {
            if (lines[i].IsEntry())
                keys.emplace(miscstr::ToLower(lines[i].Name()), i);
        }
    }

    const Line* Find(const std::wstring& key) const {
        const auto found = keys.find(miscstr::ToLower(key));
        return found == keys.end() ? nullptr : &lines[found->second];
    }
};

bool HasLineBreak(const std::wstring& text) {
    return text.find_first_of(L"\r\n") != std::wstring::npos;
}

bool IsQuote(wchar_t c) {
    return c == L'"' || c == L'\'';
}

// Whether the system's reader would remove a pair of quotes around `value`.
bool IsQuoted(std::wstring_view value) {
    return value.size() >= 2 && IsQuote(value.front()) && value.back() == value.front();
}

// `value` as it must stand in the file to read back unchanged: blanks at an end or matching
// quotes around it would be dropped, so such a value gets quotes of its own.
std::wstring StoredValue(const std::wstring& value) {
    const bool blankEnd =
        !value.empty() && (IsSettingsBlank(value.front()) || IsSettingsBlank(value.back()));
    return blankEnd || IsQuoted(value) ? L"\"" + value + L"\"" : value;
}

// The digits of `text` from `i` in `base`, accumulated modulo 2^32 as the system does.
bool ReadDigits(std::wstring_view text, size_t i, unsigned base, unsigned long& result) {
    bool any = false;
    for (; i < text.size(); ++i) {
        const wchar_t c = text[i];
        unsigned digit = base;
        if (c >= L'0' && c <= L'9')
            digit = static_cast<unsigned>(c - L'0');
        else if (c >= L'a' && c <= L'f')
            digit = static_cast<unsigned>(c - L'a' + 10);
        else if (c >= L'A' && c <= L'F')
            digit = static_cast<unsigned>(c - L'A' + 10);
        if (digit >= base)
            break;
        result = (result * base + digit) & 0xFFFFFFFFul;
        any = true;
    }
    return any;
}

// The integer at the start of `text` as GetPrivateProfileIntW reads it; false without digits.
bool ReadProfileInt(std::wstring_view text, int& value) {
    size_t i = 0;
    while (i < text.size() && text[i] <= L' ')
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        negative = text[i++] == L'-';
    unsigned base = 10;
    if (i + 1 < text.size() && text[i] == L'0') {
        const wchar_t prefix = text[i + 1];
        base = prefix == L'x' ? 16 : prefix == L'o' ? 8 : prefix == L'b' ? 2 : 10;
    }
    unsigned long result = 0;
    if (base != 10) {
        // "0x" without hexadecimal digits still read its '0'.
        ReadDigits(text, i + 2, base, result);
    } else if (!ReadDigits(text, i, base, result)) {
        return false;
    }
    if (negative)
        result = (0x100000000ul - result) & 0xFFFFFFFFul;
    value = static_cast<int>(static_cast<unsigned>(result));
    return true;
}

} // namespace

struct MIniFile::Model {
    std::wstring path;
    Encoding encoding = Encoding::Ansi;
    bool modified = false;
    std::vector<Section> sections{Section()};       // sections[0] is the part before any header
    std::unordered_map<std::wstring, size_t> index; // folded name -> first section of it

    void IndexSections() {
        index.clear();
        for (size_t i = 0; i < sections.size(); ++i)
            index.emplace(miscstr::ToLower(sections[i].Name()), i);
    }

    const Section* Find(const std::wstring& section) const {
        const auto found = index.find(miscstr::ToLower(TrimSettingsBlanks(section)));
        return found == index.end() ? nullptr : &sections[found->second];
    }
    Section* Find(const std::wstring& section) {
        return const_cast<Section*>(std::as_const(*this).Find(section));
    }

    const Line* FindKey(const std::wstring& section, const std::wstring& key) const {
        const Section* found = Find(section);
        return found ? found->Find(TrimSettingsBlanks(key)) : nullptr;
    }

    // The line end new lines get: the file's first one, or the system's "\r\n".
    std::wstring NewLineEnd() const {
        for (const Section& section : sections) {
            for (const Line& line : section.lines) {
                if (!line.end.empty())
                    return line.end;
            }
        }
        return L"\r\n";
    }

    // Gives the file's last line a line end, before a line is added behind it.
    void EndLastLine(const std::wstring& end) {
        for (auto section = sections.rbegin(); section != sections.rend(); ++section) {
            if (!section->lines.empty()) {
                if (section->lines.back().end.empty())
                    section->lines.back().end = end;
                return;
            }
        }
    }

    void Parse(const std::wstring& text) {
        sections.assign(1, Section());
        for (size_t start = 0, next = 0; start < text.size(); start = next) {
            const size_t end = FindSettingsLineEnd(text, start, next);
            Line line(text.substr(start, end - start), text.substr(end, next - end));
            if (line.parsed.kind == SettingsLine::Section) {
                sections.emplace_back();
                sections.back().header = true;
            }
            sections.back().lines.push_back(std::move(line));
        }
        for (Section& section : sections)
            section.IndexKeys();
        IndexSections();
        modified = false;
    }

    std::wstring Text() const {
        std::wstring text;
        for (const Section& section : sections) {
            for (const Line& line : section.lines)
                text += line.text + line.end;
        }
        return text;
    }

    // The encoding Save writes: the one read, unless ANSI text would lose characters, or UTF-8
    // text starting with U+FEFF would read back as a signature and lose it.
    Encoding SavedEncoding(const std::wstring& text) const {
        if (encoding == Encoding::Ansi &&
            StdBase::ConvertAnsiToUnicode(StdBase::ConvertUnicodeToAnsi(text)) != text)
            return Encoding::Utf16Le;
        if (encoding == Encoding::Utf8 && !text.empty() && text[0] == L'\uFEFF')
            return Encoding::Utf8Signature;
        return encoding;
    }
};

MIniFile::MIniFile() : m_model(std::make_unique<Model>()) {}

MIniFile::MIniFile(const std::wstring& path) : MIniFile() {
    Load(path);
}

MIniFile::~MIniFile() = default;

MIniFile::MIniFile(const MIniFile& other) : m_model(std::make_unique<Model>(*other.m_model)) {}

MIniFile& MIniFile::operator=(const MIniFile& other) {
    if (this != &other)
        *m_model = *other.m_model;
    return *this;
}

// A moved-from file is left empty, not without a model.
MIniFile::MIniFile(MIniFile&& other) noexcept : MIniFile() {
    std::swap(m_model, other.m_model);
}

MIniFile& MIniFile::operator=(MIniFile&& other) noexcept {
    std::swap(m_model, other.m_model);
    return *this;
}

bool MIniFile::Load(const std::wstring& path) {
    m_model->path = path;
    m_model->encoding = Encoding::Ansi;
    m_model->Parse(std::wstring());
    std::vector<unsigned char> bytes;
    if (!MFile::READ_ALL(path.c_str(), bytes)) {
        KelBase::Log(KelSDK::Common::Logging::LogSeverity::Warning, L"MIniFile", L"Load",
                     L"Could not read the file '" + path + L"'");
        return false;
    }
    Parse(bytes.data(), bytes.size());
    return true;
}

bool MIniFile::Save() {
    const std::wstring& path = m_model->path;
    if (path.empty()) {
        KelBase::LogError(L"MIniFile", L"Save", L"No file name");
        return false;
    }
    const std::wstring text = m_model->Text();
    const Encoding encoding = m_model->SavedEncoding(text);
    const std::string bytes = KelSDK::FileIO::EncodeSettingsText(text, encoding);
    // The new content goes into a file of its own beside the old one, which it replaces only
    // once it is complete and on the disk.
    MFile out;
    std::wstring temporary;
    for (int n = 1; n <= 1000 && !out.IS_OPEN(); ++n) {
        temporary = path + L".~ini" + std::to_wstring(n);
        out.CREATE_EXCLUSIVE(temporary.c_str());
    }
    if (!out.IS_OPEN()) {
        KelBase::LogError(L"MIniFile", L"Save",
                          L"Could not create a temporary file beside '" + path + L"'");
        return false;
    }
    const bool written = out.WRITE(bytes.data(), bytes.size()) == bytes.size() && out.COMMIT();
    if (!out.CLOSE() || !written || !MFile::RENAME(temporary.c_str(), path.c_str(), true)) {
        MFile::REMOVE(temporary.c_str());
        KelBase::LogError(L"MIniFile", L"Save", L"Could not write the file '" + path + L"'");
        return false;
    }
    m_model->encoding = encoding;
    m_model->modified = false;
    return true;
}

bool MIniFile::SaveAs(const std::wstring& path) {
    m_model->path = path;
    return Save();
}

const std::wstring& MIniFile::GetPath() const {
    return m_model->path;
}

void MIniFile::Parse(const unsigned char* data, size_t size) {
    m_model->Parse(KelSDK::FileIO::DecodeSettingsText(data, size, &m_model->encoding));
}

std::string MIniFile::GetBytes() const {
    const std::wstring text = m_model->Text();
    return KelSDK::FileIO::EncodeSettingsText(text, m_model->SavedEncoding(text));
}

std::wstring MIniFile::GetText() const {
    return m_model->Text();
}

MIniFile::Encoding MIniFile::GetEncoding() const {
    return m_model->encoding;
}

void MIniFile::SetEncoding(Encoding encoding) {
    m_model->modified = m_model->modified || encoding != m_model->encoding;
    m_model->encoding = encoding;
}

bool MIniFile::IsModified() const {
    return m_model->modified;
}

bool MIniFile::HasSection(const std::wstring& section) const {
    const Section* found = m_model->Find(section);
    return found && (found->header || !found->keys.empty());
}

bool MIniFile::HasKey(const std::wstring& section, const std::wstring& key) const {
    return m_model->FindKey(section, key) != nullptr;
}

bool MIniFile::GetString(const std::wstring& section, const std::wstring& key,
                         std::wstring& value) const {
    const Line* line = m_model->FindKey(section, key);
    if (!line)
        return false;
    const std::wstring_view stored = line->Value();
    value = IsQuoted(stored) ? stored.substr(1, stored.size() - 2) : stored;
    return true;
}

std::wstring MIniFile::GetString(const std::wstring& section, const std::wstring& key,
                                 const std::wstring& defaultValue) const {
    std::wstring value;
    return GetString(section, key, value) ? value : defaultValue;
}

int MIniFile::GetInt(const std::wstring& section, const std::wstring& key, int defaultValue) const {
    std::wstring text;
    int value = 0;
    return GetString(section, key, text) && ReadProfileInt(text, value) ? value : defaultValue;
}

double MIniFile::GetDouble(const std::wstring& section, const std::wstring& key,
                           double defaultValue) const {
    std::wstring text;
    if (!GetString(section, key, text))
        return defaultValue;
    text = TrimSettingsBlanks(text);
    if (!text.empty() && text[0] == L'+')
        text.erase(0, 1);
    std::string narrow;
    for (const wchar_t c : text) {
        if (c <= 0 || c >= 0x80)
            return defaultValue;
        narrow += static_cast<char>(c);
    }
    double value = 0;
    const char* end = narrow.data() + narrow.size();
    const std::from_chars_result read = std::from_chars(narrow.data(), end, value);
    return read.ec == std::errc() && read.ptr == end && !narrow.empty() ? value : defaultValue;
}

bool MIniFile::GetBool(const std::wstring& section, const std::wstring& key,
                       bool defaultValue) const {
    std::wstring text;
    if (!GetString(section, key, text))
        return defaultValue;
    text = miscstr::ToLower(TrimSettingsBlanks(text));
    if (text == L"true" || text == L"yes" || text == L"on")
        return true;
    if (text == L"false" || text == L"no" || text == L"off")
        return false;
    int value = 0;
    return ReadProfileInt(text, value) ? value != 0 : defaultValue;
}

bool MIniFile::SetString(const std::wstring& section, const std::wstring& key,
                         const std::wstring& value) {
    const std::wstring sectionName = TrimSettingsBlanks(section), keyName = TrimSettingsBlanks(key);
    if (HasLineBreak(sectionName) || sectionName.find(L']') != std::wstring::npos ||
        HasLineBreak(keyName) || keyName.empty() || keyName.find(L'=') != std::wstring::npos ||
        keyName[0] == L';' || keyName[0] == L'[' || HasLineBreak(value)) {
        KelBase::LogError(L"MIniFile", L"SetString",
                          L"Cannot store [" + section + L"] " + key + L" in one line");
        return false;
    }
    Model& model = *m_model;
    model.modified = true;
    const std::wstring stored = StoredValue(value);
    Section* target = model.Find(sectionName);
    if (target) {
        const auto existing = target->keys.find(miscstr::ToLower(keyName));
        if (existing != target->keys.end()) {
            Line& line = target->lines[existing->second];
            line = Line(line.text.substr(0, line.parsed.valueBegin) + stored +
                            line.text.substr(line.parsed.valueEnd),
                        line.end);
            return true;
        }
    }
    const std::wstring end = model.NewLineEnd();
    model.EndLastLine(end);
    if (!target) {
        model.sections.emplace_back();
        target = &model.sections.back();
        target->header = true;
        target->lines.emplace_back(L"[" + sectionName + L"]", end);
        model.IndexSections();
    }
    // After the section's last key (or stray text), before the comments and blank lines that
    // usually introduce the next section.
    size_t at = target->header ? 1 : 0;
    for (size_t i = at; i < target->lines.size(); ++i) {
        const SettingsLine::Kind kind = target->lines[i].parsed.kind;
        if (kind == SettingsLine::Entry || kind == SettingsLine::Other)
            at = i + 1;
    }
    target->lines.emplace(target->lines.begin() + static_cast<std::ptrdiff_t>(at),
                          keyName + L"=" + stored, end);
    target->IndexKeys();
    return true;
}

bool MIniFile::SetInt(const std::wstring& section, const std::wstring& key, int value) {
    return SetString(section, key, std::to_wstring(value));
}

bool MIniFile::SetDouble(const std::wstring& section, const std::wstring& key, double value) {
    char text[64];
    const std::to_chars_result written = std::to_chars(text, text + sizeof text, value);
    return SetString(section, key, std::wstring(text, written.ptr));
}

bool MIniFile::SetBool(const std::wstring& section, const std::wstring& key, bool value) {
    return SetString(section, key, value ? L"1" : L"0");
}

std::vector<std::wstring> MIniFile::GetSections() const {
    std::vector<std::wstring> names;
    const std::vector<Section>& sections = m_model->sections;
    for (size_t i = 1; i < sections.size(); ++i) {
        if (m_model->index.at(miscstr::ToLower(sections[i].Name())) == i)
            names.emplace_back(sections[i].Name());
    }
    return names;
}

std::vector<std::wstring> MIniFile::GetKeys(const std::wstring& section) const {
    std::vector<std::wstring> names;
    const Section* found = m_model->Find(section);
    if (!found)
        return names;
    for (size_t i = found->header ? 1 : 0; i < found->lines.size(); ++i) {
        const Line& line = found->lines[i];
        // Listed where the key's first line stands.
        if (line.IsEntry() && !line.Name().empty() &&
            found->keys.at(miscstr::ToLower(line.Name())) == i)
            names.emplace_back(line.Name());
    }
    return names;
}

bool MIniFile::DeleteKey(const std::wstring& section, const std::wstring& key) {
    Section* found = m_model->Find(section);
    const std::wstring folded = miscstr::ToLower(TrimSettingsBlanks(key));
    if (!found || !found->keys.count(folded))
        return false;
    std::vector<Line>& lines = found->lines;
    for (size_t i = lines.size(); i-- > (found->header ? 1 : 0);) {
        if (lines[i].IsEntry() && miscstr::ToLower(lines[i].Name()) == folded)
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
    }
    found->IndexKeys();
    m_model->modified = true;
    return true;
}

bool MIniFile::DeleteSection(const std::wstring& section) {
    if (!HasSection(section))
        return false;
    const std::wstring folded = miscstr::ToLower(TrimSettingsBlanks(section));
    std::vector<Section>& sections = m_model->sections;
    if (folded.empty())
        sections[0] = Section();
    for (size_t i = sections.size(); i-- > 1;) {
        if (miscstr::ToLower(sections[i].Name()) == folded)
            sections.erase(sections.begin() + static_cast<std::ptrdiff_t>(i));
    }
    m_model->IndexSections();
    m_model->modified = true;
    return true;
}
