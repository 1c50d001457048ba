// grabber_dialogs.cpp - the grabber's way to windows where there are no windows
#include "grabber/grabber_dialogs.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/window_message.h"
#include "sdk/logger.h"

namespace pyxen {

void grabber_dialogs::ShowMessage(MV_WINDOW parent, const char* text, const char* caption,
                                  bool warning, Logger log) {
    if (!platform::ShowMessageBox(parent, text, caption, warning) && log) {
        log.Error("GrabberDialogs::ShowMessage: Cannot show \"%s\", there are no windows", caption);
    }
}

bool grabber_dialogs::HasWindows() {
    return platform::HasMessages();
}

ICamCntrlDialog* grabber_dialogs::CreateFeatureControl(CMivoraKVNPyxenClass& grabber) {
    Logger(grabber.GetLogSink())
        .Error("GrabberDialogs::CreateFeatureControl: there are no windows");
    return nullptr;
}

MV_ERRCODE grabber_dialogs::RunDeviceFinder(MV_WINDOW, CPyxenAPIAccess&, Logger log, std::string&,
                                            MV_DLG_EXITCODE&) {
    log.Error("GrabberDialogs::RunDeviceFinder: there are no windows");
    return MV_REFUSED;
}

} // namespace pyxen
