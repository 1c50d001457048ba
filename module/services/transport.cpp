// transport.cpp - what cameras are connected to
#include "services/transport.h"

#include "sdk/answer_size.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <iterator>

namespace pyxen {

std::vector<PxnInterfaceInfo> ListInterfaces(const CPyxenAPIAccess& api) {
    std::vector<PxnInterfaceInfo> interfaces;
    std::uint32_t count = 0;
    if (api.PxnInterfacesList(nullptr, 0, &count, sizeof(PxnInterfaceInfo)) != PxnErrSuccess ||
        count == 0 || !IsAnswerSize<PxnInterfaceInfo>(count)) {
        return interfaces;
    }
    interfaces.resize(count);
    std::uint32_t found = 0;
    const PxnError result =
        api.PxnInterfacesList(interfaces.data(), count, &found, sizeof(PxnInterfaceInfo));
    const bool isFilled = result == PxnErrSuccess || result == PxnErrMoreData;
    interfaces.resize(isFilled ? std::min(count, found) : 0);
    return interfaces;
}

const PxnInterfaceInfo* FindInterface(const std::vector<PxnInterfaceInfo>& interfaces,
                                      PxnHandle handle) {
    const auto found =
        std::find_if(interfaces.begin(), interfaces.end(), [handle](const PxnInterfaceInfo& one) {
            return one.interfaceHandle == handle;
        });
    return handle && found != interfaces.end() ? &*found : nullptr;
}

const char* TransportLayerName(std::uint32_t type) {
    constexpr const char* kNames[] = {"",     "GEV", "CL",       "IIDC", "UVC",    "CXP",
                                      "CLHS", "U3V", "Ethernet", "PCI",  "Custom", "Mixed"};
    static_assert(std::size(kNames) == PxnTransportLayerMixed + 1);
    return type < std::size(kNames) ? kNames[type] : "";
}

} // namespace pyxen
