// window_creation_test.cpp - windows that cannot be created
#include "afx/src/thread_state.h"
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

TEST_F(Windows, AreAttachedToTheWindowThatIsCreatedOnly) {
    const auto make = [this](LPCTSTR className, LPVOID parameter) {
        return ::CreateWindow(className, L"child", WS_CHILD, 0, 0, 10, 10, Frame(), nullptr,
                              nullptr, parameter);
    };
    int mark = 0;
    CWnd wnd;
    const AFX_WINDOW_CREATION creation(&wnd, WC_STATIC, &mark);
    EXPECT_EQ(CWnd::FromHandlePermanent(make(WC_BUTTON, &mark)), nullptr) << "another class";
    EXPECT_EQ(CWnd::FromHandlePermanent(make(WC_STATIC, nullptr)), nullptr) << "another caller";
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(make(L"STATIC", &mark)), &wnd);
    EXPECT_EQ(CWnd::FromHandlePermanent(make(WC_STATIC, &mark)), nullptr) << "a second one";
}

TEST_F(Windows, MayNameTheirClassByItsAtom) {
    CWnd wnd;
    const ATOM atom = static_cast<ATOM>(::GetClassLongPtr(Frame(), GCW_ATOM));
    EXPECT_TRUE(wnd.Create(MAKEINTATOM(atom), L"child", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(CWnd::FromHandlePermanent(wnd.m_hWnd), &wnd);
}

} // namespace
