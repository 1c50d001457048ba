// object.cpp - run-time class information
#include <afx.h>

#include <string_view>

namespace {

CRuntimeClass* firstClass = nullptr;

} // namespace

CRuntimeClass CObject::classCObject = {"CObject", int{sizeof(CObject)}, nullptr, nullptr, nullptr};
static const AFX_CLASSINIT initCObject(RUNTIME_CLASS(CObject));

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass* runtimeClass) {
    runtimeClass->m_pNextClass = firstClass;
    firstClass = runtimeClass;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    const CRuntimeClass* at = this;
    while (at && at != base) {
        at = at->m_pBaseClass;
    }
    return at != nullptr;
}

CRuntimeClass* CRuntimeClass::FromName(LPCSTR className) {
    CRuntimeClass* at = firstClass;
    while (at && std::string_view(at->m_lpszClassName) != className) {
        at = at->m_pNextClass;
    }
    return at;
}

CObject* CRuntimeClass::CreateObject(LPCSTR className) {
    const CRuntimeClass* const found = FromName(className);
    return found ? found->CreateObject() : nullptr;
}
