#pragma once
// Maps from wide-string keys in which a key matches regardless of letter case. The framework's
// hashed maps compare keys exactly; the spelling as given is tried first (one hash lookup),
// then all entries are scanned ignoring case. A key keeps the spelling of its first insertion
// and other spellings find and update that entry. Meant for small tables such as settings
// sections and keys.
#include "CMapStringToPtr.h"
#include "CMapStringToString.h"
#include "CObject.h"
#include "KelBaseExport.h"

class KELBASE_API CMapStringIToPtr : public CMapStringToPtr {
public:
    explicit CMapStringIToPtr(unsigned short blockSize = 10) : CMapStringToPtr(blockSize) {}

    bool Lookup(const wchar_t* key, void*& value) const;
    /// The entry's value slot; a key matching no entry is added as spelled.
    void*& operator[](const wchar_t* key);
    /// The base's SetAt is not virtual and compares exactly: it would add a second spelling.
    void SetAt(const wchar_t* key, void* value) { (*this)[key] = value; }
    bool RemoveKey(const wchar_t* key);
};

class KELBASE_API CMapStringIToString : public CMapStringToString {
public:
    explicit CMapStringIToString(unsigned short blockSize = 10) : CMapStringToString(blockSize) {}

    bool Lookup(const wchar_t* key, CString& value) const;
    /// The entry's value slot; a key matching no entry is added as spelled.
    CString& operator[](const wchar_t* key);
    /// Hides the base's exact SetAt, as above.
    void SetAt(const wchar_t* key, const wchar_t* value) { (*this)[key] = value; }
    bool RemoveKey(const wchar_t* key);
};

/// Owns its objects: deletes them when they are replaced through Set, removed through RemoveKey
/// or RemoveAll, or when the map is destroyed. RemoveKey2 hands the object to the caller, and
/// assigning through operator[] deletes nothing.
class KELBASE_API CMapStringIToObject {
public:
    CMapStringIToObject() = default;
    virtual ~CMapStringIToObject();
    CMapStringIToObject(const CMapStringIToObject&) = delete;
    CMapStringIToObject& operator=(const CMapStringIToObject&) = delete;

    /// Stores `object` under `key` and deletes the object it replaces. Returns true when the key
    /// existed before (including when it already held `object`, which changes nothing).
    bool Set(const wchar_t* key, CObject* object);
    bool Lookup(const wchar_t* key, CObject*& object) const;
    CObject*& operator[](const wchar_t* key);
    /// Removes the entry and deletes its object; true when the key was found.
    bool RemoveKey(const wchar_t* key);
    /// Removes the entry and returns its object, now the caller's; null for a missing key.
    CObject* RemoveKey2(const wchar_t* key);
    void RemoveAll();

    INT_PTR GetCount() const { return m_map.GetCount(); }
    POSITION GetStartPosition() const { return m_map.GetStartPosition(); }
    void GetNextAssoc(POSITION& position, CString& key, CObject*& object) const;

private:
    /// Removes the entry of `key` and hands its object out; false when there is none.
    bool Detach(const wchar_t* key, CObject*& object);

    CMapStringIToPtr m_map{10};
};
