// The window classes themselves: maps, subclassing, messages.
#include "test_host.h"

#include <afxext.h>

#include <stdexcept>
#include <thread>

namespace {

constexpr UINT kAsk = WM_APP + 20;
constexpr UINT kThrow = WM_APP + 21;

class Asked : public CWnd {
    DECLARE_DYNCREATE(Asked)
public:
    std::vector<int> log;

protected:
    LRESULT OnAsk(WPARAM wParam, LPARAM lParam) {
        log.push_back(1);
        return static_cast<LRESULT>(wParam) + lParam;
    }
    LRESULT OnThrow(WPARAM, LPARAM) { throw std::runtime_error("handler"); }
    void OnCommand7() { log.push_back(7); }
    void OnCommandOf(UINT id) { log.push_back(static_cast<int>(id)); }
    void OnEditChange() { log.push_back(-7); }

    DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNCREATE(Asked, CWnd)

BEGIN_MESSAGE_MAP(Asked, CWnd)
ON_MESSAGE(kAsk, OnAsk)
ON_MESSAGE(kThrow, OnThrow)
ON_COMMAND(7, OnCommand7)
ON_COMMAND_RANGE(20, 29, OnCommandOf)
ON_EN_CHANGE(7, OnEditChange)
END_MESSAGE_MAP()

class AskedMore : public Asked {
    DECLARE_DYNAMIC(AskedMore)
protected:
    LRESULT OnAsk(WPARAM, LPARAM) { return -1; }
    DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNAMIC(AskedMore, Asked)

BEGIN_MESSAGE_MAP(AskedMore, Asked)
ON_MESSAGE(kAsk, OnAsk)
END_MESSAGE_MAP()

class Windows : public TestHost {
protected:
    template <class Wnd>
    void Make(Wnd& wnd) {
        ASSERT_TRUE(wnd.Create(nullptr, L"child", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 50),
                               &Frame(), 5));
    }
};

TEST_F(Windows, KnowTheirObject) {
    Asked wnd;
    Make(wnd);
    EXPECT_EQ(CWnd::FromHandle(wnd.m_hWnd), &wnd);
    EXPECT_EQ(CWnd::FromHandlePermanent(wnd.m_hWnd), &wnd);
    EXPECT_EQ(Frame().GetDlgItem(5), &wnd);
    const HWND window = wnd.m_hWnd;
    EXPECT_TRUE(wnd.DestroyWindow());
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr);
    EXPECT_FALSE(wnd.DestroyWindow());
}

TEST_F(Windows, EndWithTheirObject) {
    HWND window = nullptr;
    {
        Asked wnd;
        Make(wnd);
        window = wnd.m_hWnd;
    }
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(Windows, AreNotMadeTwice) {
    Asked wnd;
    Make(wnd);
    const HWND window = wnd.m_hWnd;
    EXPECT_FALSE(wnd.Create(nullptr, L"child", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, window);
}

TEST_F(Windows, CannotBeMadeOfAnUnknownClass) {
    Asked wnd;
    EXPECT_FALSE(wnd.Create(L"no such class", L"child", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    // The object that waited for a window takes no other.
    CWnd other;
    EXPECT_TRUE(other.Create(nullptr, L"other", WS_CHILD, CRect(), &Frame(), 6));
    EXPECT_EQ(wnd.m_hWnd, nullptr);
}

TEST_F(Windows, AskTheNearestHandler) {
    Asked wnd;
    Make(wnd);
    EXPECT_EQ(wnd.SendMessage(kAsk, 40, 2), 42);
    AskedMore more;
    Make(more);
    EXPECT_EQ(more.SendMessage(kAsk, 40, 2), -1);
    more.SendMessage(WM_COMMAND, 7);
    EXPECT_EQ(more.log, (std::vector<int>{7}));
}

TEST_F(Windows, TellCommandsFromNotifications) {
    Asked wnd;
    Make(wnd);
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, EN_CHANGE), reinterpret_cast<LPARAM>(wnd.m_hWnd));
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, BN_CLICKED), reinterpret_cast<LPARAM>(wnd.m_hWnd));
    wnd.SendMessage(WM_COMMAND, MAKEWPARAM(7, 1)); // an accelerator
    wnd.SendMessage(WM_COMMAND, 25);
    wnd.SendMessage(WM_COMMAND, 30);
    EXPECT_EQ(wnd.log, (std::vector<int>{-7, 7, 7, 25}));
}

TEST_F(Windows, LetNoExceptionOut) {
    Asked wnd;
    Make(wnd);
    EXPECT_EQ(wnd.SendMessage(kThrow), 0);
    EXPECT_EQ(wnd.SendMessage(kAsk, 1, 1), 2);
}

TEST_F(Windows, OfOtherClassesHaveTemporaryObjects) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(), nullptr,
                                     nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(button);
    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, button);
    EXPECT_EQ(CWnd::FromHandle(button), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(button), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST_F(Windows, OutliveTheirTemporaryObjects) {
    HWND button = nullptr;
    std::thread other([&button] {
        {
            AFX_MANAGE_STATE(AfxGetStaticModuleState())
            button = CreateWindow(L"BUTTON", L"plain", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                  nullptr, nullptr);
            EXPECT_NE(CWnd::FromHandle(button), nullptr);
        }
        EXPECT_TRUE(IsWindow(button));
        DestroyWindow(button);
    });
    other.join();
}

TEST_F(Windows, AreKnownOnTheirOwnThreadOnly) {
    Asked wnd;
    Make(wnd);
    std::thread other(
        [window = wnd.m_hWnd] { EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr); });
    other.join();
}

