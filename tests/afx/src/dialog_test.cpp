// dialog_test.cpp - modal and modeless dialogs
#include "afx/src/thread_state.h"
#include "res/resource.h"
#include "tests/windows/test_host.h"

#include <cstddef>
#include <functional>
#include <vector>

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

constexpr UINT kMakeTemporary = WM_APP + 30;

/// Makes a temporary object for another drawing object in each of several messages.
class TemporaryDialog : public CDialog {
public:
    explicit TemporaryDialog(CWnd& parent) : CDialog(IDD_SERIAL_CONFIG, &parent) {}
    ~TemporaryDialog() override {
        for (const HBRUSH brush : brushes) {
            ::DeleteObject(brush);
        }
    }

    std::vector<std::size_t> counts; ///< of temporary objects, at the beginning of each message

protected:
    BOOL OnInitDialog() override {
        PostMessage(kMakeTemporary);
        return CDialog::OnInitDialog();
    }
    LRESULT OnMakeTemporary(WPARAM, LPARAM) {
        counts.push_back(AfxThreadState::Get().temporaries.size());
        brushes.push_back(::CreateSolidBrush(static_cast<COLORREF>(counts.size())));
        EXPECT_EQ(CBrush::FromHandle(brushes.back())->m_hObject, brushes.back());
        if (counts.size() < 20) {
            PostMessage(kMakeTemporary);
        } else {
            EndDialog(IDOK);
        }
        return 0;
    }

    DECLARE_MESSAGE_MAP()

private:
    std::vector<HBRUSH> brushes;
};

BEGIN_MESSAGE_MAP(TemporaryDialog, CDialog)
ON_MESSAGE(kMakeTemporary, &TemporaryDialog::OnMakeTemporary)
END_MESSAGE_MAP()

TEST_F(Dialogs, DeleteTemporaryObjectsWhileTheyRun) {
    const CBrush* const kept = CBrush::FromHandle(::GetSysColorBrush(COLOR_WINDOW));
    TemporaryDialog dialog(Frame());
    EXPECT_EQ(dialog.DoModal(), IDOK);
    ASSERT_EQ(dialog.counts.size(), 20u);
    EXPECT_EQ(dialog.counts.back(), dialog.counts.front());
    EXPECT_EQ(CBrush::FromHandle(::GetSysColorBrush(COLOR_WINDOW)), kept)
        << "made outside the loop";
    EXPECT_EQ(kept->m_hObject, ::GetSysColorBrush(COLOR_WINDOW));
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
