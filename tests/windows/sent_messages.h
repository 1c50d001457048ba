// sent_messages.h - the messages that are sent to windows of this thread
#pragma once

#include <afxwin.h>

#include <functional>
#include <string>
#include <utility>

/// While it lives, `action` gets each message that is sent to a window of this thread, before the
/// window does; not those that the action itself sends. One at a time.
class SentMessages {
public:
    using Action = std::function<void(const CWPSTRUCT& sent)>;

    explicit SentMessages(Action newAction)
        : hook(SetWindowsHookEx(WH_CALLWNDPROC, Watch, nullptr, GetCurrentThreadId())) {
        action = std::move(newAction);
    }
    ~SentMessages() {
        UnhookWindowsHookEx(hook);
        action = nullptr;
    }
    SentMessages(const SentMessages&) = delete;
    SentMessages& operator=(const SentMessages&) = delete;

    static bool IsOfClass(HWND window, const wchar_t* name) {
        wchar_t className[64] = L"";
        GetClassName(window, className, 64);
        return std::wstring(className) == name;
    }

private:
    static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HC_ACTION && action && !std::exchange(acting, true)) {
            action(*reinterpret_cast<const CWPSTRUCT*>(lParam));
            acting = false;
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline Action action;
    static inline bool acting = false;
    const HHOOK hook;
};
