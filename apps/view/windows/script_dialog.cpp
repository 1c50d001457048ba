// script_dialog.cpp - commands for the camera SDK's control interface
#include "apps/view/windows/script_dialog.h"

#include "apps/view/windows/resource.h"
#include "apps/view/windows/utf8_text.h"
#include "platform/text.h"

#include <utility>
#include <vector>

namespace {

constexpr UINT kAnswered = WM_APP + 1;

} // namespace

BEGIN_MESSAGE_MAP(CScriptDialog, CDialog)
ON_BN_CLICKED(IDC_SCRIPT_RUN, &CScriptDialog::OnRun)
ON_MESSAGE(kAnswered, &CScriptDialog::OnAnswered)
END_MESSAGE_MAP()

void CScriptDialog::Open(CWnd& parent) {
    if (!m_hWnd && !Create(IDD_SCRIPT, &parent)) {
        return;
    }
    ShowWindow(SW_SHOW);
    ::SetActiveWindow(m_hWnd);
}

BOOL CScriptDialog::OnInitDialog() {
    SetDlgItemText(IDC_SCRIPT_LINES, L"help");
    return CDialog::OnInitDialog();
}

void CScriptDialog::OnRun() {
    const HWND lines = ::GetDlgItem(m_hWnd, IDC_SCRIPT_LINES);
    std::vector<wchar_t> text(static_cast<std::size_t>(::GetWindowTextLength(lines)) + 1);
    ::GetWindowText(lines, text.data(), static_cast<int>(text.size()));
    ::EnableWindow(::GetDlgItem(m_hWnd, IDC_SCRIPT_RUN), FALSE);
    control.RunScript(platform::WideToNarrow(text.data()),
                      [held = answers, window = m_hWnd](const std::string& answer) {
                          {
                              const platform::MutexLock lock(held->mutex);
                              held->text = answer;
                          }
                          ::PostMessage(window, kAnswered, 0, 0);
                      });
}

LRESULT CScriptDialog::OnAnswered(WPARAM, LPARAM) {
    std::string text;
    {
        const platform::MutexLock lock(answers->mutex);
        text = std::exchange(answers->text, {});
    }
    SetDlgItemText(IDC_SCRIPT_ANSWERS, ToWideLines(text).c_str());
    ::EnableWindow(::GetDlgItem(m_hWnd, IDC_SCRIPT_RUN), TRUE);
    return 0;
}
