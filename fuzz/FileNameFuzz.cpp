// MFileName and the path grammar: paths written from known parts split into them and compose
// back; any text splits without harm; safe names are safe, repaired names
// hold no forbidden character, the wildcard filters agree with a plain dynamic-programming
// matcher and shortened paths keep to their length.
#include <cstdint>
#include <locale>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "MFileName.h"
#include "MFileUtility.h"

namespace {

const std::wstring kPathAlphabet = L"\\\\//::..?*\"<>|$ aZe\x00E9_~";

struct Parts {
    std::wstring drive, dir, file, ext;
    explicit Parts(const MFileName& name)
        : drive(name.GET_DRIVE_PART()), dir(name.GET_DIR_PART()), file(name.GET_FILE_PART()),
          ext(name.GET_EXT_PART()) {}
    bool operator==(const Parts& other) const {
        return drive == other.drive && dir == other.dir && file == other.file && ext == other.ext;
    }
};

// Any text splits without harm, and the name equals its copy. (Splitting what composing gave
// need not give the same parts: the classic rules drop a root name without a root directory,
// such as "\\?" in "\\?\a", and cut "./" from a directory, which a first round can leave.)
void CheckSplitAndCompose(const std::wstring& path, bool dirOnly) {
    const MFileName name(path.c_str(), dirOnly);
    const Parts first(name);
    const MFileName copy(name);
    FUZZ_CHECK(copy == name);
    FUZZ_CHECK(copy.COMPARE(name, MFileName::PART_DIR | MFileName::PART_EXT));

    std::wstring drive, dir, file, ext;
    FUZZ_CHECK(POSITION_PATH_PARTS(path, drive, dir, file, ext, dirOnly) == !path.empty());
    FUZZ_CHECK(drive == first.drive);
    FUZZ_CHECK(dir == first.dir);
    FUZZ_CHECK(file == first.file);
    FUZZ_CHECK(ext == first.ext);
}

// A path as users write them, made from known parts: a drive ("X:\", "\", "\\server\" or
// none), directories each ended by a slash or a backslash, a name and perhaps an extension.
// Splitting gives those parts back, composing gives the path back, except that composing puts
// a backslash between a directory ending in a slash and the name.
void CheckOrdinaryPath(FuzzedDataProvider& input) {
    const std::wstring letters = L"aZe\x00E9_~ $";
    const auto element = [&] {
        const std::wstring text = Fuzz::ConsumeText(input, letters, 6, true);
        return text.empty() ? std::wstring(L"n") : text;
    };
    const std::wstring separators[] = {L"\\", L"/"};
    const auto separator = [&] { return separators[input.ConsumeBool()]; };
    std::wstring drive;
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        break;
    case 1:
        drive = std::wstring(1, L"CdZ"[input.ConsumeIntegralInRange(0, 2)]) + L":" + separator();
        break;
    case 2:
        drive = separator();
        break;
    default:
        drive = L"\\\\" + element() + separator();
    }
    std::wstring dir;
    for (int k = input.ConsumeIntegralInRange(0, 3); k > 0; --k)
        dir += element() + separator();
    const std::wstring file = element();
    const std::wstring ext = input.ConsumeBool() ? L"." + element() : L"";
    const std::wstring path = drive + dir + file + ext;
    Fuzz::Context() = L"ordinary path " + path;

    const MFileName name(path.c_str());
    FUZZ_CHECK(name.GET_DRIVE_PART() == drive);
    FUZZ_CHECK(name.GET_DIR_PART() == dir);
    FUZZ_CHECK(name.GET_FILE_PART() == file);
    FUZZ_CHECK(name.GET_EXT_PART() == ext);
    const bool slashBeforeName = !dir.empty() && dir.back() == L'/';
    const std::wstring composed = name.GET();
    FUZZ_CHECK(composed == drive + dir + (slashBeforeName ? L"\\" : L"") + file + ext);
    const MFileName again(composed.c_str());
    FUZZ_CHECK(again.GET_DRIVE_PART() == drive);
    FUZZ_CHECK(again.GET_DIR_PART() == dir + (slashBeforeName ? L"\\" : L""));
    FUZZ_CHECK(again.GET_FILE_PART() == file);
    FUZZ_CHECK(again.GET_EXT_PART() == ext);
}

