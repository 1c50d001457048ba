// grabber_dialogs.cpp - the grabber's way to its windows
#include "grabber/grabber_dialogs.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/window_message.h"
#include "sdk/logger.h"
#include "ui/windows/feature_control_dialog.h"
#include "ui/windows/kvn_pyxen_device_finder_dialog.h"

#include <memory>

using namespace pyxen;

void grabber_dialogs::ShowMessage(MV_WINDOW parent, const char* text, const char* caption,
                                  bool warning, Logger) {
    platform::ShowMessageBox(parent, text, caption, warning);
}

bool grabber_dialogs::HasWindows() {
    return true;
}

ICamCntrlDialog* grabber_dialogs::CreateFeatureControl(CMivoraKVNPyxenClass& grabber) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    return CKVNPyxenFeatureCtrlDialog::Open(grabber).release();
}

MV_ERRCODE grabber_dialogs::RunDeviceFinder(MV_WINDOW parent, CPyxenAPIAccess& api, Logger log,
                                            std::string& selectedId, MV_DLG_EXITCODE& exitCode) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    CKVNPyxenDeviceFinderDialog dialog(api, log, CWnd::FromHandle(static_cast<HWND>(parent)));
    dialog.SetSelectedId(selectedId);
    const INT_PTR ending = dialog.DoModal();
    if (ending <= 0) {
        return MV_REFUSED;
    }
    exitCode = MV_DLG_CANCEL;
    if (ending == IDOK) {
        selectedId = dialog.GetSelectedId();
        exitCode = MV_DLG_OK;
    }
    return MV_OK;
}
