#pragma once
/// @file
/// The text layer of settings files ("name=value" lines under "[section]" headers): the
/// encodings their bytes come in, and how one line reads. MString::LOAD_INI_STRING and the
/// base library's MIniFile both read settings through it.
#include <cstddef>
#include <string>

#include "FileSystemExport.h"

namespace KelSDK::FileIO {

/// How the bytes of a settings file encode its text.
enum class SettingsEncoding {
    Ansi,          ///< The active code page (natively: the C locale), no signature.
    Utf8,          ///< UTF-8 without a signature.
    Utf8Signature, ///< UTF-8 behind the signature EF BB BF.
    Utf16Le        ///< UTF-16LE behind the byte-order mark FF FE.
};

/// The bytes of a settings file as wide text, and the encoding found (when `encoding` is not
/// null). A byte-order mark or signature decides first (FF FE: UTF-16LE, EF BB BF: UTF-8).
/// Without one the bytes are UTF-8 when they are well-formed UTF-8 and hold at least one
/// character beyond ASCII (text in a code page almost never is), else ANSI text. Malformed
/// sequences become U+FFFD.
KELFS_API std::wstring DecodeSettingsText(const unsigned char* data, std::size_t size,
                                          SettingsEncoding* encoding = nullptr);

/// The bytes of `text` in `encoding`, with the signature or byte-order mark it has. ANSI text
/// gets '?' for characters the code page lacks.
KELFS_API std::string EncodeSettingsText(const std::wstring& text, SettingsEncoding encoding);

/// Whether `c` is a blank around names and values: the ASCII white space and Ctrl-Z (0x1A),
/// which the system's profile functions skip as well.
KELFS_API bool IsSettingsBlank(wchar_t c);
/// `text` without the blanks at either end, as names are read.
KELFS_API std::wstring TrimSettingsBlanks(const std::wstring& text);

/// The end of the line that starts at `begin` of `text`: where its CR LF, LF or lone CR (or
/// the text) ends it, as the system's profile functions split lines. `next` receives the
/// start of the following line.
KELFS_API std::size_t FindSettingsLineEnd(const std::wstring& text, std::size_t begin,
                                          std::size_t& next);

/// What one line of a settings file (without its line end) holds. Offsets are into the line.
struct KELFS_API SettingsLine {
    /// The kinds of line.
    enum Kind {
        Blank,   ///< Nothing but blanks.
        Comment, ///< The first character after the blanks is ';'.
        Section, ///< '[' after the blanks and a ']' later; name: between them, trimmed.
        Entry,   ///< A '=' (the first one splits); name and value trimmed.
        Other    ///< Any other text: neither a key nor a header (kept, never found).
    };
    Kind kind = Blank;          ///< The kind of the line.
    std::size_t nameBegin = 0;  ///< Start of the section or key name.
    std::size_t nameEnd = 0;    ///< End of the name (one past its last character).
    std::size_t valueBegin = 0; ///< Start of an entry's value.
    std::size_t valueEnd = 0;   ///< End of an entry's value.

    /// Reads one line of `length` characters. Text after the ']' of a header is ignored; a ';'
    /// after a value belongs to the value, as the system's profile functions read it.
    static SettingsLine Parse(const wchar_t* line, std::size_t length);
};

/// The value of `key` in `section` of the decoded text; false when the key is missing. Names
/// match without regard to case after dropping their blanks, and the first entry of the key
/// counts. Unlike the system's profile functions (and MIniFile), a section whose name appears
/// again goes on there, as MString::LOAD_INI_STRING has always read such files.
KELFS_API bool FindSettingsValue(const std::wstring& text, const wchar_t* section,
                                 const wchar_t* key, std::wstring& value);

} // namespace KelSDK::FileIO
