// grabber_dialogs.cpp - the grabber's way to its windows
#include "grabber/grabber_dialogs.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/window_message.h"
#include "res/resource.h"
#include "ui/windows/feature_control_dialog.h"

#include <memory>

void GrabberDialogs::ShowMessage(MV_WINDOW parent, const char* text, const char* caption,
                                 bool warning, ILogSink*) {
    platform::ShowMessageBox(parent, text, caption, warning);
}

bool GrabberDialogs::HasWindows() {
    return true;
}

ICamCntrlDialog* GrabberDialogs::CreateFeatureControl(CMivoraKVNPyxenClass& grabber) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    auto dialog = std::make_unique<CKVNPyxenFeatureCtrlDialog>(grabber);
    return dialog->Create(IDD_FEATURE_CONTROL) ? dialog.release() : nullptr;
}

MV_ERRCODE GrabberDialogs::RunDeviceFinder(MV_WINDOW, CPyxenAPIAccess&, ILogSink*, std::string&,
                                           MV_DLG_EXITCODE&) {
    return MV_REFUSED;
}
