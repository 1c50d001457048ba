// Dialogs, form views and drawing guards of the window classes.
#include "res/resource.h"
#include "test_host.h"

#include <functional>

namespace {

class Modal : public CDialog {
public:
    Modal(CWnd& parent, std::function<void(Modal&)> newOnStart)
        : CDialog(IDD_SERIAL_CONFIG, &parent), onStart(std::move(newOnStart)) {}
    using CDialog::EndDialog;

protected:
    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        onStart(*this);
        return TRUE;
    }

private:
    const std::function<void(Modal&)> onStart;
};

using Dialogs = TestHost;

TEST_F(Dialogs, EndWithTheButtonThatWasPressed) {
    Modal accepted(Frame(), [](Modal& dialog) { dialog.PostMessage(WM_COMMAND, IDOK); });
    EXPECT_EQ(accepted.DoModal(), IDOK);
    EXPECT_EQ(accepted.m_hWnd, nullptr);
    Modal cancelled(Frame(), [](Modal& dialog) { dialog.PostMessage(WM_COMMAND, IDCANCEL); });
    EXPECT_EQ(cancelled.DoModal(), IDCANCEL);
}

TEST_F(Dialogs, EndWithEnterEscapeAndTheFramesButton) {
    const auto press = [](UINT key) {
        return [key](Modal& dialog) {
            PostMessage(GetDlgItem(dialog, IDC_SERIAL_DELAY), WM_KEYDOWN, key, 1);
        };
    };
    EXPECT_EQ(Modal(Frame(), press(VK_RETURN)).DoModal(), IDOK);
    EXPECT_EQ(Modal(Frame(), press(VK_ESCAPE)).DoModal(), IDCANCEL);
    Modal closed(Frame(), [](Modal& dialog) { dialog.PostMessage(WM_SYSCOMMAND, SC_CLOSE); });
    EXPECT_EQ(closed.DoModal(), IDCANCEL);
}

TEST_F(Dialogs, DisableTheirParentWhileTheyRun) {
    BOOL enabled = TRUE;
    Modal dialog(Frame(), [&](Modal& shown) {
        enabled = Frame().IsWindowEnabled();
        shown.EndDialog(77);
    });
    EXPECT_EQ(dialog.DoModal(), 77);
    EXPECT_TRUE(Frame().IsWindowEnabled());
    EXPECT_FALSE(enabled);
}

TEST_F(Dialogs, CanBeRunAgain) {
    int runs = 0;
    Modal dialog(Frame(), [&](Modal& shown) { shown.EndDialog(++runs); });
    EXPECT_EQ(dialog.DoModal(), 1);
    EXPECT_EQ(dialog.DoModal(), 2);
}

TEST_F(Dialogs, CanRunInsideEachOther) {
    INT_PTR inner = 0;
    Modal dialog(Frame(), [&](Modal& shown) {
        Modal second(shown, [](Modal& nested) { nested.EndDialog(5); });
        inner = second.DoModal();
        shown.EndDialog(6);
    });
    EXPECT_EQ(dialog.DoModal(), 6);
    EXPECT_EQ(inner, 5);
}

TEST_F(Dialogs, CannotBeShownWithoutTheirTemplate) {
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

TEST_F(Dialogs, UseUpTheKeysThatTheyKnow) {
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

TEST_F(Dialogs, HaveTheControlStylesOfTheManifest) {
    class Modeless : public CDialog {
    public:
        using CDialog::Create;
    };
    Modeless dialog;
    ASSERT_TRUE(dialog.Create(IDD_SERIAL_CONFIG, &Frame()));
    // Only the controls of version 6 tell the size that suits them.
    SIZE size{};
    EXPECT_TRUE(SendMessage(GetDlgItem(dialog, IDOK), BCM_GETIDEALSIZE, 0,
                            reinterpret_cast<LPARAM>(&size)));
    EXPECT_GT(size.cx, 0);
}

TEST_F(Dialogs, DeleteWhatTheyDrewWith) {
    HGDIOBJ font = nullptr, bitmap = nullptr;
    HDC memory = nullptr;
    {
        CClientDC dc(&Frame());
        CFont made;
        LOGFONT description = {};
        description.lfHeight = -12;
        ASSERT_TRUE(made.CreateFontIndirect(&description));
        font = made.GetSafeHandle();
        CBitmap picture;
        ASSERT_TRUE(picture.CreateCompatibleBitmap(&dc, 8, 8));
        bitmap = picture.GetSafeHandle();
        CDC copy;
        ASSERT_TRUE(copy.CreateCompatibleDC(&dc));
        memory = copy.m_hDC;
        CBitmap* const before = copy.SelectObject(&picture);
        copy.FillSolidRect(CRect(0, 0, 8, 8), RGB(1, 2, 3));
        EXPECT_EQ(copy.GetPixel(4, 4), RGB(1, 2, 3));
        copy.SelectObject(before);
    }
    EXPECT_EQ(GetObjectType(font), 0u);
    EXPECT_EQ(GetObjectType(bitmap), 0u);
    EXPECT_EQ(GetObjectType(memory), 0u);
}

} // namespace
