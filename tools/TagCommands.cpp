// tags, convert: the tag tree of a tagged file, and its conversion to another format version.
#include <memory>
#include <optional>

#include "Keltool.h"
#include "Logging.h"
#include "MFile.h"

namespace Keltool {
namespace {

using KelSDK::Common::Logging::GetLogger;
using KelSDK::Common::Logging::MemorySink;

const long long LargeFile = 16ll << 20;

std::wstring Version(const MTag& tag) {
    return std::to_wstring(tag.m_vmajor) + L"." + std::to_wstring(tag.m_vminor);
}

// Printable ASCII as it is, any other byte as \xNN, so that a damaged name still shows.
std::wstring Name(const MTag& tag) {
    std::wstring name;
    for (const char* c = tag.m_name; *c; ++c)
        name += *c >= 0x20 && *c < 0x7F ? std::wstring(1, static_cast<wchar_t>(*c))
                                        : L"\\x" + Hex(static_cast<unsigned char>(*c), 2);
    return name.empty() ? L"\"\"" : name;
}

std::wstring Line(const MTag& tag, size_t depth) {
    return std::wstring(2 * depth, L' ') + Name(tag) + L" " + Version(tag) + L"  offset " +
           std::to_wstring(tag.m_header_pos) + L"  length " + std::to_wstring(tag.m_length) + L"\n";
}

// Opens a tagged file and reads its head tag; on failure reports it and returns the exit code.
std::optional<int> OpenTagged(MFile& file, const std::wstring& path, MTag& head) {
    if (!file.OPEN_READ(path.c_str()))
        return FailWithCode(L"cannot read \"" + path + L"\"", GetLastError());
    if (!head.READ(file) || !head.HasName("KELCOM"))
        return Fail(L"\"" + path + L"\" is no tagged file: it does not start with a KELCOM tag");
    return std::nullopt;
}

int Tags(const Arguments& arguments) {
    const Parsed parsed = SplitOptions(arguments);
    if (!parsed.options.empty())
        return UsageError(L"tags", L"unknown option " + parsed.options[0] + L" of tags");
    if (parsed.operands.size() != 1)
        return UsageError(L"tags", L"tags needs one file");
    const std::wstring& path = parsed.operands[0];
    MFile file;
    MTag head;
    if (const std::optional<int> failed = OpenTagged(file, path, head))
        return *failed;
    MTagList list;
    list.BUILD_TAG_TREE(file, 0, -1);
    std::wstring text;
    // The ends of the tags that hold the current one: its depth.
    std::vector<long long> open;
    long long covered = head.m_data_pos + head.m_length;
    for (const MTag& tag : list.GetTags()) {
        while (!open.empty() && tag.m_header_pos >= open.back())
            open.pop_back();
        text += Line(tag, open.size());
        if (open.empty())
            covered = tag.m_data_pos + tag.m_length;
        open.push_back(tag.m_data_pos + tag.m_length);
    }
    Print(Line(list.GET_HEAD_TAG(), 0) + text);
    file.SEEK_FROM_END();
    if (covered != file.TELL())
        return Fail(L"\"" + path + L"\": the bytes from offset " + std::to_wstring(covered) +
                    L" on are no complete tag");
    return Success;
}

// A version number of 0 to 255.
std::optional<unsigned char> Number(const std::wstring& text) {
    if (text.empty() || text.size() > 3 || text.find_first_not_of(L"0123456789") != text.npos)
        return std::nullopt;
    const unsigned long value = std::stoul(text);
    if (value > 255)
        return std::nullopt;
    return static_cast<unsigned char>(value);
}

int Convert(const Arguments& arguments) {
    const Parsed parsed = SplitOptions(arguments);
    if (!parsed.options.empty())
        return UsageError(L"convert", L"unknown option " + parsed.options[0] + L" of convert");
    if (parsed.operands.size() != 1 && parsed.operands.size() != 3)
        return UsageError(L"convert", L"convert needs a file, optionally with MAJOR and MINOR");
    const std::wstring& path = parsed.operands[0];
    unsigned char major = MTag::m_file_vmajor, minor = MTag::m_file_vminor;
    if (parsed.operands.size() == 3) {
        const std::optional<unsigned char> a = Number(parsed.operands[1]),
                                           b = Number(parsed.operands[2]);
        if (!a || !b)
            return UsageError(L"convert", L"MAJOR and MINOR are numbers from 0 to 255");
        major = *a;
        minor = *b;
    }
    if (major == 0 && minor == 0) {
        major = MTag::m_file_vmajor;
        minor = MTag::m_file_vminor;
    }
    MTag head;
    bool large = false;
    {
        MFile file;
        if (const std::optional<int> failed = OpenTagged(file, path, head))
            return *failed;
        large = file.SEEK_FROM_END() && file.TELL() >= LargeFile;
    }
    // What the library logs says why a conversion failed.
    auto log = std::make_shared<MemorySink>();
    GetLogger("lib.kelbase").AddSink(log);
    bool converted = false;
    {
        std::optional<TerminalProgressBar> bar;
        if (large && ErrorIsTerminal())
            bar.emplace();
        MFileName name(path.c_str());
        converted = MTagList::CONVERT(name, major, minor);
    }
    GetLogger("lib.kelbase").RemoveSink(log);
    if (!converted) {
        std::wstring why;
        for (const std::wstring& text : log->GetTexts())
            why += L"\n  " + text;
        return Fail(L"cannot convert \"" + path + L"\"" + why);
    }
    if (head.m_vmajor == major)
        Print(path + L": already version " + Version(head) + L", left as it is\n");
    else
        Print(path + L": converted from version " + Version(head) + L" to " +
              Version(MTag("", major, minor)) + L"\n");
    return Success;
}

} // namespace

KELTOOL_COMMAND(tags, L"tags", L"tags FILE",
                L"The tags of a tagged file as a tree: one line per tag with its name, format\n"
                L"version, offset and data length, children indented below their parent. The\n"
                L"data of DATA and MUID tags is not looked into. A file whose bytes do not end\n"
                L"with a complete tag is reported, and keltool exits with 1.\n",
                Tags);
KELTOOL_COMMAND(convert, L"convert", L"convert FILE [MAJOR MINOR]",
                L"Rewrites an older tagged file to the format version MAJOR.MINOR (by default\n"
                L"the current version, 2.1; 0 0 means the same), with the data of every tag\n"
                L"unchanged. A file of the same major version is left as it is; a newer one is\n"
                L"refused. The original is kept until the new file is complete: when anything\n"
                L"fails it is back under its name, unchanged. Files of 16 MiB and more show a\n"
                L"progress bar on a terminal.\n",
                Convert);

} // namespace Keltool
