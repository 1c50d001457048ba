#include "when_shown.h"

#include "test_host.h"

#include <map>
#include <utility>

namespace {

constexpr UINT kLookAgainMs = 10;

std::map<UINT_PTR, WhenShown*>& Waiting() {
    static std::map<UINT_PTR, WhenShown*> waiting;
    return waiting;
}

struct Search {
    const std::wstring& title;
    HWND found = nullptr;
};

BOOL CALLBACK Compare(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    wchar_t className[16] = L"";
    GetClassName(window, className, 16);
    if (IsWindowVisible(window) && className == std::wstring(L"#32770") &&
        TextOf(window) == search.title) {
        search.found = window;
        return FALSE;
    }
    return TRUE;
}

} // namespace

WhenShown::WhenShown(std::wstring wanted, std::function<void(HWND)> then)
    : title(std::move(wanted)),
      action(std::move(then)),
      timer(SetTimer(nullptr, 0, kLookAgainMs, OnTimer)) {
    Waiting()[timer] = this;
}

WhenShown::~WhenShown() {
    if (!came) {
        KillTimer(nullptr, timer);
        Waiting().erase(timer);
        ADD_FAILURE() << "it was not shown";
    }
}

void CALLBACK WhenShown::OnTimer(HWND, UINT, UINT_PTR id, DWORD) {
    const auto found = Waiting().find(id);
    if (found != Waiting().end()) {
        found->second->Look();
    }
}

void WhenShown::Look() {
    Search search{title};
    EnumThreadWindows(GetCurrentThreadId(), Compare, reinterpret_cast<LPARAM>(&search));
    const HWND window = search.found;
    if (!window) {
        return;
    }
    came = true;
    KillTimer(nullptr, timer);
    Waiting().erase(timer);
    action(window);
    if (IsWindow(window) && IsWindowVisible(window)) {
        ADD_FAILURE() << "it was left open";
        EndDialog(window, IDCANCEL);
    }
}

Box::Box(HWND window) {
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        wchar_t className[16] = L"";
        GetClassName(child, className, 16);
        if (className != std::wstring(L"Static")) {
            continue;
        }
        const auto held = reinterpret_cast<HICON>(SendMessage(child, STM_GETICON, 0, 0));
        if (held) {
            icon = held;
        } else if (IsWindowVisible(child)) {
            text = TextOf(child);
        }
    }
}
