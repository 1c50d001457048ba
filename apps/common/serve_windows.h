// serve_windows.h - handles window messages while a program waits
#pragma once

class CMivoraGrabber;

/// Handles this thread's pending window messages, offering them to the grabber's registered dialogs
/// first.
void ServeWindows(const CMivoraGrabber& grabber);
