// grabber_dialogs.h - the one way from the grabber to windows
#pragma once

#include "mivora/types.h"
#include "sdk/logger.h"

#include <string>

class CMivoraKVNPyxenClass;
class CPyxenAPIAccess;
class ICamCntrlDialog;

/// What the grabber asks of the user interface. One implementation is linked per platform. Where
/// there are no windows a request that would open one logs one error line and does nothing.
namespace pyxen::grabber_dialogs {

/// A modal box with an OK button; `warning` adds the exclamation icon.
void ShowMessage(MV_WINDOW parent, const char* text, const char* caption, bool warning, Logger log);
/// True where windows can be opened at all.
bool HasWindows();
/// Makes the modeless feature control dialog for the grabber; null when that failed.
ICamCntrlDialog* CreateFeatureControl(CMivoraKVNPyxenClass& grabber);
/// Runs the device finder with `selectedId` preselected. MV_OK when it was shown: `exitCode` and,
/// on MV_DLG_OK, `selectedId` then hold what was chosen. MV_REFUSED where it cannot be shown.
MV_ERRCODE RunDeviceFinder(MV_WINDOW parent, CPyxenAPIAccess& api, Logger log,
                           std::string& selectedId, MV_DLG_EXITCODE& exitCode);

} // namespace pyxen::grabber_dialogs
