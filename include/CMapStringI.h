#pragma once
/// @file
/// Maps from wide-string keys in which a key matches regardless of letter case.
///
/// The framework's hashed maps compare keys exactly; the spelling as given is tried first (one
/// hash lookup), then all entries are scanned ignoring case. A key keeps the spelling of its
/// first insertion and other spellings find and update that entry. Meant for small tables such
/// as settings sections and keys.
#include "CMapStringToPtr.h"
#include "CMapStringToString.h"
#include "CObject.h"
#include "KelBaseExport.h"

/// A map from wide strings to untyped pointers whose keys match regardless of letter case.
class KELBASE_API CMapStringIToPtr : public CMapStringToPtr {
public:
    /// An empty map; see CMapStringToValue for `blockSize`.
    explicit CMapStringIToPtr(unsigned short blockSize = 10) : CMapStringToPtr(blockSize) {}

    /// Copies the value of the entry matching `key` to `value`; false (untouched) when none.
    bool Lookup(const wchar_t* key, void*& value) const;
    /// The entry's value slot; a key matching no entry is added as spelled.
    void*& operator[](const wchar_t* key);
    /// Sets the value of the entry matching `key`, adding the key as spelled when none does.
    // The base's SetAt is not virtual and compares exactly: it would add a second spelling.
    void SetAt(const wchar_t* key, void* value) { (*this)[key] = value; }
    /// Removes the entry matching `key`; false when there is none.
    bool RemoveKey(const wchar_t* key);
};

/// A map from wide strings to wide strings whose keys match regardless of letter case.
class KELBASE_API CMapStringIToString : public CMapStringToString {
public:
    /// An empty map; see CMapStringToValue for `blockSize`.
    explicit CMapStringIToString(unsigned short blockSize = 10) : CMapStringToString(blockSize) {}

    /// Copies the value of the entry matching `key` to `value`; false (untouched) when none.
    bool Lookup(const wchar_t* key, CString& value) const;
    /// The entry's value slot; a key matching no entry is added as spelled.
    CString& operator[](const wchar_t* key);
    /// Sets the value of the entry matching `key`, adding the key as spelled when none does.
    // Hides the base's exact SetAt, as above.
    void SetAt(const wchar_t* key, const wchar_t* value) { (*this)[key] = value; }
    /// Removes the entry matching `key`; false when there is none.
    bool RemoveKey(const wchar_t* key);
};

/// A map from wide strings to owned CObject pointers whose keys match regardless of letter
/// case.
///
/// Owns its objects: deletes them when they are replaced through Set, removed through RemoveKey
/// or RemoveAll, or when the map is destroyed. RemoveKey2 hands the object to the caller, and
/// assigning through operator[] deletes nothing.
class KELBASE_API CMapStringIToObject {
public:
    /// An empty map.
    CMapStringIToObject() = default;
    /// Deletes every object.
    virtual ~CMapStringIToObject();
    CMapStringIToObject(const CMapStringIToObject&) = delete;
    CMapStringIToObject& operator=(const CMapStringIToObject&) = delete;

    /// Stores `object` under `key` and deletes the object it replaces. Returns true when the key
    /// existed before (including when it already held `object`, which changes nothing).
    bool Set(const wchar_t* key, CObject* object);
    /// Copies the object of the entry matching `key` to `object`; false (untouched) when none.
    bool Lookup(const wchar_t* key, CObject*& object) const;
    /// The entry's object slot; a key matching no entry is added as spelled, with null.
    /// Assigning through it deletes nothing.
    CObject*& operator[](const wchar_t* key);
    /// Removes the entry and deletes its object; true when the key was found.
    bool RemoveKey(const wchar_t* key);
    /// Removes the entry and returns its object, now the caller's; null for a missing key.
    CObject* RemoveKey2(const wchar_t* key);
    /// Removes every entry and deletes every object.
    void RemoveAll();

    /// The number of entries.
    INT_PTR GetCount() const { return m_map.GetCount(); }
    /// The position before the first entry, for GetNextAssoc; null for an empty map.
    POSITION GetStartPosition() const { return m_map.GetStartPosition(); }
    /// Copies the entry at `position` to `key` and `object` and advances the position, as
    /// CMapStringToValue::GetNextAssoc.
    void GetNextAssoc(POSITION& position, CString& key, CObject*& object) const;

private:
    // Removes the entry of `key` and hands its object out; false when there is none.
    bool Detach(const wchar_t* key, CObject*& object);

    CMapStringIToPtr m_map{10};
};
