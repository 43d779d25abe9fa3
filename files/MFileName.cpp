// The string side of MFileName: splitting, composing, comparing, filtering and safe names.
#include "MFileName.h"

#include <algorithm>
#include <functional>
#include <locale>
#include <string_view>

#include "PathGrammar.h"

namespace Grammar = KelBase::PathGrammar;

namespace {

// Characters that end a file name or extension handed to the part setters.
constexpr std::wstring_view kNameEnders = L"\\/:<>|";
// Characters that MAKE_SAFE replaces and IsSafe refuses.
constexpr std::wstring_view kUnsafeCharacters = L"$\\/:*?\"<>|";
constexpr std::size_t kMaxSafeFileLength = 256;

std::wstring_view View(const wchar_t* text) {
    return text ? std::wstring_view(text) : L"";
}

std::wstring FirstName(const wchar_t* text, std::size_t max) {
    const std::wstring_view view = View(text);
    return std::wstring(view.substr(0, std::min(view.find_first_of(kNameEnders), max)));
}

const std::ctype<wchar_t>& CaseFacet() {
    return std::use_facet<std::ctype<wchar_t>>(std::locale());
}

// Equal after lowering each character through the locale.
bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) {
    const auto& facet = CaseFacet();
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&facet](wchar_t x, wchar_t y) {
        return facet.tolower(x) == facet.tolower(y);
    });
}

std::wstring_view WithoutTrailingSeparator(std::wstring_view dir) {
    return !dir.empty() && Grammar::IsSeparator(dir.back()) ? dir.substr(0, dir.size() - 1) : dir;
}

std::wstring Lowered(std::wstring_view text) {
    std::wstring out(text);
    CaseFacet().tolower(&out[0], &out[0] + out.size());
    return out;
}

// '*' matches any run of characters and '?' any one; the last '*' seen is the only point to
// which the match has to go back, which keeps it linear in practice.
bool WildcardMatch(std::wstring_view text, std::wstring_view pattern) {
    std::size_t t = 0, p = 0, star = std::wstring_view::npos, starText = 0;
    while (t < text.size()) {
        // A '*' is a wildcard even where the text holds a '*' too.
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            starText = t;
        } else if (p < pattern.size() && (pattern[p] == L'?' || pattern[p] == text[t])) {
            ++t;
            ++p;
        } else if (star != std::wstring_view::npos) {
            p = star + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*')
        ++p;
    return p == pattern.size();
}

bool MatchesIgnoringCase(const std::wstring& part, const wchar_t* pattern) {
    return WildcardMatch(Lowered(part), Lowered(View(pattern)));
}

bool SplitPath(std::wstring_view path, std::wstring& drive, std::wstring& dir, std::wstring& file,
               std::wstring& ext, bool dirOnly) {
    drive.clear();
    dir.clear();
    file.clear();
    ext.clear();
    if (path.empty())
        return false;
    // A path that starts by going up is taken as starting below a root directory.
    const bool goesUp = path.compare(0, 2, L"..") == 0;
    const std::wstring rooted = goesUp ? L"\\" + std::wstring(path) : std::wstring();
    const Grammar::Parts parts = Grammar::Decompose(goesUp ? std::wstring_view(rooted) : path);
    if (dirOnly) {
        drive.assign(parts.rootName).append(parts.rootDirectory);
        dir.assign(parts.relativePath);
        return true;
    }
    // A root name without a root directory ("C:name") is dropped: such a path has no drive.
    if (!parts.rootDirectory.empty())
        drive.assign(parts.rootName).append(parts.rootDirectory);
    if (!parts.relativePath.empty() && parts.relativePath != parts.fileName) {
        dir.assign(parts.relativePath);
        // The name is cut off at the last character of the directory that occurs in it, which
        // for the "." of a trailing slash is the directory's last dot (none: nothing is cut).
        if (dir.back() != L'\\')
            dir.resize(
                std::min(dir.size(), dir.find_last_of(parts.fileName) + 1 - parts.fileName.size()));
    }
    // Neither the root directory, whichever separator it is written with, nor the "." of a
    // trailing separator is a file name; a lone root name ("C:", "\\server") is one.
    const std::wstring_view stem = Grammar::Stem(parts.fileName);
    if (!(stem.size() == 1 && Grammar::IsSeparator(stem[0])) && parts.fileName != L".") {
        file.assign(stem);
        ext.assign(Grammar::Extension(parts.fileName));
    }
    return true;
}

} // namespace

bool POSITION_PATH_PARTS(const std::wstring& path, std::wstring& drive, std::wstring& dir,
                         std::wstring& file, std::wstring& ext, bool dirOnly) {
    return SplitPath(path, drive, dir, file, ext, dirOnly);
}

