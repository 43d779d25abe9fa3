#pragma once
/// @file
/// All string resources of a module: enumerated, and looked up by identifier with the
/// application's string hook taking precedence.
///
/// Decisions:
/// - The strings are read once, when the table is made or loaded again; the table is a value
///   that may be copied.
/// - Each block of sixteen strings is taken in the language the system's own string loading
///   picks, so a string reads as LoadStringW gives it.
/// - The hook (SetMResStringWrapper) can change the text of any identifier and serve ones the
///   module lacks, but it cannot be enumerated: the identifiers listed are the module's.
#include <map>
#include <vector>

#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

#ifdef _WIN32
/// The string resources of one module.
class KELBASE_API MStringTable {
public:
    /// The strings of `module`; null is the resource module (CKelResource::GetResInstance,
    /// itself null for the executable).
    explicit MStringTable(HMODULE module = nullptr);

    /// Reads the strings of `module` (null as above) in place of what was read before. A module
    /// without string resources gives an empty table; false for other failures, with the
    /// system's code in GetLastError.
    bool Load(HMODULE module = nullptr);
    /// Why the last Load failed; 0 after a success.
    DWORD GetLastError() const { return m_lastError; }

    /// The number of strings of the module.
    size_t GetCount() const { return m_strings.size(); }
    /// The identifiers of the module's strings, ascending.
    std::vector<unsigned int> GetIds() const;
    /// Whether the module has string `id`.
    bool Contains(unsigned int id) const { return m_strings.count(id) != 0; }

    /// String `id`: the hook's when it has one, else the module's; false (and `text` as it
    /// was) when neither has it.
    bool Lookup(unsigned int id, CString& text) const;
    /// String `id` as Lookup finds it; empty when neither has it.
    CString GetString(unsigned int id) const;
    /// String `id` of the module alone, whatever the hook says; false (and `text` as it was)
    /// when the module lacks it.
    bool LookupInModule(unsigned int id, CString& text) const;

private:
    std::map<unsigned int, CString> m_strings;
    DWORD m_lastError;
};
#endif
