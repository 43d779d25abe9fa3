// The version block: a tree of nodes, each a length, a value length, a type (1: the value is
// text, counted in characters; 0: bytes), a zero-terminated key in UTF-16, then the value and
// the children, each aligned to four bytes from the start of its node.
#include "MVersionInfo.h"

#include <algorithm>
#include <string>

#include "StdBase.h"

namespace {

const size_t HeaderSize = 6;     // length, value length, type
const size_t FixedInfoSize = 52; // thirteen double words

size_t Align4(size_t offset) {
    return (offset + 3) & ~static_cast<size_t>(3);
}

struct Node {
    size_t begin = 0, end = 0; // end: begin + length
    bool text = false;
    std::wstring key;
    size_t value = 0, valueEnd = 0; // the value's bytes, cut at the node's end
    size_t children = 0;
};

// Reads nodes of one block, never past its end.
class BlockReader {
public:
    BlockReader(const void* data, size_t size)
        : m_data(static_cast<const unsigned char*>(data)), m_size(size) {}

    WORD Word(size_t at) const { return static_cast<WORD>(m_data[at] | (m_data[at + 1] << 8)); }
    DWORD Dword(size_t at) const {
        return static_cast<DWORD>(Word(at)) | static_cast<DWORD>(Word(at + 2)) << 16;
    }

    // The node at `at`, which must end by `limit`; false when it does not fit or its key
    // has no end.
    bool Read(size_t at, size_t limit, Node& node) const {
        limit = std::min(limit, m_size);
        if (at > limit || limit - at < HeaderSize)
            return false;
        const size_t length = Word(at);
        if (length < HeaderSize || length > limit - at)
            return false;
        node.begin = at;
        node.end = at + length;
        node.text = Word(at + 4) != 0;
        size_t key = at + HeaderSize, keyEnd = key;
        while (keyEnd + 2 <= node.end && Word(keyEnd) != 0)
            keyEnd += 2;
        if (keyEnd + 2 > node.end)
            return false;
        node.key = Text(key, keyEnd);
        const size_t valueBytes = static_cast<size_t>(Word(at + 2)) * (node.text ? 2 : 1);
        node.value = std::min(at + Align4(keyEnd + 2 - at), node.end);
        node.valueEnd = std::min(node.value + valueBytes, node.end);
        node.children = std::min(at + Align4(node.value - at + valueBytes), node.end);
        return true;
    }

    // Calls `visit` for each whole child of `parent`, up to the first that is not.
    template <class Visit> void Children(const Node& parent, Visit visit) const {
        Node child;
        for (size_t at = parent.children; Read(at, parent.end, child);
             at = child.begin + Align4(child.end - child.begin))
            visit(child);
    }

    // UTF-16 code units from `begin` up to `end` or the first zero.
    std::wstring Text(size_t begin, size_t end) const {
        size_t stop = begin;
        while (stop + 2 <= end && Word(stop) != 0)
            stop += 2;
        if constexpr (sizeof(wchar_t) == 2) {
            std::wstring text((stop - begin) / 2, L'\0');
            for (size_t i = 0; i < text.size(); ++i)
                text[i] = static_cast<wchar_t>(Word(begin + 2 * i));
            return text;
        } else
            return StdBase::ConvertUtf16LeToUnicode(m_data + begin, stop - begin);
    }

private:
    const unsigned char* m_data;
    size_t m_size;
};

bool SameKey(const std::wstring& key, const wchar_t* name) {
    return CString(key.c_str()).CompareNoCase(name) == 0;
}

// "040904B0": language and code page as eight hexadecimal digits.
bool ParseTableName(const std::wstring& name, MVersionInfo::Translation& table) {
    if (name.size() != 8)
        return false;
    DWORD value = 0;
    for (wchar_t digit : name) {
        int nibble;
        if (digit >= L'0' && digit <= L'9')
            nibble = digit - L'0';
        else if (digit >= L'a' && digit <= L'f')
            nibble = digit - L'a' + 10;
        else if (digit >= L'A' && digit <= L'F')
            nibble = digit - L'A' + 10;
        else
            return false;
        value = value << 4 | static_cast<DWORD>(nibble);
    }
    table.wLanguage = static_cast<WORD>(value >> 16);
    table.wCodePage = static_cast<WORD>(value & 0xFFFF);
    return true;
}

ULONGLONG Join(DWORD high, DWORD low) {
    return static_cast<ULONGLONG>(high) << 32 | low;
}

} // namespace

