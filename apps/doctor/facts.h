// facts.h - what is known about this machine, its camera SDK and its cameras
//
// Gathered first and judged afterwards (checks.h), so that each judgement can be tested.
#pragma once

#include "apps/common/sdk_control.h"
#include "apps/doctor/gige_camera.h"
#include "platform/host_limits.h"
#include "platform/network_interfaces.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct SdkFacts {
    std::string moduleProblem;           ///< why there is no grabber; empty if there is one
    std::string searched;                ///< where an SDK of this product was looked for, or empty
    std::vector<SdkLibraryPlace> places; ///< in the module's order, to the first that can be loaded
    std::vector<std::string> missing;    ///< entries that the library does not have
    std::optional<std::int32_t> startUp; ///< the library's own result; empty if it was not started
    std::string initFailure;             ///< why the grabber could not be initialised; empty if it
                                         ///< could
};

struct NetworkFacts {
    std::vector<std::string> wanted; ///< the only interfaces that are looked at; empty for all
    std::vector<platform::NetworkInterface> interfaces;
    std::map<std::string, std::uint32_t> filters; ///< reverse path filter by interface, where known
    std::optional<std::uint64_t> receiveBuffer;   ///< bytes
    std::vector<GigeCamera> cameras;              ///< those that replied
};

struct UsbFacts {
    std::optional<std::uint32_t> megabytes;
    std::vector<platform::UsbCamera> cameras;
};

/// A short acquisition.
struct Trial {
    std::uint64_t wanted = 0;
    std::uint64_t whole = 0;
    std::uint64_t incomplete = 0;
    std::string failure; ///< of starting it; empty if it was started
};

/// A camera that the SDK lists.
struct CameraFacts {
    std::string name; ///< "camera 0 (G-130, 0x6080BA04)"
    std::string serial;
    std::string transportLayer; ///< "GEV", "U3V" and so on
    std::string interfaceId;
    bool canOpen = true;
    std::string openFailure; ///< empty if it was opened

    std::optional<std::int64_t> packetSize;
    std::optional<std::int64_t> packetDelay;
    std::optional<double> heartbeatMs;
    std::string heartbeatSetting; ///< what "set" takes for three seconds
    std::string trigger;          ///< the trigger that the camera waits for; empty for none
    std::optional<Trial> trial;
};

struct Facts {
    SdkFacts sdk;
    NetworkFacts network;
    UsbFacts usb;
    std::vector<CameraFacts> cameras;
};
