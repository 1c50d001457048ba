// fuzz_sdk_configuration.cpp - reading the simulator's PxnC.xml
#include "fuzz/fuzz_file.h"
#include "pxnc.h"
#include "pxnc/simulator/control.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzFile file(data, size);
    const std::wstring path(file.Path().begin(), file.Path().end());
    if (PxnStartup(path.c_str()) == PxnErrSuccess) {
        // Faults in the configuration may make any call fail, or block it until they are cleared.
        char reply[64];
        if (PxnControl("clear", reply, sizeof reply) != PxnErrSuccess) {
            std::abort();
        }
        std::uint32_t found = 0;
        if (PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)) != PxnErrSuccess) {
            std::abort();
        }
        PxnShutdown();
    } else if (PxnCamerasList(nullptr, 0, nullptr, sizeof(PxnCameraInfo)) != PxnErrApiNotStarted) {
        std::abort(); // a failed start must leave nothing started
    }
    return 0;
}
