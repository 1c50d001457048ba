// afx.h - run-time class information and dynamic creation
#pragma once

#include <windows.h>

class CObject;

/// Run-time information about a class. IMPLEMENT_DYNAMIC and IMPLEMENT_DYNCREATE define one object
/// per class. Any thread.
struct CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    CObject* (*m_pfnCreateObject)(); ///< null when the class cannot be created dynamically
    CRuntimeClass* m_pBaseClass;     ///< null for CObject
    CRuntimeClass* m_pNextClass;     ///< next entry of the list that FromName searches

    /// Creates an object, which the caller owns; null when the class cannot be created dynamically.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    BOOL IsDerivedFrom(const CRuntimeClass* base) const;
    /// The class called `className` in this binary; null when there is none.
    static CRuntimeClass* FromName(LPCSTR className);
    /// Creates an object of the class called `className`; null when that is impossible.
    static CObject* CreateObject(LPCSTR className);
};

/// Adds a class to the list that CRuntimeClass::FromName searches. For static objects only.
struct AFX_CLASSINIT {
    explicit AFX_CLASSINIT(CRuntimeClass* runtimeClass);
};

/// Base of all classes of this library. Not copyable.
class CObject {
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    virtual CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
    BOOL IsKindOf(const CRuntimeClass* base) const {
        return GetRuntimeClass()->IsDerivedFrom(base);
    }

    static CRuntimeClass classCObject;

protected:
    CObject() = default;
};

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)                                                                \
public:                                                                                            \
    static CRuntimeClass class##class_name;                                                        \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name)                                                              \
    DECLARE_DYNAMIC(class_name)                                                                    \
    static CObject* CreateObject();

#define AFX_IMPLEMENT_RUNTIMECLASS_(class_name, base_class_name, create)                           \
    CRuntimeClass class_name::class##class_name = {#class_name, int{sizeof(class_name)}, create,   \
                                                   RUNTIME_CLASS(base_class_name), nullptr};       \
    static const AFX_CLASSINIT init##class_name(RUNTIME_CLASS(class_name));                        \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                           \
        return RUNTIME_CLASS(class_name);                                                          \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                             \
    AFX_IMPLEMENT_RUNTIMECLASS_(class_name, base_class_name, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                           \
    CObject* class_name::CreateObject() {                                                          \
        return new class_name;                                                                     \
    }                                                                                              \
    AFX_IMPLEMENT_RUNTIMECLASS_(class_name, base_class_name, class_name::CreateObject)
