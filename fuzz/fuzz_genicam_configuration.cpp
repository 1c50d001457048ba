// fuzz_genicam_configuration.cpp - reading PxnC.xml for cameras on Aravis
#include "fuzz/fuzz_file.h"
#include "pxnc/genicam/configuration.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzFile file(data, size);
    const std::wstring path(file.Path().begin(), file.Path().end());
    genicam::Configuration configuration;
    const PxnError result = configuration.Load(path.c_str());
    if (result != PxnErrSuccess && result != PxnErrXml) {
        std::abort();
    }
    if (result == PxnErrSuccess && configuration.packetSize != 0 &&
        (configuration.packetSize < genicam::kLeastPacketSize ||
         configuration.packetSize > genicam::kGreatestPacketSize)) {
        std::abort(); // what was accepted must be within the limits
    }
    for (const std::string& name : configuration.interfaces) {
        if (name.empty()) {
            std::abort();
        }
    }
    return 0;
}
