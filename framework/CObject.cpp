#include "CObject.h"

// The root record has no base class and cannot be created.
const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF,
                                             nullptr, nullptr};

CObject* CRuntimeClass::CreateObject() const {
    return m_pfnCreateObject != nullptr ? m_pfnCreateObject() : nullptr;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const {
    for (const CRuntimeClass* c = this; c != nullptr; c = c->m_pBaseClass) {
        if (c == pBaseClass) {
            return TRUE;
        }
    }
    return FALSE;
}

CObject::~CObject() = default;

CRuntimeClass* CObject::GetThisClass() {
    return RUNTIME_CLASS(CObject);
}

CRuntimeClass* CObject::GetRuntimeClass() const {
    return RUNTIME_CLASS(CObject);
}

CRuntimeClass* CObject::_GetBaseClass() {
    return nullptr;
}

BOOL CObject::IsKindOf(const CRuntimeClass* pClass) const {
    return GetRuntimeClass()->IsDerivedFrom(pClass);
}
