// display_scale.h - sizes and fonts for the display
#pragma once

#include <afxwin.h>

/// Pixels for a length given in 1/96 of an inch.
int ScaledToDisplay(int length);
/// The system's font for texts in windows; never deleted.
HFONT DisplayFont();
