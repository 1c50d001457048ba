// session_share.cpp - what the sessions of a process share
#include "apps/common/session_share.h"

SessionShare::SessionShare(const AppOptions& options) : sdkPlaces(ApplySdk(options)) {
    log.Open(options.log, options.logTimes);
    if (!options.sdkScript.empty()) {
        sdkControl.RunScript(options.sdkScript);
    }
}

bool SessionShare::Claim(const Session& session, std::uint32_t uniqueId) {
    for (const auto& [other, camera] : cameras) {
        if (other != &session && camera == uniqueId) {
            return false;
        }
    }
    cameras[&session] = uniqueId;
    return true;
}
