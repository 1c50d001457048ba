// module_state.cpp - what a binary knows of itself, and the threads of their windows
#include "thread_state.h"

// The linker puts this at the start of the binary that links this library.
extern "C" IMAGE_DOS_HEADER __ImageBase;

IMPLEMENT_DYNAMIC(CWinApp, CObject)

namespace {

/// The control styles that the binary's manifest asks for.
class ManifestContext {
public:
    ManifestContext() {
        ACTCTX wanted = {};
        wanted.cbSize = sizeof(wanted);
        wanted.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        wanted.hModule = AfxGetInstanceHandle();
        wanted.lpResourceName = MAKEINTRESOURCE(2);
        context = ::CreateActCtx(&wanted);
    }
    ~ManifestContext() {
        if (context != INVALID_HANDLE_VALUE) {
            ::ReleaseActCtx(context);
        }
    }
    ManifestContext(const ManifestContext&) = delete;
    ManifestContext& operator=(const ManifestContext&) = delete;

    bool Activate(ULONG_PTR& cookie) const {
        return context != INVALID_HANDLE_VALUE && ::ActivateActCtx(context, &cookie);
    }

private:
    HANDLE context;
};

const ManifestContext& Manifest() {
    static const ManifestContext context;
    return context;
}

} // namespace

AFX_MODULE_STATE* AfxGetStaticModuleState() {
    static AFX_MODULE_STATE state = {reinterpret_cast<HINSTANCE>(&__ImageBase),
                                     reinterpret_cast<HINSTANCE>(&__ImageBase), nullptr};
    return &state;
}

CWinApp* AfxGetApp() {
    return AfxGetStaticModuleState()->m_pCurrentWinApp;
}

HINSTANCE AfxGetInstanceHandle() {
    return AfxGetStaticModuleState()->m_hCurrentInstanceHandle;
}

HINSTANCE AfxGetResourceHandle() {
    return AfxGetStaticModuleState()->m_hCurrentResourceHandle;
}

CWinApp::CWinApp() : m_hInstance(AfxGetInstanceHandle()) {
    AfxGetStaticModuleState()->m_pCurrentWinApp = this;
}

CWinApp::~CWinApp() {
    AfxGetStaticModuleState()->m_pCurrentWinApp = nullptr;
}

AfxThreadState& AfxThreadState::Get() {
    thread_local AfxThreadState state;
    return state;
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE*)
    : activated(Manifest().Activate(cookie)) {
    ++AfxThreadState::Get().depth;
}

AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2() {
    AfxThreadState& state = AfxThreadState::Get();
    if (--state.depth == 0) {
        state.temporaries.clear();
    }
    if (activated) {
        ::DeactivateActCtx(0, cookie);
    }
}