TEST_F(Windows, CanBeSubclassedAndLetGo) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(),
                                     reinterpret_cast<HMENU>(9), nullptr, nullptr);
    Asked wnd;
    ASSERT_TRUE(wnd.SubclassDlgItem(9, &Frame()));
    EXPECT_EQ(wnd.m_hWnd, button);
    EXPECT_EQ(SendMessage(button, kAsk, 1, 2), 3);
    EXPECT_EQ(TextOf(button), L"plain");
    Asked second;
    EXPECT_FALSE(second.SubclassWindow(button));
    EXPECT_FALSE(second.SubclassDlgItem(10, &Frame()));
    EXPECT_EQ(wnd.UnsubclassWindow(), button);
    EXPECT_EQ(wnd.m_hWnd, nullptr);
    EXPECT_EQ(SendMessage(button, kAsk, 1, 2), 0);
    EXPECT_TRUE(IsWindow(button));
}

TEST_F(Windows, CanBeAttachedWithoutTheirMessages) {
    const HWND button = CreateWindow(L"BUTTON", L"plain", WS_CHILD, 0, 0, 10, 10, Frame(), nullptr,
                                     nullptr, nullptr);
    Asked wnd;
    EXPECT_FALSE(wnd.Attach(nullptr));
    EXPECT_TRUE(wnd.Attach(button));
    EXPECT_EQ(CWnd::FromHandle(button), &wnd);
    EXPECT_EQ(SendMessage(button, kAsk, 1, 2), 0);
    EXPECT_EQ(wnd.Detach(), button);
    EXPECT_TRUE(IsWindow(button));
}

class Deleting : public CWnd {
protected:
    LRESULT OnAsk(WPARAM, LPARAM) {
        delete this;
        return 5;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Deleting, CWnd)
ON_MESSAGE(kAsk, OnAsk)
END_MESSAGE_MAP()

TEST_F(Windows, MayBeDeletedByTheirHandlers) {
    Deleting* const wnd = new Deleting;
    Make(*wnd);
    const HWND window = wnd->m_hWnd;
    EXPECT_EQ(SendMessage(window, kAsk, 0, 0), 5);
    EXPECT_FALSE(IsWindow(window));
}

class Reflecting : public CTreeCtrl {
public:
    std::vector<UINT> reflected;

protected:
    BOOL OnSelChanged(NMHDR* notification, LRESULT*) {
        reflected.push_back(notification->code);
        return GetCount() > 1;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Reflecting, CTreeCtrl)
ON_NOTIFY_REFLECT_EX(TVN_SELCHANGED, OnSelChanged)
END_MESSAGE_MAP()

class Notified : public CWnd {
public:
    int notified = 0;

protected:
    void OnSelChanged(NMHDR*, LRESULT*) { ++notified; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Notified, CWnd)
ON_NOTIFY(TVN_SELCHANGED, 3, OnSelChanged)
END_MESSAGE_MAP()

TEST_F(Windows, HandNotificationsToTheirControlsFirst) {
    Notified parent;
    Make(parent);
    Reflecting tree;
    ASSERT_TRUE(tree.Create(WS_CHILD, CRect(0, 0, 90, 40), &parent, 3));
    tree.SelectItem(tree.InsertItem(L"one"));
    EXPECT_EQ(tree.reflected.size(), 1u);
    EXPECT_EQ(parent.notified, 1);
    tree.SelectItem(tree.InsertItem(L"two"));
    EXPECT_EQ(tree.reflected.size(), 2u);
    EXPECT_EQ(parent.notified, 1);
}

TEST_F(Windows, OfferMessagesUpwardsBeforeTheyAreHandled) {
    class Greedy : public CWnd {
    public:
        int offered = 0;
        BOOL PreTranslateMessage(MSG* message) override {
            ++offered;
            return message->message == kAsk;
        }
    };
    Greedy outer;
    Make(outer);
    CWnd inner;
    ASSERT_TRUE(inner.Create(nullptr, L"inner", WS_CHILD, CRect(), &outer, 1));
    MSG message{};
    message.hwnd = inner;
    message.message = kAsk;
    EXPECT_TRUE(CWnd::WalkPreTranslateTree(Frame(), &message));
    message.message = kThrow;
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(Frame(), &message));
    EXPECT_EQ(outer.offered, 2);
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(inner, &message));
    EXPECT_EQ(outer.offered, 2);
}

TEST(RuntimeClasses, AreFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("Asked"), RUNTIME_CLASS(Asked));
    EXPECT_EQ(CRuntimeClass::FromName("Nothing"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("Nothing"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("AskedMore"), nullptr); // not dynamic
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("Asked"));
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_FALSE(made->IsKindOf(RUNTIME_CLASS(AskedMore)));
}

} // namespace
