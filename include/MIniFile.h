#pragma once
/// @file
/// MIniFile: a settings file ("INI" file) read once and kept parsed.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "KelBaseExport.h"
#include "SettingsText.h"

/// A settings file of "[section]" headers and "key=value" lines, read once and kept in memory;
/// writing it back keeps every line that was not changed as it was (comments, blank lines,
/// spacing, order, line ends).
///
/// It reads a file as the system's profile functions (GetPrivateProfileStringW and its
/// relatives) do:
/// - section and key names match without regard to case and without the blanks around them
///   (case as _wcsicmp folds it: towlower, which folds ASCII letters in the C locale, where
///   the system folds every letter); a header is '[' and the text up to the first ']', the rest of
///   its line is ignored;
/// - keys before the first header belong to the section "";
/// - when a section name appears twice only the first section counts, and in a section only
///   the first line of a key; lines without '=' are no keys;
/// - the value is the text after the first '=' without the blanks around it, ';' included;
///   GetString removes one pair of matching quotes (" or ') around it;
/// - lines end at CR LF, LF or a lone CR; the last one may lack its line end.
///
/// Decisions where the system's functions do something less useful:
/// - lines whose first character is ';' are comments: never keys, never listed;
/// - GetSections and GetKeys list each name once (the system lists repeated names again);
/// - DeleteKey removes every line of the key in its section, DeleteSection every section of
///   the name, so the name is gone afterwards;
/// - SetString quotes a value with blanks at an end or between matching quotes, so it reads
///   back unchanged here and through GetPrivateProfileStringW (which would drop them);
/// - a new file is written as ANSI text, as the system writes one; ANSI text that gets
///   characters the code page lacks is written as UTF-16LE instead (which the system reads
///   as well), rather than losing them.
///
/// Failures are reported by results and logged to "lib.kelbase"; nothing throws. An object is
/// not shared between threads without outside locking.
class KELBASE_API MIniFile {
public:
    /// How the file's bytes encode its text.
    using Encoding = KelSDK::FileIO::SettingsEncoding;

    /// An empty settings file without a path.
    MIniFile();
    /// Loads `path` (see Load).
    explicit MIniFile(const std::wstring& path);
    ~MIniFile();
    /// Copies and moves take the path, the lines and the encoding.
    ///@{
    MIniFile(const MIniFile& other);
    MIniFile& operator=(const MIniFile& other);
    MIniFile(MIniFile&& other) noexcept;
    MIniFile& operator=(MIniFile&& other) noexcept;
    ///@}

    /// Reads and parses the file at `path`, which Save writes back to. False when it cannot be
    /// read (a missing file included): the content is then empty, and Save creates the file.
    bool Load(const std::wstring& path);
    /// Writes the content to the path of Load or SaveAs, in the encoding read: first into a
    /// new file beside it, which then replaces it, so the file is either the old one or the
    /// new one whatever fails. False (and logged) when the file could not be replaced.
    bool Save();
    /// Save to `path`, which later Saves use.
    bool SaveAs(const std::wstring& path);
    /// The path of the last Load or SaveAs.
    const std::wstring& GetPath() const;

    /// Replaces the content by the parse of the bytes of a file (any bytes).
    void Parse(const unsigned char* data, std::size_t size);
    /// The bytes Save writes.
    std::string GetBytes() const;
    /// The text of every line with its line end.
    std::wstring GetText() const;
    /// The encoding read (Encoding::Ansi for a new file), which Save writes.
    ///@{
    Encoding GetEncoding() const;
    void SetEncoding(Encoding encoding);
    ///@}
    /// Whether the content changed since it was loaded, parsed or saved.
    bool IsModified() const;

    /// Whether the section exists (the section "" whenever keys stand before the first header).
    bool HasSection(const std::wstring& section) const;
    /// Whether the section has the key.
    bool HasKey(const std::wstring& section, const std::wstring& key) const;

    /// The value of a key (matching quotes removed); false, and `value` unchanged, when the
    /// key is missing.
    bool GetString(const std::wstring& section, const std::wstring& key, std::wstring& value) const;
    /// The value of a key, or `defaultValue` when it is missing.
    std::wstring GetString(const std::wstring& section, const std::wstring& key,
                           const std::wstring& defaultValue = std::wstring()) const;
    /// The value read as GetPrivateProfileIntW reads it: blanks, a sign, then decimal digits,
    /// or after "0x", "0o" or "0b" hexadecimal, octal or binary ones, up to the first other
    /// character, kept to 32 bits as the system does. `defaultValue` when the key is missing
    /// or its value starts with no digit (where the system would give 0).
    int GetInt(const std::wstring& section, const std::wstring& key, int defaultValue) const;
    /// The value as a decimal number with '.' in any locale ("1.5", "-2e3", "inf");
    /// `defaultValue` when the key is missing or the value (without blanks) is not wholly one.
    double GetDouble(const std::wstring& section, const std::wstring& key,
                     double defaultValue) const;
    /// True for "1", "true", "yes", "on" and any other non-zero integer, false for "0",
    /// "false", "no", "off" (any case); `defaultValue` for other values and missing keys.
    bool GetBool(const std::wstring& section, const std::wstring& key, bool defaultValue) const;

    /// Sets a key, adding the section (at the end) and the key (after the section's last key)
    /// when they are missing; an existing key keeps its line, name and spacing and gets the
    /// new value. Names lose their blanks at either end. False, with nothing changed, for a
    /// value or name with a line break, a key name that is empty, holds '=' or starts with
    /// ';' or '[', or a section name with ']'. Text that is no valid Unicode (a lone surrogate)
    /// is written with U+FFFD in its place.
    bool SetString(const std::wstring& section, const std::wstring& key, const std::wstring& value);
    /// SetString of the decimal text.
    bool SetInt(const std::wstring& section, const std::wstring& key, int value);
    /// SetString of the shortest text that reads back as the same double.
    bool SetDouble(const std::wstring& section, const std::wstring& key, double value);
    /// SetString of "1" or "0", which GetPrivateProfileIntW reads as well.
    bool SetBool(const std::wstring& section, const std::wstring& key, bool value);

    /// The names of the sections with a header, in file order, each once as first spelt.
    std::vector<std::wstring> GetSections() const;
    /// The names of the keys of a section, in file order, each once as first spelt (keys with
    /// an empty name are not listed).
    std::vector<std::wstring> GetKeys(const std::wstring& section) const;

    /// Removes every line of the key in its section; false when it is missing.
    bool DeleteKey(const std::wstring& section, const std::wstring& key);
    /// Removes every section of the name with all its lines; false when there is none. The
    /// section "" is the part before the first header: all its lines go.
    bool DeleteSection(const std::wstring& section);

private:
    struct Model;
    std::unique_ptr<Model> m_model;
};
