// screenshot.h - pictures of windows for people to look at
#pragma once

#include <afxwin.h>

#include <string>

/// Writes a window as NAME.png into the directory that the environment variable
/// MIVORA_SCREENSHOTS names. Does nothing where it names none.
void SaveScreenshot(HWND window, const std::string& name);