MVersionInfo::MVersionInfo() : m_lastError(0), m_open(false), m_fixed() {}

MVersionInfo::~MVersionInfo() = default;

void MVersionInfo::Close() {
    m_open = false;
    m_fixed = FixedFileInfo();
    m_translations.clear();
    m_tables.clear();
}

bool MVersionInfo::_Read(const void* data, size_t size) {
    Close();
    const BlockReader reader(data, size);
    Node root;
    if (!data || !reader.Read(0, size, root) || !SameKey(root.key, L"VS_VERSION_INFO")) {
        m_lastError = InvalidData;
        return false;
    }
    if (root.valueEnd - root.value >= FixedInfoSize) {
        DWORD* fields = &m_fixed.dwSignature;
        for (size_t i = 0; i < FixedInfoSize / 4; ++i)
            fields[i] = reader.Dword(root.value + 4 * i);
    }
    reader.Children(root, [&](const Node& info) {
        if (SameKey(info.key, L"StringFileInfo")) {
            reader.Children(info, [&](const Node& tableNode) {
                Table table;
                if (!ParseTableName(tableNode.key, table.translation))
                    return;
                reader.Children(tableNode, [&](const Node& value) {
                    const std::wstring text = reader.Text(value.value, value.valueEnd);
                    table.values.push_back({CString(value.key.c_str()),
                                            CString(text.c_str(), static_cast<int>(text.size()))});
                });
                m_tables.push_back(std::move(table));
            });
        } else if (SameKey(info.key, L"VarFileInfo")) {
            reader.Children(info, [&](const Node& var) {
                if (!SameKey(var.key, L"Translation"))
                    return;
                for (size_t at = var.value; at + 4 <= var.valueEnd; at += 4)
                    m_translations.push_back({reader.Word(at), reader.Word(at + 2)});
            });
        }
    });
    m_open = true;
    m_lastError = 0;
    return true;
}

ULONGLONG MVersionInfo::GetFileVersion() const {
    return Join(m_fixed.dwFileVersionMS, m_fixed.dwFileVersionLS);
}

ULONGLONG MVersionInfo::GetProductVersion() const {
    return Join(m_fixed.dwProductVersionMS, m_fixed.dwProductVersionLS);
}

CString MVersionInfo::GetFileVersionText() const {
    return FormatVersion(GetFileVersion());
}

CString MVersionInfo::GetProductVersionText() const {
    return FormatVersion(GetProductVersion());
}

CString MVersionInfo::FormatVersion(ULONGLONG version) {
    CString text;
    text.Format(L"%u.%u.%u.%u", static_cast<unsigned>(version >> 48),
                static_cast<unsigned>(version >> 32 & 0xFFFF),
                static_cast<unsigned>(version >> 16 & 0xFFFF),
                static_cast<unsigned>(version & 0xFFFF));
    return text;
}

std::vector<MVersionInfo::Translation> MVersionInfo::GetStringTables() const {
    std::vector<Translation> tables;
    for (const Table& table : m_tables)
        tables.push_back(table.translation);
    return tables;
}

CString MVersionInfo::GetTableName(const Translation& table) {
    CString name;
    name.Format(L"%04X%04X", table.wLanguage, table.wCodePage);
    return name;
}

const MVersionInfo::Table* MVersionInfo::FindTable(const Translation& translation) const {
    for (const Table& table : m_tables)
        if (table.translation == translation)
            return &table;
    return nullptr;
}

std::vector<CString> MVersionInfo::GetStringNames(const Translation& translation) const {
    std::vector<CString> names;
    if (const Table* table = FindTable(translation))
        for (const Value& value : table->values)
            names.push_back(value.name);
    return names;
}

bool MVersionInfo::GetString(const wchar_t* name, CString& value,
                             const Translation& translation) const {
    const Table* table = FindTable(translation);
    if (!table || !name)
        return false;
    for (const Value& entry : table->values)
        if (entry.name.CompareNoCase(name) == 0) {
            value = entry.text;
            return true;
        }
    return false;
}

bool MVersionInfo::GetString(const wchar_t* name, CString& value) const {
    for (const Translation& translation : m_translations)
        if (GetString(name, value, translation))
            return true;
    for (const Table& table : m_tables)
        if (GetString(name, value, table.translation))
            return true;
    return false;
}

CString MVersionInfo::GetString(const wchar_t* name) const {
    CString value;
    GetString(name, value);
    return value;
}
