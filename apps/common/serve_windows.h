// serve_windows.h - lets a grabber's dialogs live while a program waits
#pragma once

class CMivoraGrabber;

/// Handles the window messages that wait for this thread; the grabber's registered dialogs see
/// them first.
void ServeWindows(const CMivoraGrabber& grabber);
