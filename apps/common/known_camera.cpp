// known_camera.cpp - the cameras of a grabber's list, by all that people call them
#include "apps/common/known_camera.h"

#include "apps/common/parse_number.h"
#include "apps/common/service_client.h"
#include "mivora/grabber.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <functional>

namespace {

std::vector<std::size_t> PositionsWhere(const std::vector<KnownCamera>& cameras,
                                        const std::function<bool(const KnownCamera&)>& fits) {
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i < cameras.size(); ++i) {
        if (fits(cameras[i])) {
            positions.push_back(i);
        }
    }
    return positions;
}

} // namespace

std::vector<JsonMember> KnownCameraMembers(const KnownCamera& camera) {
    return {{"index", camera.index},
            {"uniqueId", camera.uniqueId},
            {"name", camera.name},
            {"active", camera.isActive},
            {"vendor", camera.vendor},
            {"model", camera.model},
            {"serialNumber", camera.serialNumber},
            {"userName", camera.userName},
            {"interface", camera.interfaceName},
            {"transportLayer", camera.transportLayer},
            {"access", camera.AccessText()},
            {"id", camera.id},
            {"extendedId", camera.extendedId}};
}

std::string UniqueIdText(std::uint32_t uniqueId) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(uniqueId));
    return text;
}

std::string KnownCamera::Text() const {
    return "camera " + std::to_string(index) + " (" + platform::PrintableText(name) + ", " +
           UniqueIdText(uniqueId) + ")";
}

std::string KnownCamera::WholeText() const {
    std::string text = Text();
    const auto add = [&text](const char* what, const std::string& value) {
        if (!value.empty()) {
            text += std::string(", ") + what + platform::PrintableText(value);
        }
    };
    add("user name ", userName);
    add("", vendor);
    add("", model == name ? "" : model);
    add("serial number ", serialNumber);
    add("at ", interfaceName.empty() ? interfaceId : interfaceName);
    add("", extendedId);
    add("", canOpen ? "" : AccessText());
    return text;
}

const char* KnownCamera::AccessText() const {
    if (canOpen) {
        return "free";
    }
    return canRead ? "in use, can be read" : "in use";
}

std::vector<KnownCamera> ListKnownCameras(CMivoraGrabber& grabber, ServiceClient* services) {
    const auto count = static_cast<std::int32_t>(grabber.GetNumCameras());
    std::vector<KnownCamera> cameras;
    cameras.reserve(grabber.GetNumCameras());
    for (std::int32_t i = 0; i < count; ++i) {
        CMivoraCamera* const node = grabber.GetCamera(i);
        KnownCamera camera;
        camera.index = i;
        camera.uniqueId = node->GetCameraUniqueID();
        camera.isActive = i == grabber.GetActCameraIndex();
        camera.name = node->GetCameraName();
        cameras.push_back(camera);
    }
    const std::vector<DescribedCamera> described =
        services ? services->TryListCameras() : std::vector<DescribedCamera>();
    for (const DescribedCamera& more : described) {
        if (more.index < cameras.size()) {
            KnownCamera& camera = cameras[more.index];
            camera.id = more.id;
            camera.extendedId = more.extendedId;
            camera.vendor = more.vendor;
            camera.model = more.model;
            camera.serialNumber = more.serialNumber;
            camera.userName = more.userName;
            camera.interfaceId = more.interfaceId;
            camera.interfaceName = more.interfaceName;
            camera.transportLayer = more.transportLayer;
            camera.canOpen = more.canOpen;
            camera.canRead = more.canRead;
        }
    }
    return cameras;
}

std::vector<std::size_t> FindCameras(const std::vector<KnownCamera>& cameras,
                                     const std::string& wanted) {
    if (wanted.empty()) {
        return {}; // no empty text of a camera is its name
    }
    const auto number = ParseUnsigned(wanted);
    if (number && *number < cameras.size()) {
        return {static_cast<std::size_t>(*number)};
    }
    const std::vector<std::size_t> unique = PositionsWhere(cameras, [&](const KnownCamera& camera) {
        return (number && *number == camera.uniqueId) || wanted == camera.extendedId ||
               wanted == camera.id;
    });
    if (!unique.empty()) {
        return unique;
    }
    return PositionsWhere(cameras, [&](const KnownCamera& camera) {
        return wanted == camera.name || wanted == camera.userName ||
               wanted == camera.serialNumber || wanted == camera.model || wanted == camera.vendor ||
               wanted == camera.interfaceId || wanted == camera.interfaceName;
    });
}
