// feature_dialog_steps_test.cpp - the order in which the feature control dialog does its steps
#include "scripted_dialog.h"
#include "sent_messages.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using FeatureDialogSteps = ScriptedDialog;

TEST_F(FeatureDialogSteps, SelectTheFirstModuleThenExpandThenSelectTheRoot) {
    OpenCamera();
    std::vector<std::pair<UINT, HTREEITEM>> steps;
    {
        const SentMessages watch([&](const CWPSTRUCT& sent) {
            if ((sent.message == TVM_SELECTITEM && sent.wParam == TVGN_CARET) ||
                (sent.message == TVM_EXPAND && sent.wParam == TVE_EXPAND)) {
                steps.emplace_back(sent.message, reinterpret_cast<HTREEITEM>(sent.lParam));
            }
        });
        OpenDialog();
    }
    std::vector<std::pair<UINT, HTREEITEM>> expected = {{TVM_SELECTITEM, Row(L"Camera")},
                                                        {TVM_EXPAND, Row(L"")}};
    for (const wchar_t* const module :
         {L"Camera", L"Interface", L"Localdevice", L"Stream0", L"Transportlayer"}) {
        expected.emplace_back(TVM_EXPAND, Row(module));
    }
    expected.emplace_back(TVM_SELECTITEM, Row(L""));
    EXPECT_EQ(steps, expected);
    EXPECT_EQ(TreeView_GetSelection(Tree()), Row(L""));
}

TEST_F(FeatureDialogSteps, PostTheRequestsBeforeTheRowsAreRegistered) {
    Open();
    const HWND window = Dialog().m_hWnd;
    std::vector<std::size_t> waiting;
    sdk.OnCall("PxnFeatureInvalidationRegister", [&] {
        MSG message{};
        std::vector<MSG> requests;
        while (::PeekMessage(&message, window, WM_FEATURE_UPDATE, WM_FEATURE_UPDATE, PM_REMOVE)) {
            requests.push_back(message);
        }
        waiting.push_back(requests.size());
        for (const MSG& request : requests) {
            ::PostMessage(window, request.message, request.wParam, request.lParam);
        }
    });
    TreeView_Expand(Tree(), Row(L"Camera/DeviceControl"), TVE_EXPAND);
    Dialog().OnTreeExpanded();
    sdk.ClearHooks();
    EXPECT_EQ(waiting, (std::vector<std::size_t>{3, 3, 3}));
}

TEST_F(FeatureDialogSteps, MoveAllPartsAtOnce) {
    Open();
    const HWND close = Control(7001);
    CRect before;
    ::GetWindowRect(close, before);
    bool renamed = false;
    {
        // Once the first part moves, the last one is not looked up any more.
        const SentMessages watch([&](const CWPSTRUCT& sent) {
            if (sent.message == WM_WINDOWPOSCHANGING && sent.hwnd == Control(4108)) {
                ::SetWindowLongPtr(close, GWLP_ID, 77);
                renamed = true;
            }
        });
        Dialog().SetWindowPos(nullptr, 0, 0, 1100, 800, SWP_NOMOVE | SWP_NOZORDER);
    }
    ::SetWindowLongPtr(close, GWLP_ID, 7001);
    ASSERT_TRUE(renamed);
    CRect after;
    ::GetWindowRect(close, after);
    EXPECT_GT(after.left, before.left);
    EXPECT_GT(after.top, before.top);
}

TEST_F(FeatureDialogSteps, GiveTheWindowBackWhenItsPartsHaveGone) {
    Open();
    Select(L"Camera/DeviceControl/DeviceUserID");
    const HWND window = Dialog().m_hWnd;
    const HWND parts[] = {Editor(), Control(4109), Control(4108)};
    std::vector<HWND> gone;
    {
        const SentMessages watch([&](const CWPSTRUCT& sent) {
            if (sent.message == WM_DESTROY &&
                std::find(std::begin(parts), std::end(parts), sent.hwnd) != std::end(parts)) {
                EXPECT_EQ(Grabber().GetRegisteredWindow(0), window) << gone.size();
                gone.push_back(sent.hwnd);
            }
        });
        Dialog().DestroyWindow();
    }
    SetDialog(nullptr);
    EXPECT_EQ(gone, std::vector<HWND>(std::begin(parts), std::end(parts)));
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), nullptr);
}

} // namespace
