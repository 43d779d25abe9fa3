#include "CMapStringI.h"

#include "MapNoCase.h"

namespace {

using PtrNoCase = KelBase::MapNoCase<CMapStringToPtr, void*>;
using StringNoCase = KelBase::MapNoCase<CMapStringToString, CString>;

} // namespace

bool CMapStringIToPtr::Lookup(const wchar_t* key, void*& value) const {
    return PtrNoCase::Lookup(*this, key, value);
}

void*& CMapStringIToPtr::operator[](const wchar_t* key) {
    return PtrNoCase::At(*this, key);
}

bool CMapStringIToPtr::RemoveKey(const wchar_t* key) {
    return PtrNoCase::Remove(*this, key);
}

bool CMapStringIToString::Lookup(const wchar_t* key, CString& value) const {
    return StringNoCase::Lookup(*this, key, value);
}

CString& CMapStringIToString::operator[](const wchar_t* key) {
    return StringNoCase::At(*this, key);
}

bool CMapStringIToString::RemoveKey(const wchar_t* key) {
    return StringNoCase::Remove(*this, key);
}

CMapStringIToObject::~CMapStringIToObject() {
    RemoveAll();
}

bool CMapStringIToObject::Set(const wchar_t* key, CObject* object) {
    const INT_PTR countBefore = m_map.GetCount();
    void*& slot = m_map[key];
    const bool existed = m_map.GetCount() == countBefore;
    if (existed && slot == object)
        return true;
    CObject* replaced = existed ? static_cast<CObject*>(slot) : nullptr;
    slot = object;
    delete replaced;
    return existed;
}

bool CMapStringIToObject::Lookup(const wchar_t* key, CObject*& object) const {
    void* value = nullptr;
    if (!m_map.Lookup(key, value))
        return false;
    object = static_cast<CObject*>(value);
    return true;
}

CObject*& CMapStringIToObject::operator[](const wchar_t* key) {
    // The slot holds a CObject* stored as void*; both are plain data pointers of one
    // representation.
    return reinterpret_cast<CObject*&>(m_map[key]);
}

bool CMapStringIToObject::Detach(const wchar_t* key, CObject*& object) {
    if (!Lookup(key, object))
        return false;
    m_map.RemoveKey(key);
    return true;
}

bool CMapStringIToObject::RemoveKey(const wchar_t* key) {
    CObject* object;
    if (!Detach(key, object))
        return false;
    delete object;
    return true;
}

CObject* CMapStringIToObject::RemoveKey2(const wchar_t* key) {
    CObject* object = nullptr;
    Detach(key, object);
    return object;
}

void CMapStringIToObject::RemoveAll() {
    CString key;
    void* value = nullptr;
    for (POSITION position = m_map.GetStartPosition(); position != nullptr;) {
        m_map.GetNextAssoc(position, key, value);
        delete static_cast<CObject*>(value);
    }
    m_map.RemoveAll();
}

void CMapStringIToObject::GetNextAssoc(POSITION& position, CString& key, CObject*& object) const {
    void* value = nullptr;
    m_map.GetNextAssoc(position, key, value);
    object = static_cast<CObject*>(value);
}
