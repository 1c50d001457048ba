// fuzz_sdk_configuration.cpp - the simulator's PxnC.xml
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
        // The file's own faults may make any call fail, or wait for this.
        char answer[64];
        if (PxnControl("clear", answer, sizeof answer) != PxnErrSuccess) {
            std::abort();
        }
        std::uint32_t found = 0;
        if (PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)) != PxnErrSuccess) {
            std::abort();
        }
        PxnShutdown();
    } else if (PxnCamerasList(nullptr, 0, nullptr, sizeof(PxnCameraInfo)) != PxnErrApiNotStarted) {
        std::abort(); // a refused start leaves nothing started
    }
    return 0;
}
