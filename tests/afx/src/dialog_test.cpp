// dialog_test.cpp - modal and modeless dialogs
#include "res/resource.h"
#include "tests/windows/test_host.h"

#include <functional>

namespace {

class ModalDialog : public CDialog {
public:
    ModalDialog(CWnd& parent, std::function<void(ModalDialog&)> newOnStart)
        : CDialog(IDD_SERIAL_CONFIG, &parent), onStart(std::move(newOnStart)) {}
    using CDialog::EndDialog;

protected:
    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        onStart(*this);
        return TRUE;
    }

private:
    const std::function<void(ModalDialog&)> onStart;
};

using Dialogs = TestHost;

TEST_F(Dialogs, ReturnTheButtonThatWasPressed) {
    ModalDialog accepted(Frame(),
                         [](ModalDialog& dialog) { dialog.PostMessage(WM_COMMAND, IDOK); });
    EXPECT_EQ(accepted.DoModal(), IDOK);
    EXPECT_EQ(accepted.m_hWnd, nullptr);
    ModalDialog cancelled(Frame(),
                          [](ModalDialog& dialog) { dialog.PostMessage(WM_COMMAND, IDCANCEL); });
    EXPECT_EQ(cancelled.DoModal(), IDCANCEL);
}

TEST_F(Dialogs, EndWithEnterEscapeAndTheCloseButton) {
    const auto press = [](UINT key) {
        return [key](ModalDialog& dialog) {
            PostMessage(GetDlgItem(dialog, IDC_SERIAL_DELAY), WM_KEYDOWN, key, 1);
        };
    };
    EXPECT_EQ(ModalDialog(Frame(), press(VK_RETURN)).DoModal(), IDOK);
    EXPECT_EQ(ModalDialog(Frame(), press(VK_ESCAPE)).DoModal(), IDCANCEL);
    ModalDialog closed(Frame(),
                       [](ModalDialog& dialog) { dialog.PostMessage(WM_SYSCOMMAND, SC_CLOSE); });
    EXPECT_EQ(closed.DoModal(), IDCANCEL);
}

TEST_F(Dialogs, DisableTheirParentWhileTheyRun) {
    BOOL enabled = TRUE;
    ModalDialog dialog(Frame(), [&](ModalDialog& shown) {
        enabled = Frame().IsWindowEnabled();
        shown.EndDialog(77);
    });
    EXPECT_EQ(dialog.DoModal(), 77);
    EXPECT_TRUE(Frame().IsWindowEnabled());
    EXPECT_FALSE(enabled);
}

TEST_F(Dialogs, CanBeRunAgain) {
    int runs = 0;
    ModalDialog dialog(Frame(), [&](ModalDialog& shown) { shown.EndDialog(++runs); });
    EXPECT_EQ(dialog.DoModal(), 1);
    EXPECT_EQ(dialog.DoModal(), 2);
}

TEST_F(Dialogs, CanRunInsideEachOther) {
    INT_PTR inner = 0;
    ModalDialog dialog(Frame(), [&](ModalDialog& shown) {
        ModalDialog second(shown, [](ModalDialog& nested) { nested.EndDialog(5); });
        inner = second.DoModal();
        shown.EndDialog(6);
    });
    EXPECT_EQ(dialog.DoModal(), 6);
    EXPECT_EQ(inner, 5);
}

TEST_F(Dialogs, CannotBeCreatedWithoutTheirTemplate) {
    class Missing : public CDialog {
    public:
        Missing() : CDialog(4711) {}
        using CDialog::Create;
    };
    Missing dialog;
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_FALSE(dialog.Create(4711, &Frame()));
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(Dialogs, HandleTheirKeysBeforeDispatch) {
    class Modeless : public CDialog {
    public:
        using CDialog::Create;
        int oks = 0;
        void OnOK() override { ++oks; }
    };
    Modeless dialog;
    ASSERT_TRUE(dialog.Create(IDD_SERIAL_CONFIG, &Frame()));
    MSG message{};
    message.hwnd = GetDlgItem(dialog, IDC_SERIAL_DELAY);
    message.message = WM_KEYDOWN;
    message.wParam = VK_RETURN;
    EXPECT_TRUE(CWnd::WalkPreTranslateTree(Frame(), &message));
    EXPECT_EQ(dialog.oks, 1);
    EXPECT_TRUE(IsWindow(dialog));
    message.hwnd = Frame();
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(Frame(), &message));
}

} // namespace
