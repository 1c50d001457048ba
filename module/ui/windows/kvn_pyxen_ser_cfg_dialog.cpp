// kvn_pyxen_ser_cfg_dialog.cpp - the dialog in which the user configures a camera's serial port
#include "ui/windows/kvn_pyxen_ser_cfg_dialog.h"

#include "res/resource.h"
#include "ui/serial_dialog_logic.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

IMPLEMENT_DYNAMIC(CKVNPyxenSerCfgDialog, CDialog)

BEGIN_MESSAGE_MAP(CKVNPyxenSerCfgDialog, CDialog)
ON_LBN_SELCHANGE(IDC_SERIAL_PORTS, &CKVNPyxenSerCfgDialog::OnPortSelected)
END_MESSAGE_MAP()

CKVNPyxenSerCfgDialog::CKVNPyxenSerCfgDialog(const SerialDialogData& shown, CWnd* parent)
    : CDialog(IDD_SERIAL_CONFIG, parent),
      data(shown),
      choices{{IDC_SERIAL_BAUD, SerialField::kBaud, {}},
              {IDC_SERIAL_BYTE_SIZE, SerialField::kByteSize, {}},
              {IDC_SERIAL_STOP_BITS, SerialField::kStopBits, {}},
              {IDC_SERIAL_PARITY, SerialField::kParity, {}}} {}

BOOL CKVNPyxenSerCfgDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    Fill();
    return TRUE;
}

bool CKVNPyxenSerCfgDialog::HoldControls() {
    const auto hold = [this](CWnd& wnd, int id) {
        return wnd.m_hWnd || wnd.SubclassDlgItem(static_cast<UINT>(id), this);
    };
    bool all = hold(ports, IDC_SERIAL_PORTS) && hold(delay, IDC_SERIAL_DELAY);
    for (ChoiceList& list : choices) {
        all = all && hold(list.control, list.id);
    }
    return all;
}

void CKVNPyxenSerCfgDialog::Fill() {
    if (!m_hWnd || !HoldControls()) {
        return;
    }
    ports.ResetContent();
    for (std::size_t index = 0; index < data.ports.size(); ++index) {
        const int item = ports.AddString(WideText(data.ports[index].displayName).c_str());
        ports.SetItemData(item, index);
        if (static_cast<std::int32_t>(index) == data.portIndex) {
            ports.SetCurSel(item);
        }
    }
    for (ChoiceList& list : choices) {
        FillChoices(list);
    }
    delay.SetWindowText(WideText(FormatDelay(data.settings.intercharacterDelay)).c_str());
}

void CKVNPyxenSerCfgDialog::FillChoices(ChoiceList& list) {
    list.control.ResetContent();
    for (const std::uint32_t choice : OfferedSerialChoices(data, list.field)) {
        const int item =
            list.control.AddString(WideText(SerialChoiceLabel(list.field, choice)).c_str());
        list.control.SetItemData(item, choice);
        if (choice == SerialSettingOf(data.settings, list.field)) {
            list.control.SetCurSel(item);
        }
    }
}

// Choices that were made for the previous port are dropped: each port starts from the stored
// settings.
void CKVNPyxenSerCfgDialog::OnPortSelected() {
    const int item = ports.GetCurSel();
    if (item != LB_ERR) {
        data.portIndex = static_cast<std::int32_t>(ports.GetItemData(item));
        Fill();
    }
}

void CKVNPyxenSerCfgDialog::OnOK() {
    if (!HoldControls()) {
        return;
    }
    SerialDialogData taken = data;
    if (const int item = ports.GetCurSel(); item != LB_ERR) {
        taken.portIndex = static_cast<std::int32_t>(ports.GetItemData(item));
    }
    for (const ChoiceList& list : choices) {
        if (const int item = list.control.GetCurSel(); item != CB_ERR) {
            SerialSettingOf(taken.settings, list.field) =
                static_cast<std::uint32_t>(list.control.GetItemData(item));
        }
    }
    const auto milliseconds = ParseDelay(NarrowText(WindowText(delay)));
    if (!milliseconds) {
        MessageBox(L"Invalid intercharacter delay", L"Error", MB_OK | MB_ICONEXCLAMATION);
        delay.SetFocus();
        return;
    }
    taken.settings.intercharacterDelay = *milliseconds;
    data = std::move(taken);
    CDialog::OnOK();
}

MV_DLG_EXITCODE pyxen::RunSerialDialog(MV_WINDOW parent, SerialDialogData& data) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    CKVNPyxenSerCfgDialog dialog(data, CWnd::FromHandle(static_cast<HWND>(parent)));
    if (dialog.DoModal() != IDOK) {
        return MV_DLG_CANCEL;
    }
    data = dialog.Data();
    return MV_DLG_OK;
}
