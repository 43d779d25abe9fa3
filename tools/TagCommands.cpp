// tags, convert, tag: the tag tree of a tagged file, its conversion to another format version,
// and the replacement, removal and insertion of its tags.
#include <memory>
#include <optional>

#include "Keltool.h"
#include "Logging.h"
#include "MFile.h"
#include "StdBase.h"

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

// What the library logs while this lives, which says why an operation failed.
class LibraryLog {
public:
    LibraryLog() { GetLogger("lib.kelbase").AddSink(m_sink); }
    ~LibraryLog() { GetLogger("lib.kelbase").RemoveSink(m_sink); }
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;

    // The messages, each on a line of its own, indented.
    std::wstring Why() const {
        std::wstring why;
        for (const std::wstring& text : m_sink->GetTexts())
            why += L"\n  " + text;
        return why;
    }

private:
    std::shared_ptr<MemorySink> m_sink = std::make_shared<MemorySink>();
};

// Opens a tagged file and reads its head tag; on failure reports it and returns the exit code.
std::optional<int> OpenTagged(MFile& file, const std::wstring& path, MTag& head) {
    if (!file.OPEN_READ(path.c_str()))
        return FailWithCode(L"cannot read \"" + path + L"\"", GetLastError());
    if (!head.READ(file) || !head.HasName("KELCOM"))
        return Fail(L"\"" + path + L"\" is no tagged file: it does not start with a KELCOM tag");
    return std::nullopt;
}

// The head tag of a tagged file, and whether the file is large enough for a progress bar; on
// failure reports it and returns the exit code.
std::optional<int> Inspect(const std::wstring& path, MTag& head, bool& large) {
    MFile file;
    if (const std::optional<int> failed = OpenTagged(file, path, head))
        return failed;
    large = file.SEEK_FROM_END() && file.TELL() >= LargeFile;
    return std::nullopt;
}

