#include "mivora/dialog_messages.h"

#include "res/resource.h"
#include "test_host.h"
#include "tests/host/test_grabber.h"

namespace {

class Counting : public CDialog {
public:
    using CDialog::Create;
    int oks = 0;

protected:
    void OnOK() override { ++oks; }
};

class DialogMessages : public TestHost {
protected:
    DialogMessages() {
        EXPECT_TRUE(first.Create(IDD_SERIAL_CONFIG, &Frame()));
        EXPECT_TRUE(second.Create(IDD_SERIAL_CONFIG, &Frame()));
    }

    bool OfferEnter(HWND window) {
        MSG message{};
        message.hwnd = window;
        message.message = WM_KEYDOWN;
        message.wParam = VK_RETURN;
        return OfferMessageToDialogs(grabber, message);
    }

    TestGrabber grabber;
    Counting first;
    Counting second;
};

TEST_F(DialogMessages, AreOfferedToTheDialogTheyBelongTo) {
    grabber.RegisterWindowHandle(first.m_hWnd);
    grabber.RegisterWindowHandle(second.m_hWnd);
    EXPECT_TRUE(OfferEnter(GetDlgItem(second, IDC_SERIAL_DELAY)));
    EXPECT_EQ(first.oks, 0);
    EXPECT_EQ(second.oks, 1);
    EXPECT_TRUE(OfferEnter(GetDlgItem(first, IDC_SERIAL_DELAY)));
    EXPECT_EQ(first.oks, 1);
}

TEST_F(DialogMessages, StayWithTheHostWhenNoDialogIsMeant) {
    EXPECT_FALSE(OfferEnter(GetDlgItem(first, IDC_SERIAL_DELAY)));
    grabber.RegisterWindowHandle(first.m_hWnd);
    EXPECT_FALSE(OfferEnter(Frame()));
    grabber.UnRegisterWindowHandle(first.m_hWnd);
    EXPECT_FALSE(OfferEnter(GetDlgItem(first, IDC_SERIAL_DELAY)));
    EXPECT_EQ(first.oks, 0);
}

} // namespace
