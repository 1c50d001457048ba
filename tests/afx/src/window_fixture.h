// window_fixture.h - windows that record which of their handlers are called
#pragma once

#include "tests/windows/test_host.h"

#include <vector>

/// Handled by RecordingWindow: returns wParam + lParam.
constexpr UINT kAdd = WM_APP + 20;
/// Handled by RecordingWindow: throws std::runtime_error.
constexpr UINT kThrow = WM_APP + 21;

/// Records its handlers' calls: 1 for kAdd, the id for commands, -7 for EN_CHANGE of control 7.
class RecordingWindow : public CWnd {
    DECLARE_DYNCREATE(RecordingWindow)
public:
    std::vector<int> log;

protected:
    LRESULT OnAdd(WPARAM wParam, LPARAM lParam);
    LRESULT OnThrow(WPARAM, LPARAM);
    void OnCommand7() { log.push_back(7); }
    void OnCommandOf(UINT id) { log.push_back(static_cast<int>(id)); }
    void OnEditChange() { log.push_back(-7); }

    DECLARE_MESSAGE_MAP()
};

/// Overrides the handler of kAdd; it returns -1.
class OverridingWindow : public RecordingWindow {
    DECLARE_DYNAMIC(OverridingWindow)
protected:
    LRESULT OnAdd(WPARAM, LPARAM) { return -1; }
    DECLARE_MESSAGE_MAP()
};

class Windows : public TestHost {
protected:
    /// Creates a child of the frame with the identifier 5.
    void Create(CWnd& wnd) {
        ASSERT_TRUE(wnd.Create(nullptr, L"child", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 50),
                               &Frame(), 5));
    }
};
