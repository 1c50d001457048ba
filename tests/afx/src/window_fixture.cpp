// window_fixture.cpp - windows that record which of their handlers are called
#include "tests/afx/src/window_fixture.h"

#include <stdexcept>

IMPLEMENT_DYNCREATE(RecordingWindow, CWnd)

BEGIN_MESSAGE_MAP(RecordingWindow, CWnd)
ON_MESSAGE(kAdd, &RecordingWindow::OnAdd)
ON_MESSAGE(kThrow, &RecordingWindow::OnThrow)
ON_COMMAND(7, &RecordingWindow::OnCommand7)
ON_COMMAND_RANGE(20, 29, &RecordingWindow::OnCommandOf)
ON_EN_CHANGE(7, &RecordingWindow::OnEditChange)
END_MESSAGE_MAP()

LRESULT RecordingWindow::OnAdd(WPARAM wParam, LPARAM lParam) {
    log.push_back(1);
    return static_cast<LRESULT>(wParam) + lParam;
}

LRESULT RecordingWindow::OnThrow(WPARAM, LPARAM) {
    throw std::runtime_error("handler");
}

IMPLEMENT_DYNAMIC(OverridingWindow, RecordingWindow)

BEGIN_MESSAGE_MAP(OverridingWindow, RecordingWindow)
ON_MESSAGE(kAdd, &OverridingWindow::OnAdd)
END_MESSAGE_MAP()