void CheckAppend(const std::wstring& path, const std::wstring& other) {
    MFileName base(path.c_str());
    const MFileName tail(other.c_str());
    const Parts before(base), added(tail);
    base.APPEND(tail);
    const Parts after(base);
    FUZZ_CHECK(after.drive == (before.drive.empty() ? added.drive : before.drive));
    const std::size_t start = added.dir.find_first_not_of(L"\\/");
    const std::wstring appended = start == std::wstring::npos ? L"" : added.dir.substr(start);
    FUZZ_CHECK(after.dir.size() >= before.dir.size() + appended.size());
    FUZZ_CHECK(after.dir.compare(0, before.dir.size(), before.dir) == 0);
    FUZZ_CHECK(after.dir.compare(after.dir.size() - appended.size(), appended.size(), appended) ==
               0);
    const bool named = !added.file.empty() || !added.ext.empty();
    FUZZ_CHECK(after.file == (named ? added.file : before.file));
    FUZZ_CHECK(after.ext == (named ? added.ext : before.ext));
}

void CheckSafeNames(const std::wstring& path, const std::wstring& text) {
    MFileName name(path.c_str());
    name.MAKE_SAFE();
    FUZZ_CHECK(name.IsSafe() == (*name.GET_FILE_PART() != L'\0'));

    name.SET_FILE_EXT_PARTS(text.c_str());
    const std::wstring_view enders = L"\\/:<>|";
    FUZZ_CHECK(std::wstring_view(name.GET_FILE_PART()).find_first_of(enders) ==
               std::wstring_view::npos);
    FUZZ_CHECK(std::wstring_view(name.GET_EXT_PART()).find_first_of(enders) ==
               std::wstring_view::npos);

    std::wstring fixed = text;
    const bool changed = MFileUtility::FixFileName(fixed);
    FUZZ_CHECK(fixed.find_first_of(L"\\/*:?<>|\"") == std::wstring::npos);
    FUZZ_CHECK(changed == (fixed != text));
    FUZZ_CHECK(fixed.size() <= text.size());
}

std::wstring Lowered(std::wstring text) {
    const auto& facet = std::use_facet<std::ctype<wchar_t>>(std::locale());
    for (wchar_t& c : text)
        c = facet.tolower(c);
    return text;
}

// matches[i][j]: the first i characters of the text match the first j of the pattern.
bool ReferenceMatch(const std::wstring& text, const std::wstring& pattern) {
    std::vector<std::vector<bool>> matches(text.size() + 1,
                                           std::vector<bool>(pattern.size() + 1, false));
    matches[0][0] = true;
    for (std::size_t j = 1; j <= pattern.size(); ++j)
        matches[0][j] = matches[0][j - 1] && pattern[j - 1] == L'*';
    for (std::size_t i = 1; i <= text.size(); ++i) {
        for (std::size_t j = 1; j <= pattern.size(); ++j) {
            const wchar_t p = pattern[j - 1];
            matches[i][j] = p == L'*' ? matches[i - 1][j] || matches[i][j - 1]
                                      : matches[i - 1][j - 1] && (p == L'?' || p == text[i - 1]);
        }
    }
    return matches[text.size()][pattern.size()];
}

void CheckFilters(const std::wstring& path, const std::wstring& pattern) {
    const MFileName name(path.c_str());
    const std::wstring file = Lowered(name.GET_FILE_PART());
    const std::wstring ext = Lowered(name.GET_EXT_PART());
    FUZZ_CHECK(name.FILTER_FILE(pattern.c_str()) == ReferenceMatch(file, Lowered(pattern)));
    const bool extMatches =
        ext.empty() ? pattern.empty() || pattern == L".*" : ReferenceMatch(ext, Lowered(pattern));
    FUZZ_CHECK(name.FILTER_EXT(pattern.c_str()) == extMatches);
}

void CheckAbbreviation(const std::wstring& path, unsigned long maxLength, bool atLeastName) {
    const std::wstring shortened = ABREVIATE_PATH(path.c_str(), maxLength, atLeastName);
    if (path.size() <= maxLength) {
        FUZZ_CHECK(shortened == path);
        return;
    }
    // Too long only when the last element is kept whole, and then it is the path's end.
    if (shortened.size() > maxLength) {
        FUZZ_CHECK(atLeastName);
        FUZZ_CHECK(path.compare(path.size() - shortened.size(), shortened.size(), shortened) == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    const bool flag = input.ConsumeBool();
    const auto maxLength = input.ConsumeIntegralInRange<unsigned long>(0, 80);
    const std::wstring path = Fuzz::ConsumeText(input, kPathAlphabet);
    const std::wstring other = Fuzz::ConsumeText(input, kPathAlphabet);
    Fuzz::Context() = L"path " + path + L" other " + other;
    CheckSplitAndCompose(path, flag);
    CheckAppend(path, other);
    CheckSafeNames(path, other);
    CheckFilters(path, other);
    CheckAbbreviation(path, maxLength, flag);
    CheckOrdinaryPath(input);
    return 0;
}
