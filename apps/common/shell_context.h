// shell_context.h - what the shell's operations work on
#pragma once

class CMivoraGrabber;
class EventRecorder;
class ILogSink;
class SdkControl;
class ShellOperations;

struct ShellContext {
    CMivoraGrabber& grabber;
    EventRecorder& events;
    ILogSink& log;
    SdkControl& sdkControl;
};

// The operations that every grabber has. The context must outlive them.
void AddGrabberOperations(ShellOperations& operations, const ShellContext& context);
void AddConfigurationOperations(ShellOperations& operations, const ShellContext& context);
void AddCameraOperations(ShellOperations& operations, const ShellContext& context);
void AddChannelOperations(ShellOperations& operations, const ShellContext& context);
void AddParameterOperations(ShellOperations& operations, const ShellContext& context);
/// What the shell itself brings: waiting, events, marks in the log.
void AddHostOperations(ShellOperations& operations, const ShellContext& context);
/// All of the above.
void AddAllOperations(ShellOperations& operations, const ShellContext& context);