MFileName::MFileName() {
    _INIT();
}

MFileName::MFileName(const MFileName& other) {
    _INIT();
    COPY(other);
}

MFileName::MFileName(const wchar_t* path, bool dirOnly) {
    _INIT();
    SET(path, dirOnly);
}

MFileName::MFileName(const wchar_t* folder, const wchar_t* file, const wchar_t* ext,
                     bool folderIsDirectory) {
    _INIT();
    SET(folder, folderIsDirectory);
    SET_FILE_PART(file);
    SET_EXT_PART(ext);
}

MFileName::MFileName(const wchar_t* drive, const wchar_t* dir, const wchar_t* file,
                     const wchar_t* ext) {
    _INIT();
    SET_DRIVE_PART(drive);
    SET_DIR_PART(dir);
    SET_FILE_PART(file);
    SET_EXT_PART(ext);
}

MFileName::~MFileName() = default;

MFileName& MFileName::operator=(const MFileName& other) {
    COPY(other);
    return *this;
}

void MFileName::COPY(const MFileName& other) {
    if (this == &other)
        return;
    m_drive = other.m_drive;
    m_dir = other.m_dir;
    m_file = other.m_file;
    m_ext = other.m_ext;
    m_full = other.m_full;
}

void MFileName::_INIT() {
    FREE();
    m_relative_path_mode = false;
}

void MFileName::FREE() {
    for (std::wstring* part : {&m_drive, &m_dir, &m_file, &m_ext, &m_full})
        std::wstring().swap(*part);
}

void MFileName::SET(const wchar_t* path, bool dirOnly) {
    // The split empties the parts first, so a path that points into one of them is copied.
    const std::less<const wchar_t*> before;
    const auto inside = [&](const std::wstring& part) {
        return !before(path, part.data()) && before(path, part.data() + part.size());
    };
    if (path && (inside(m_drive) || inside(m_dir) || inside(m_file) || inside(m_ext)))
        SplitPath(std::wstring(path), m_drive, m_dir, m_file, m_ext, dirOnly);
    else
        SplitPath(View(path), m_drive, m_dir, m_file, m_ext, dirOnly);
    GET();
}

void MFileName::SET_DRIVE_PART(const wchar_t* drive) {
    m_drive = View(drive);
}

void MFileName::SET_DIR_PART(const wchar_t* dir, std::size_t max) {
    m_dir = View(dir).substr(0, max);
}

void MFileName::SET_FILE_PART(const wchar_t* file, std::size_t max) {
    m_file = FirstName(file, max);
}

void MFileName::SET_EXT_PART(const wchar_t* ext, std::size_t max) {
    m_ext = FirstName(ext, max);
}

void MFileName::SET_FILE_EXT_PARTS(const wchar_t* fileExt, std::size_t maxFile,
                                   std::size_t maxExt) {
    const std::wstring name(View(fileExt));
    const std::size_t dot = Grammar::ExtensionStart(name);
    SET_FILE_PART(name.substr(0, dot).c_str(), maxFile);
    SET_EXT_PART(name.c_str() + dot, maxExt);
}

const wchar_t* MFileName::GET() const {
    const bool hasName = !m_file.empty() || !m_ext.empty();
    std::wstring full;
    full.reserve(m_drive.size() + m_dir.size() + m_file.size() + m_ext.size() + 2);
    full += m_drive;
    // A name that holds only a directory is rooted; one with a drive needs no separator, as the
    // drive ends with one. Only a backslash counts as the separator already there: a directory
    // written with slashes gets a backslash before the name, which the system reads alike.
    if (m_drive.empty() && !m_dir.empty() && !hasName)
        full += L'\\';
    full += m_dir;
    if (!m_dir.empty() && hasName && m_dir.back() != L'\\')
        full += L'\\';
    full += m_file;
    full += m_ext;
    // Pointers handed out earlier stay valid while the text does not change.
    if (full != m_full)
        m_full.swap(full);
    return m_full.c_str();
}

std::wstring MFileName::GET_DRIVE_DIR_PARTS(bool withSeparator) const {
    std::wstring out = m_drive + m_dir;
    if (m_dir.empty())
        return out;
    if (withSeparator) {
        if (!Grammar::IsSeparator(out.back()))
            out += L'\\';
    } else {
        while (!out.empty() && Grammar::IsSeparator(out.back()))
            out.pop_back();
    }
    return out;
}

std::wstring MFileName::GET_FILE_EXT_PARTS() const {
    return m_file + m_ext;
}

bool MFileName::IS_EMPTY() const {
    return m_drive.empty() && m_dir.empty() && m_file.empty() && m_ext.empty();
}

