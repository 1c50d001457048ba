// packet_size.cpp - fitting a network camera's packets to the network
#include "grabber/packet_size.h"

#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

namespace pyxen {

namespace {

constexpr const char* kAdjustCommand = "GVSPAdjustPacketSize";

} // namespace

void AdjustPacketSize(const CPyxenAPIAccess& api, PxnHandle stream, Logger log) {
    log.Information("CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment");
    if (const PxnError result = api.PxnFeatureCommandRun(stream, kAdjustCommand)) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::OpenActCamera: Failed to execute GVSP packet size adjustment",
            result, log);
        return;
    }
    // Compatibility: neither a pause nor a limit. The SDK ends the wait, with an error if it must.
    for (;;) {
        PxnBool done = 0;
        const PxnError result = api.PxnFeatureCommandIsDone(stream, kAdjustCommand, &done);
        if (result == PxnErrNotFound) {
            return;
        }
        if (result != PxnErrSuccess) {
            ReportSdkError(
                "CMivoraKVNPyxenClass::OpenActCamera: Failed to wait for completion of GVSP packet size adjustment",
                result, log);
            return;
        }
        if (done) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: GVSP Packet size adjustment completed.");
            return;
        }
    }
}

} // namespace pyxen
