// shell_context.h - what the operations of the shell work on
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

// Add the operations that every grabber has. The context must outlive them.
void AddGrabberOperations(ShellOperations& operations, const ShellContext& context);
void AddConfigurationOperations(ShellOperations& operations, const ShellContext& context);
void AddCameraOperations(ShellOperations& operations, const ShellContext& context);
void AddChannelOperations(ShellOperations& operations, const ShellContext& context);
void AddParameterOperations(ShellOperations& operations, const ShellContext& context);
/// Operations of the shell itself: waiting, events, log entries, SDK commands.
void AddHostOperations(ShellOperations& operations, const ShellContext& context);
/// All of the above.
void AddAllOperations(ShellOperations& operations, const ShellContext& context);
