// module_state.cpp - global state of a binary and of its threads
#include "thread_state.h"

#include <new>

// Defined by the linker; its address is the handle of the binary that links this library.
extern "C" IMAGE_DOS_HEADER __ImageBase;

IMPLEMENT_DYNAMIC(CWinApp, CObject)

namespace {

/// Activation context of the binary's manifest, which selects the version of the common controls.
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

/// The states of all threads, in fiber-local storage: MinGW's runtime may free the memory of
/// thread_local variables before it calls their destructors.
class ThreadStates {
public:
    ThreadStates() : slot(::FlsAlloc(&ThreadStates::End)) {
        if (slot == FLS_OUT_OF_INDEXES) {
            throw std::bad_alloc();
        }
    }
    ~ThreadStates() { ::FlsFree(slot); }
    ThreadStates(const ThreadStates&) = delete;
    ThreadStates& operator=(const ThreadStates&) = delete;

    AfxThreadState& OfThisThread() const {
        if (void* const known = ::FlsGetValue(slot)) {
            return *static_cast<AfxThreadState*>(known);
        }
        auto made = std::make_unique<AfxThreadState>();
        if (!::FlsSetValue(slot, made.get())) {
            throw std::bad_alloc();
        }
        return *made.release();
    }

private:
    static void WINAPI End(void* state) {
        const std::unique_ptr<AfxThreadState> ending(static_cast<AfxThreadState*>(state));
    }

    const DWORD slot;
};

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

BOOL AfxWinInit(HINSTANCE instance, HINSTANCE, LPTSTR, int) {
    AFX_MODULE_STATE& state = *AfxGetStaticModuleState();
    state.m_hCurrentInstanceHandle = instance;
    state.m_hCurrentResourceHandle = instance;
    return TRUE;
}

CWinApp::CWinApp() : m_hInstance(AfxGetInstanceHandle()) {
    AfxGetStaticModuleState()->m_pCurrentWinApp = this;
}

CWinApp::~CWinApp() {
    AfxGetStaticModuleState()->m_pCurrentWinApp = nullptr;
}

AfxThreadState& AfxThreadState::Get() {
    static const ThreadStates states;
    return states.OfThisThread();
}

void AfxThreadState::Leave() {
    --depth;
    std::erase_if(temporaries, [this](const auto& temporary) {
        return depth == 0 || temporary.second.depth > depth;
    });
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE*)
    : activated(Manifest().Activate(cookie)) {
    AfxThreadState::Get().Enter();
}

AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2() {
    AfxThreadState::Get().Leave();
    if (activated) {
        ::DeactivateActCtx(0, cookie);
    }
}
