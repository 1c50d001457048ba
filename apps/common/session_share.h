// session_share.h - what the sessions of a process share
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/log_file.h"
#include "apps/common/sdk_control.h"

#include <cstdint>
#include <map>
#include <string>

class Session;

/// The camera SDK with its control interface, the log, and which session has which camera. Sessions
/// are made, open their first camera and end on one thread.
class SessionShare {
public:
    /// Sets PYXEN_HOME, opens and installs the log and runs the SDK script. Throws CommandFailure.
    explicit SessionShare(const AppOptions& options);
    SessionShare(const SessionShare&) = delete;
    SessionShare& operator=(const SessionShare&) = delete;

    /// See ApplySdk.
    const std::string& SdkPlaces() const { return sdkPlaces; }
    SdkControl& Sdk() { return sdkControl; }
    LogFile& Log() { return log; }

    /// The session is about to open the camera and leaves the one it had. False when another
    /// session has it.
    bool Claim(const Session& session, std::uint32_t uniqueId);
    void Release(const Session& session) { cameras.erase(&session); }

private:
    /// Installs a log sink for its own lifetime.
    class InstalledSink {
    public:
        explicit InstalledSink(ILogSink& sink) { MivoraInstallLogSink(&sink); }
        ~InstalledSink() { MivoraInstallLogSink(nullptr); }
        InstalledSink(const InstalledSink&) = delete;
        InstalledSink& operator=(const InstalledSink&) = delete;
    };

    const std::string sdkPlaces;
    SdkControl sdkControl;
    LogFile log;
    const InstalledSink installedLog{log};
    std::map<const Session*, std::uint32_t> cameras; // unique ids
};
