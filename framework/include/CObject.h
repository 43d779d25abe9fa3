#pragma once
// The framework's object base with run-time class records and dynamic creation.
#include "AfxTypes.h"
#include "FrameworkExport.h"

class CObject;

// One record per class that declares itself dynamic; records are linked to their base class.
struct KELFW_API CRuntimeClass {
    const char* m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema; // 0xFFFF: not serialisable
    CObject* (*m_pfnCreateObject)();
    CRuntimeClass* m_pBaseClass;

    // A new object of the class, or null when the class is not dynamically creatable.
    CObject* CreateObject() const;
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

#define RUNTIME_CLASS(class_name) (const_cast<CRuntimeClass*>(&class_name::class##class_name))

#define DECLARE_DYNAMIC(class_name)                                                                \
protected:                                                                                         \
    static CRuntimeClass* _GetBaseClass();                                                         \
                                                                                                   \
public:                                                                                            \
    static const CRuntimeClass class##class_name;                                                  \
    static CRuntimeClass* GetThisClass();                                                          \
    virtual CRuntimeClass* GetRuntimeClass() const;

#define DECLARE_DYNCREATE(class_name)                                                              \
    DECLARE_DYNAMIC(class_name)                                                                    \
    static CObject* CreateObject();

#define IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, pfnNew)                       \
    const CRuntimeClass class_name::class##class_name = {                                          \
        #class_name, static_cast<int>(sizeof(class class_name)), wSchema, pfnNew,                  \
        RUNTIME_CLASS(base_class_name)};                                                           \
    CRuntimeClass* class_name::_GetBaseClass() {                                                   \
        return RUNTIME_CLASS(base_class_name);                                                     \
    }                                                                                              \
    CRuntimeClass* class_name::GetThisClass() {                                                    \
        return RUNTIME_CLASS(class_name);                                                          \
    }                                                                                              \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                           \
        return RUNTIME_CLASS(class_name);                                                          \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                             \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                           \
    CObject* class_name::CreateObject() {                                                          \
        return new class_name;                                                                     \
    }                                                                                              \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

// Objects are not copyable, as in the framework.
class KELFW_API CObject {
public:
    static const CRuntimeClass classCObject;
    static CRuntimeClass* GetThisClass();
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    BOOL IsKindOf(const CRuntimeClass* pClass) const;

protected:
    CObject() = default;
    static CRuntimeClass* _GetBaseClass();
};
