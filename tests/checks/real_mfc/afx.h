// afx.h - declarations shaped like the Microsoft Foundation Classes: objects and texts
//
// The headers in this directory declare what the dialogs use of that library, as its documentation
// describes it, for checks of the syntax; nothing of it is defined. Where the documentation leaves
// a choice, the stricter form is declared.
#pragma once

#if defined(_WINDOWS_)
#error "windows.h must not be included before the library's headers"
#endif
#if defined(_DLL) && !defined(_AFXDLL)
#error "the shared run-time library (/MD) requires the shared library: _AFXDLL is not defined"
#endif
#if !defined(_DLL) && defined(_AFXDLL)
#error "the shared library (_AFXDLL) requires the shared run-time library: /MD"
#endif

#include <windows.h>

#define AFXAPI __stdcall

class CObject;

struct CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;
    CObject*(AFXAPI* m_pfnCreateObject)();
    CRuntimeClass*(AFXAPI* m_pfnGetBaseClass)();
    CRuntimeClass* m_pNextClass;

    static CObject* AFXAPI CreateObject(LPCSTR className);
};

class CObject {
public:
    virtual ~CObject();
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    virtual CRuntimeClass* GetRuntimeClass() const;
    static CRuntimeClass* AFXAPI GetThisClass();
    BOOL IsKindOf(const CRuntimeClass* base) const;

protected:
    CObject();
};

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define DECLARE_DYNAMIC(class_name)                                                                \
public:                                                                                            \
    static const CRuntimeClass class##class_name;                                                  \
    static CRuntimeClass* AFXAPI GetThisClass();                                                   \
    virtual CRuntimeClass* GetRuntimeClass() const;

#define DECLARE_DYNCREATE(class_name)                                                              \
    DECLARE_DYNAMIC(class_name)                                                                    \
    static CObject* AFXAPI CreateObject();

#define AFX_RUNTIME_CLASS_(class_name, base_class_name, create)                                    \
    const CRuntimeClass class_name::class##class_name = {                                          \
        #class_name, int{sizeof(class_name)}, 0, create, &base_class_name::GetThisClass, nullptr}; \
    CRuntimeClass* AFXAPI class_name::GetThisClass() {                                             \
        return const_cast<CRuntimeClass*>(&class_name::class##class_name);                         \
    }                                                                                              \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                           \
        return class_name::GetThisClass();                                                         \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                             \
    AFX_RUNTIME_CLASS_(class_name, base_class_name, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                           \
    CObject* AFXAPI class_name::CreateObject() {                                                   \
        return new class_name;                                                                     \
    }                                                                                              \
    AFX_RUNTIME_CLASS_(class_name, base_class_name, &class_name::CreateObject)

class CString {
public:
    CString();
    CString(LPCTSTR text);
    operator LPCTSTR() const;
};
