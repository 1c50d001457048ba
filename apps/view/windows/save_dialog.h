// save_dialog.h - asks for the file to save an image to
#pragma once

#include <afxwin.h>

#include <string>

/// The chosen path, with an extension that WriteImage knows; empty if the user cancelled.
std::string AskForImageFile(HWND parent);
