// save_dialog.h - asks where an image is to be saved
#pragma once

#include <windows.h>

#include <string>

/// The chosen file, its name ending with a format that image files have; empty when the user
/// cancelled.
std::string AskForImageFile(HWND parent);
