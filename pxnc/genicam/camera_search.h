// camera_search.h - searches for cameras with Aravis
#pragma once

#include "pxnc/genicam/transport_modules.h"

#include <string>
#include <vector>

namespace genicam {

/// A camera as a search finds it.
struct FoundCamera {
    Protocol protocol;
    std::string id;
    std::string physicalId;
    std::string network;
    std::string vendor;
    std::string model;
    std::string serial;
};

/// Searches all transports; takes about a second, which is how long Aravis waits for replies from
/// the network. Only one thread at a time may search.
std::vector<FoundCamera> SearchCameras();

/// Makes the next searches leave USB out, or take it in again.
void EnableUsbSearch(bool enabled);

} // namespace genicam
