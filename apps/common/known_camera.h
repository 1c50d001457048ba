// known_camera.h - the cameras of a grabber's list, by all that people call them
#pragma once

#include "apps/common/json_text.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CMivoraGrabber;
class ServiceClient;

/// A camera of the grabber's list. What only the module's services know is empty where the module
/// offers none.
struct KnownCamera {
    std::int32_t index = 0;
    std::uint32_t uniqueId = 0;
    bool isActive = false;
    std::string name;
    std::string id;
    std::string extendedId; ///< what the module's key UniqueId of the host's ini file contains
    std::string vendor;     ///< as a rule known of the open camera only
    std::string model;
    std::string serialNumber;
    std::string userName; ///< as `vendor`
    std::string interfaceId;
    std::string interfaceName;
    std::string transportLayer;
    bool canOpen = true;
    bool canRead = true;

    bool operator==(const KnownCamera&) const = default;

    /// "camera 0 (Name, 0x01234567)".
    std::string Text() const;
    /// The same with model, serial number, interface, extended identifier and access as far as they
    /// are known; for lists.
    std::string WholeText() const;
    /// "free", "in use, can be read" or "in use".
    const char* AccessText() const;
};

/// The camera as the members of an object.
std::vector<JsonMember> KnownCameraMembers(const KnownCamera& camera);

/// "0x01234567".
std::string UniqueIdText(std::uint32_t uniqueId);

/// The grabber's list. `services` may be null; when they cannot list the cameras at present, what
/// they would add is missing.
std::vector<KnownCamera> ListKnownCameras(CMivoraGrabber& grabber, ServiceClient* services);

/// The positions in `cameras` of all that `wanted` names: the one of that index, else that of this
/// unique id or identifier, else all with this name, user name, serial number, model, vendor or
/// interface.
std::vector<std::size_t> FindCameras(const std::vector<KnownCamera>& cameras,
                                     const std::string& wanted);
