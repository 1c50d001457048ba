// wnd_messages_test.cpp - routing messages to their handlers
#include "tests/afx/src/window_fixture.h"

namespace {

TEST_F(Windows, CallTheMostDerivedHandler) {
    RecordingWindow wnd;
    Create(wnd);
    EXPECT_EQ(wnd.SendMessage(kAdd, 40, 2), 42);
    OverridingWindow more;
    Create(more);
    EXPECT_EQ(more.SendMessage(kAdd, 40, 2), -1);
    more.SendMessage(WM_COMMAND, 7);
    EXPECT_EQ(more.log, (std::vector<int>{7}));
}

TEST_F(Windows, DistinguishCommandsFromNotifications) {
    RecordingWindow wnd;
    Create(wnd);
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, EN_CHANGE), reinterpret_cast<LPARAM>(wnd.m_hWnd));
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, BN_CLICKED), reinterpret_cast<LPARAM>(wnd.m_hWnd));
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, 1)); // an accelerator
    wnd.SendMessage(WM_COMMAND, 25);
    wnd.SendMessage(WM_COMMAND, 30);
    EXPECT_EQ(wnd.log, (std::vector<int>{-7, 7, 7, 25}));
}

TEST_F(Windows, DoNotPropagateExceptions) {
    RecordingWindow wnd;
    Create(wnd);
    EXPECT_EQ(wnd.SendMessage(kThrow), 0);
    EXPECT_EQ(wnd.SendMessage(kAdd, 1, 1), 2);
}

class DeletingWindow : public CWnd {
protected:
    LRESULT OnAdd(WPARAM, LPARAM) {
        delete this;
        return 5;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DeletingWindow, CWnd)
ON_MESSAGE(kAdd, &DeletingWindow::OnAdd)
END_MESSAGE_MAP()

TEST_F(Windows, CanBeDeletedByTheirHandlers) {
    DeletingWindow* const wnd = new DeletingWindow;
    Create(*wnd);
    const HWND window = wnd->m_hWnd;
    EXPECT_EQ(SendMessage(window, kAdd, 0, 0), 5);
    EXPECT_FALSE(IsWindow(window));
}

class ReflectingTree : public CTreeCtrl {
public:
    std::vector<UINT> reflected;

protected:
    BOOL OnSelChanged(NMHDR* notification, LRESULT*) {
        reflected.push_back(notification->code);
        return GetCount() > 1;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ReflectingTree, CTreeCtrl)
ON_NOTIFY_REFLECT_EX(TVN_SELCHANGED, &ReflectingTree::OnSelChanged)
END_MESSAGE_MAP()

class NotifiedParent : public CWnd {
public:
    int notified = 0;

protected:
    void OnSelChanged(NMHDR*, LRESULT*) { ++notified; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(NotifiedParent, CWnd)
ON_NOTIFY(TVN_SELCHANGED, 3, &NotifiedParent::OnSelChanged)
END_MESSAGE_MAP()

TEST_F(Windows, OfferNotificationsToTheirControlsFirst) {
    NotifiedParent parent;
    Create(parent);
    ReflectingTree tree;
    ASSERT_TRUE(tree.Create(WS_CHILD, CRect(0, 0, 90, 40), &parent, 3));
    tree.SelectItem(tree.InsertItem(L"one"));
    EXPECT_EQ(tree.reflected.size(), 1u);
    EXPECT_EQ(parent.notified, 1);
    tree.SelectItem(tree.InsertItem(L"two"));
    EXPECT_EQ(tree.reflected.size(), 2u);
    EXPECT_EQ(parent.notified, 1);
}

TEST_F(Windows, OfferMessagesToTheirAncestorsBeforeDispatch) {
    class Greedy : public CWnd {
    public:
        int offered = 0;
        BOOL PreTranslateMessage(MSG* message) override {
            ++offered;
            return message->message == kAdd;
        }
    };
    Greedy outer;
    Create(outer);
    CWnd inner;
    ASSERT_TRUE(inner.Create(nullptr, L"inner", WS_CHILD, CRect(), &outer, 1));
    MSG message{};
    message.hwnd = inner;
    message.message = kAdd;
    EXPECT_TRUE(CWnd::WalkPreTranslateTree(Frame(), &message));
    message.message = kThrow;
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(Frame(), &message));
    EXPECT_EQ(outer.offered, 2);
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(inner, &message));
    EXPECT_EQ(outer.offered, 2);
}

} // namespace
