#pragma once
/// @file
/// The framework's object base with run-time class records and dynamic creation.
#include "AfxTypes.h"
#include "FrameworkExport.h"

class CObject;

/// One record per class that declares itself dynamic; records are linked to their base class.
struct KELFW_API CRuntimeClass {
    const char* m_lpszClassName;     ///< The class's name.
    int m_nObjectSize;               ///< sizeof the class.
    UINT m_wSchema;                  ///< 0xFFFF: not serialisable
    CObject* (*m_pfnCreateObject)(); ///< Creates an object; null when not dynamically creatable.
    CRuntimeClass* m_pBaseClass;     ///< The base class's record; null for CObject.

    /// A new object of the class, or null when the class is not dynamically creatable.
    CObject* CreateObject() const;
    /// TRUE when the class is `pBaseClass` or derives from it.
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

/// The CRuntimeClass record of `class_name`.
#define RUNTIME_CLASS(class_name) (const_cast<CRuntimeClass*>(&class_name::class##class_name))

/// In a class body: declares the class's run-time class record (see IMPLEMENT_DYNAMIC).
#define DECLARE_DYNAMIC(class_name)                                                                \
protected:                                                                                         \
    static CRuntimeClass* _GetBaseClass();                                                         \
                                                                                                   \
public:                                                                                            \
    static const CRuntimeClass class##class_name;                                                  \
    static CRuntimeClass* GetThisClass();                                                          \
    virtual CRuntimeClass* GetRuntimeClass() const;

/// In a class body: DECLARE_DYNAMIC and a static CreateObject (see IMPLEMENT_DYNCREATE).
#define DECLARE_DYNCREATE(class_name)                                                              \
    DECLARE_DYNAMIC(class_name)                                                                    \
    static CObject* CreateObject();

/// Defines the record and functions declared by DECLARE_DYNAMIC, with a schema and a factory.
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

/// In a source file: defines what DECLARE_DYNAMIC declared, naming the base class.
#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                             \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

/// In a source file: defines what DECLARE_DYNCREATE declared, naming the base class.
#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                           \
    CObject* class_name::CreateObject() {                                                          \
        return new class_name;                                                                     \
    }                                                                                              \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

/// The root of the framework's classes: run-time class information for every class that
/// declares itself dynamic. Objects are not copyable, as in the framework.
class KELFW_API CObject {
public:
    /// The run-time class record of CObject.
    static const CRuntimeClass classCObject;
    /// The record of CObject.
    static CRuntimeClass* GetThisClass();
    /// The record of the object's most derived dynamic class.
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    /// TRUE when the object's class is `pClass` or derives from it.
    BOOL IsKindOf(const CRuntimeClass* pClass) const;

protected:
    CObject() = default;
    /// The record of the base class (none for CObject).
    static CRuntimeClass* _GetBaseClass();
};