int Tags(const Arguments& operands) {
    if (operands.size() != 1)
        return UsageError(L"tags", L"tags needs one file");
    const std::wstring& path = operands[0];
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

int Convert(const Arguments& operands) {
    if (operands.size() != 1 && operands.size() != 3)
        return UsageError(L"convert", L"convert needs a file, optionally with MAJOR and MINOR");
    const std::wstring& path = operands[0];
    unsigned char major = MTag::m_file_vmajor, minor = MTag::m_file_vminor;
    if (operands.size() == 3) {
        const std::optional<unsigned char> a = Number(operands[1]), b = Number(operands[2]);
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
    if (const std::optional<int> failed = Inspect(path, head, large))
        return *failed;
    LibraryLog log;
    bool converted = false;
    {
        ProgressDisplay display(large && ErrorIsTerminal(), L"convert");
        MFileName name(path.c_str());
        converted = MTagList::CONVERT(name, major, minor);
        if (!converted && ProgressDisplay::Aborted())
            return Fail(L"aborted by the user while converting \"" + path +
                        L"\"; it is left as it was");
    }
    if (!converted)
        return Fail(L"cannot convert \"" + path + L"\"" + log.Why());
    if (head.m_vmajor == major)
        Print(path + L": already version " + Version(head) + L", left as it is\n");
    else
        Print(path + L": converted from version " + Version(head) + L" to " +
              Version(MTag("", major, minor)) + L"\n");
    return Success;
}

// A tag named on the command line: NAME, NAME:MAJOR (only that major version), NAME#N (the
// N-th of that name in file order, from 1), or NAME:MAJOR#N.
struct TagChoice {
    MTag tag;
    unsigned long versionMode = 0; // any version, or equal majors
    unsigned long occurrence = 0;
};

std::optional<TagChoice> ParseChoice(const std::wstring& text) {
    TagChoice choice;
    std::wstring name = text;
    const size_t hash = name.find(L'#');
    if (hash != name.npos) {
        const std::optional<unsigned char> n = Number(name.substr(hash + 1));
        if (!n || *n == 0)
            return std::nullopt;
        choice.occurrence = *n - 1u;
        name.erase(hash);
    }
    const size_t colon = name.find(L':');
    unsigned char major = MTag::m_file_vmajor;
    if (colon != name.npos) {
        const std::optional<unsigned char> m = Number(name.substr(colon + 1));
        if (!m)
            return std::nullopt;
        major = *m;
        choice.versionMode = 2;
        name.erase(colon);
    }
    if (name.empty() || name.size() > MTag::NAME_SIZE ||
        name.find_first_not_of(
            L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") != name.npos)
        return std::nullopt;
    choice.tag.INIT(StdBase::ConvertUnicodeToUtf8(name).c_str(), major, 0);
    return choice;
}

int Tag(const Arguments& words) {
    const std::wstring verb = words.empty() ? L"" : words[0];
    MFileTagReplacer::Place place = MFileTagReplacer::After;
    bool placed = false;
    const std::pair<const wchar_t*, MFileTagReplacer::Place> places[] = {
        {L"before", MFileTagReplacer::Before},
        {L"after", MFileTagReplacer::After},
        {L"inside", MFileTagReplacer::Inside}};
    for (const auto& [word, value] : places)
        if (words.size() > 3 && words[3] == word) {
            place = value;
            placed = true;
        }
    if (!((verb == L"replace" && words.size() == 4) || (verb == L"remove" && words.size() == 3) ||
          (verb == L"insert" && words.size() == 6 && placed)))
        return UsageError(L"tag", L"use tag replace FILE TAG DATAFILE, tag remove FILE TAG or "
                                  L"tag insert FILE TAG before|after|inside NEWTAG DATAFILE");
    const std::wstring& path = words[1];
    const std::optional<TagChoice> choice = ParseChoice(words[2]);
    const std::optional<TagChoice> added = verb == L"insert" ? ParseChoice(words[4]) : choice;
    if (!choice || !added || (verb == L"insert" && words[4].find_first_of(L":#") != words[4].npos))
        return UsageError(L"tag", L"a tag is a name of up to six letters, digits or _, with "
                                  L":MAJOR and #N to choose (a new tag: the name alone)");
    const std::wstring& dataPath = words.back();
    if (verb != L"remove") {
        MFile data;
        if (!data.OPEN_READ(dataPath.c_str()))
            return FailWithCode(L"cannot read \"" + dataPath + L"\"", GetLastError());
    }
    MTag head;
    bool large = false;
    if (const std::optional<int> failed = Inspect(path, head, large))
        return *failed;

    LibraryLog log;
    MFileTagReplacer replacer;
    if (!replacer.Open(MFileName(path.c_str())))
        return FailWithCode(L"cannot read \"" + path + L"\"", GetLastError());
    const size_t index =
        replacer.GetFile().Find(choice->tag, choice->versionMode, choice->occurrence);
    if (index == MFileTagged::NONE)
        return Fail(L"\"" + path + L"\" has no tag " + words[2]);
    const MFileName data(dataPath.c_str());
    // A new tag takes the file's format version.
    const MTag tag(added->tag.m_name, head.m_vmajor, head.m_vminor);
    const bool queued = verb == L"replace"  ? replacer.Replace(index, data)
                        : verb == L"remove" ? replacer.Remove(index)
                                            : replacer.Insert(index, place, tag, data);
    if (!queued)
        return Fail(L"cannot " + verb + L" " + words[2] + L" of \"" + path + L"\"" + log.Why());
    {
        ProgressDisplay display(large && ErrorIsTerminal(), L"tag " + verb);
        if (!replacer.Apply()) {
            if (ProgressDisplay::Aborted())
                return Fail(L"aborted by the user while rewriting \"" + path +
                            L"\"; it is left as it was");
            return Fail(L"cannot rewrite \"" + path + L"\"" + log.Why());
        }
    }
    Print(path + L": " +
          (verb == L"replace"  ? L"replaced the data of " + words[2]
           : verb == L"remove" ? L"removed " + words[2]
                               : L"inserted " + words[4] + L" " + words[3] + L" " + words[2]) +
          L"\n");
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
KELTOOL_COMMAND(tag, L"tag",
                L"tag replace|remove|insert FILE TAG [before|after|inside NEWTAG] [DATAFILE]",
                L"  replace FILE TAG DATAFILE   the data of the tag becomes the content of\n"
                L"                              DATAFILE; its header keeps name and version.\n"
                L"  remove FILE TAG             removes the tag with its data.\n"
                L"  insert FILE TAG before|after|inside NEWTAG DATAFILE\n"
                L"                              a new tag with the content of DATAFILE, before\n"
                L"                              or after TAG, or inside it as its last child;\n"
                L"                              it takes the file's format version.\n"
                L"TAG is a name, chosen among all tags at any depth in file order: NAME is the\n"
                L"first of that name, NAME#N the N-th (from 1), NAME:MAJOR the first of that\n"
                L"major version (NAME:MAJOR#N combines both). Every other byte of the file stays\n"
                L"as it was, and the lengths of the tags around the change are written anew.\n"
                L"The original is kept until the new file is complete: when anything fails it\n"
                L"is back under its name, unchanged. Files of 16 MiB and more show a progress\n"
                L"bar on a terminal.\n",
                Tag);

} // namespace Keltool
