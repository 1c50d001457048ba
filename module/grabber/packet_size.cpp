// packet_size.cpp - fitting a network camera's packets to the network
#include "grabber/packet_size.h"

#include "sdk/feature.h"
#include "sdk/sdk_error.h"

namespace pyxen {

void AdjustPacketSize(const CPyxenAPIAccess& api, PxnHandle stream, Logger log) {
    log.Information("CMivoraKVNPyxenClass::OpenActCamera: Executing GVSP Packet size adjustment");
    const Feature command(api, stream, "GVSPAdjustPacketSize", FeatureType::kCommand);
    if (const PxnError result = command.Run()) {
        ReportSdkError(
            "CMivoraKVNPyxenClass::OpenActCamera: Failed to execute GVSP packet size adjustment",
            result, log);
        return;
    }
    // Compatibility: neither a pause nor a limit. The SDK ends the wait, with an error if it must.
    for (;;) {
        bool done = false;
        const PxnError result = command.IsDone(done);
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