MFileName& MFileName::APPEND(const MFileName& other) {
    if (this == &other)
        return APPEND(MFileName(other));
    if (m_drive.empty())
        m_drive = other.m_drive;
    const std::size_t start = other.m_dir.find_first_not_of(L"\\/");
    if (start != std::wstring::npos) {
        if (!m_dir.empty() && !Grammar::IsSeparator(m_dir.back()))
            m_dir += L'\\';
        m_dir.append(other.m_dir, start, std::wstring::npos);
    }
    if (!other.m_file.empty() || !other.m_ext.empty()) {
        m_file = other.m_file;
        m_ext = other.m_ext;
    }
    return *this;
}

void MFileName::SET_RELATIVE_PATH_MODE(bool on) {
    m_relative_path_mode = on;
    if (on)
        m_dir.erase(0, std::min(m_dir.find_first_not_of(L"\\/"), m_dir.size()));
}

bool MFileName::_COMPARE_PARTS(const std::wstring& a, const std::wstring& b, unsigned short) {
    return EqualIgnoringCase(a, b);
}

bool MFileName::_COMPARE_DIR_PARTS(const std::wstring& a, const std::wstring& b, unsigned short) {
    return EqualIgnoringCase(WithoutTrailingSeparator(a), WithoutTrailingSeparator(b));
}

bool MFileName::COMPARE(const MFileName& other, unsigned short parts) const {
    if ((parts & PART_DRIVE) && !_COMPARE_PARTS(m_drive, other.m_drive, parts))
        return false;
    if ((parts & PART_DIR) && !_COMPARE_DIR_PARTS(m_dir, other.m_dir, parts))
        return false;
    if ((parts & PART_FILE) && !_COMPARE_PARTS(m_file, other.m_file, parts))
        return false;
    return !(parts & PART_EXT) || _COMPARE_PARTS(m_ext, other.m_ext, parts);
}

bool MFileName::FILTER_EXT(const wchar_t* pattern) const {
    if (m_ext.empty()) {
        const std::wstring_view view = View(pattern);
        return view.empty() || view == L".*";
    }
    return MatchesIgnoringCase(m_ext, pattern);
}

bool MFileName::FILTER_FILE(const wchar_t* pattern) const {
    return MatchesIgnoringCase(m_file, pattern);
}

bool MFileName::FILTER(const wchar_t* filePattern, const wchar_t* extPattern) const {
    return FILTER_EXT(extPattern) && FILTER_FILE(filePattern);
}

void MFileName::MAKE_SAFE() {
    if (m_file.size() > kMaxSafeFileLength)
        m_file.resize(kMaxSafeFileLength);
    std::replace_if(
        m_file.begin(), m_file.end(),
        [](wchar_t c) { return kUnsafeCharacters.find(c) != std::wstring_view::npos; }, L'_');
}

bool MFileName::IsSafe() const {
    return !m_file.empty() && m_file.size() <= kMaxSafeFileLength &&
           std::wstring_view(m_file).find_first_of(kUnsafeCharacters) == std::wstring_view::npos;
}

std::wstring ABREVIATE_PATH(const wchar_t* path, unsigned long maxLength, bool atLeastName) {
    const std::wstring_view text = View(path);
    if (text.size() <= maxLength)
        return std::wstring(text);
    const std::wstring_view rel = Grammar::RelativePath(text);
    const std::wstring_view root = text.substr(0, text.size() - rel.size());
    // The relative path never starts with a separator; the last element keeps the separator
    // that may follow it.
    const std::size_t nameEnd = rel.find_last_not_of(L"\\/");
    const std::size_t lastSeparator =
        nameEnd == std::wstring_view::npos ? nameEnd : rel.find_last_of(L"\\/", nameEnd);
    if (lastSeparator != std::wstring_view::npos) {
        // Whole directories after the root give way, the first ones first.
        for (std::size_t cut = rel.find_first_of(L"\\/"); cut <= lastSeparator;
             cut = rel.find_first_of(L"\\/", cut + 1)) {
            if (root.size() + 3 + (rel.size() - cut) <= maxLength)
                return std::wstring(root) + L"..." + std::wstring(rel.substr(cut));
        }
    }
    const std::wstring_view name = rel.empty() ? text
                                   : lastSeparator == std::wstring_view::npos
                                       ? rel
                                       : rel.substr(lastSeparator + 1);
    if (name.size() <= maxLength || atLeastName)
        return std::wstring(name);
    std::wstring cut(name.substr(0, maxLength));
    if (maxLength > 3)
        cut.replace(maxLength - 3, 3, L"...");
    return cut;
}
