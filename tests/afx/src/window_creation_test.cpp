// window_creation_test.cpp - windows that cannot be created
#include "tests/afx/src/window_fixture.h"

namespace {

TEST_F(Windows, CannotBeCreatedWithAnUnknownClass) {
    RecordingWindow wnd;
    EXPECT_FALSE(wnd.Create(L"no such class", L"child", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    // The object does not attach to a window that is created later.
    CWnd other;
    EXPECT_TRUE(other.Create(nullptr, L"other", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, nullptr);
}

} // namespace
