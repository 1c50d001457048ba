// recording_facts.cpp - describes what a session's camera is about to record
#include "apps/mivora/recording_facts.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"

#include <initializer_list>

namespace {

std::optional<std::string> NotEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

/// The first of these features that can be read.
std::optional<ServiceValue> ReadOneOf(ServiceClient& services, const char* module,
                                      std::initializer_list<const char*> features) {
    for (const char* const feature : features) {
        if (std::optional<ServiceValue> value = services.TryReadFeature(module, feature)) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<std::string> TextOf(const std::optional<ServiceValue>& value) {
    return value ? NotEmpty(value->text) : std::nullopt;
}

std::optional<std::int64_t> NumberOf(const std::optional<ServiceValue>& value) {
    return value ? std::optional(value->integer) : std::nullopt;
}

std::optional<double> RealOf(const std::optional<ServiceValue>& value) {
    return value ? std::optional(value->type == MV_FEATURE_INTEGER
                                     ? static_cast<double>(value->integer)
                                     : value->real)
                 : std::nullopt;
}

RecordedCamera CameraOf(ServiceClient& services, std::int32_t index) {
    RecordedCamera camera;
    for (const DescribedCamera& described : services.TryListCameras()) {
        if (static_cast<std::int32_t>(described.index) == index) {
            camera.vendor = NotEmpty(described.vendor);
            camera.model = NotEmpty(described.model);
            camera.serial = NotEmpty(described.serialNumber);
            camera.userName = NotEmpty(described.userName);
            camera.id = NotEmpty(described.id);
            camera.extendedId = NotEmpty(described.extendedId);
            camera.interfaceName = NotEmpty(described.interfaceName);
        }
    }
    return camera;
}

void AddFeatures(ServiceClient& services, RecordingDescription& description) {
    description.sdkVersion = TextOf(ReadOneOf(services, "System", {"SystemVersion", "TLVersion"}));
    description.pixelFormat = TextOf(ReadOneOf(services, "Camera", {"PixelFormat"}));
    description.offsetX = NumberOf(ReadOneOf(services, "Camera", {"OffsetX"}));
    description.offsetY = NumberOf(ReadOneOf(services, "Camera", {"OffsetY"}));
    description.exposureUs =
        RealOf(ReadOneOf(services, "Camera", {"ExposureTime", "ExposureTimeAbs"}));
    description.frameRate =
        RealOf(ReadOneOf(services, "Camera", {"AcquisitionFrameRate", "AcquisitionFrameRateAbs"}));
}

} // namespace

RecordedCamera DescribeCamera(Session& session) {
    ServiceClient* const services = session.OptionalServices();
    return services ? CameraOf(*services, session.Grabber().GetActCameraIndex()) : RecordedCamera();
}

RecordingDescription DescribeRecording(Session& session) {
    CMivoraGrabber& grabber = session.Grabber();
    RecordingDescription description;
    description.program = "mivora";
    description.moduleName = NotEmpty(grabber.GetDriverName());
    description.moduleVersion = NotEmpty(grabber.GetDriverVersion());
    description.layout = DescribeImage(session.CheckedMode());
    try {
        ServiceClient& services = session.Services();
        description.camera = CameraOf(services, grabber.GetActCameraIndex());
        AddFeatures(services, description);
    } catch (const CommandFailure&) {
        // A module without services.
    }
    return description;
}
