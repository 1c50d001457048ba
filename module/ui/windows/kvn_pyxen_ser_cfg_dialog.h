// kvn_pyxen_ser_cfg_dialog.h - the dialog in which the user configures a camera's serial port
#pragma once

#include "serial/serial_dialog.h"

#include <afxwin.h>

/// Offers what the selected port allows. Works on a copy of the data, which holds the user's choice
/// once DoModal has returned IDOK.
class CKVNPyxenSerCfgDialog : public CDialog {
    DECLARE_DYNAMIC(CKVNPyxenSerCfgDialog)
public:
    CKVNPyxenSerCfgDialog(const pyxen::SerialDialogData& shown, CWnd* parent);

    const pyxen::SerialDialogData& Data() const { return data; }

    /// Fills the controls.
    BOOL OnInitDialog() override;

protected:
    /// Stores the contents of the controls and ends the dialog. If the delay is not a number,
    /// reports that, stores nothing and stays open.
    void OnOK() override;
    void OnPortSelected();

    DECLARE_MESSAGE_MAP()

private:
    struct ChoiceList {
        int id;
        pyxen::SerialField field;
        CComboBox control;
    };

    /// Attaches the control objects; false when a control is missing.
    bool HoldControls();
    void Fill();
    void FillChoices(ChoiceList& list);

    pyxen::SerialDialogData data;
    CListBox ports;
    ChoiceList choices[4];
    CEdit delay;
};
