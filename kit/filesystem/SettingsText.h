#pragma once
// The settings-file reader behind MString::LOAD_INI_STRING, apart from the file it reads:
// internal to the file-system kit (the native fuzz target links the static library).
#include <cstddef>
#include <string>

namespace KelSDK::FileIO {

// The bytes of a settings file as wide text, decoded by their byte-order mark: UTF-16LE,
// UTF-8, or else ANSI text.
std::wstring DecodeSettingsText(const unsigned char* data, std::size_t size);

// The value of `key` in `section` of the decoded text; false when the key is missing.
bool FindSettingsValue(const std::wstring& text, const wchar_t* section, const wchar_t* key,
                       std::wstring& value);

} // namespace KelSDK::FileIO
