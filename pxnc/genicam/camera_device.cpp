// camera_device.cpp - the control connection to one camera
#include "pxnc/genicam/camera_device.h"

#include "platform/sleep.h"
#include "pxnc/genicam/description_check.h"
#include "pxnc/genicam/length_limit.h"
#include "pxnc/genicam/network_interfaces.h"
#include "pxnc/genicam/result_codes.h"

#include <cstddef>
#include <utility>

namespace genicam {
namespace {

/// A GigE Vision camera is opened by its addresses: by its identifier Aravis would first wait for
/// a search that is under way.
ArvDevice* OpenDevice(const CameraDevice::Address& address, GError** error) {
    const std::vector<NetworkInterface> interfaces = ListNetworkInterfaces();
    const NetworkInterface* ours = FindInterfaceFor(interfaces, address.network);
    if (address.protocol != Protocol::kGigEVision || !ours) {
        return arv_open_device(address.id.c_str(), error);
    }
    const ObjectOwner<GInetAddress> local(
        g_inet_address_new_from_string(ToText(ours->address).c_str()));
    const ObjectOwner<GInetAddress> remote(g_inet_address_new_from_string(address.network.c_str()));
    return arv_gv_device_new(local.get(), remote.get(), error);
}

/// A camera without a description passes: opening it fails for other reasons.
PxnError CheckDescriptionOf(ArvDevice* device) {
    ArvGc* const description = arv_device_get_genicam(device);
    std::size_t size = 0;
    const char* const text = arv_device_get_genicam_xml(device, &size);
    if (!description || !text) {
        return PxnErrSuccess;
    }
    LimitRegisterLengths(description);
    return CheckDescription(description, {text, size});
}

// How long the destructor gives a signal's emission to let go of the device.
constexpr int kEmissionPatienceMs = 1000;

} // namespace

PxnError CameraDevice::Open(const Address& address, std::uint32_t accessMode,
                            const Configuration& configuration, std::function<void()> lossHandler,
                            std::shared_ptr<CameraDevice>& device) {
    ErrorOwner error;
    ObjectOwner<ArvDevice> opened(OpenDevice(address, error.Receive()));
    if (!opened) {
        return error ? ToResult(error) : PxnError{PxnErrNotFound};
    }
    if (const PxnError failed = CheckDescriptionOf(opened.get())) {
        return failed;
    }
    std::shared_ptr<CameraDevice> result(
        new CameraDevice(address, accessMode == PxnAccessModeFull, opened.get()));
    opened.reset();
    if (!result->camera) {
        return PxnErrFeaturesUnavailable;
    }
    if (const PxnError failed = result->Prepare(accessMode, configuration)) {
        return failed;
    }
    result->onLost = std::move(lossHandler);
    result->lostSignal =
        g_signal_connect(result->Device(), "control-lost", G_CALLBACK(OnControlLost), result.get());
    if (ArvGvDevice* gigE = result->GigEDevice();
        gigE && result->IsWritable() && !arv_gv_device_is_controller(gigE)) {
        // Control was lost before the signal was connected.
        return PxnErrInvalidAccess;
    }
    device = std::move(result);
    return PxnErrSuccess;
}

CameraDevice::CameraDevice(const Address& address, bool isWritable, ArvDevice* device)
    : where(address),
      writable(isWritable),
      nodeMutex(std::make_shared<platform::Mutex>()),
      released(std::make_shared<platform::Event>()) {
    ErrorOwner error;
    camera.reset(arv_camera_new_with_device(device, error.Receive()));
}

CameraDevice::~CameraDevice() {
    if (camera) {
        ObjectOwner<ArvDevice> device(ARV_DEVICE(g_object_ref(Device())));
        if (lostSignal != 0) {
            g_signal_handler_disconnect(device.get(), lostSignal);
        }
        camera.reset();
        // The emission of the signal holds a reference a moment longer than its handlers run. Were
        // that the last one, Aravis' heartbeat thread would have to wait for itself.
        const auto references = [&device] {
            return g_atomic_int_get(&G_OBJECT(device.get())->ref_count);
        };
        for (int waited = 0; references() > 1 && waited < kEmissionPatienceMs; ++waited) {
            platform::SleepMs(1);
        }
    }
    released->Set();
}

PxnError CameraDevice::Prepare(std::uint32_t accessMode, const Configuration& configuration) {
    if (!Description()) {
        return PxnErrFeaturesUnavailable;
    }
    ArvGvDevice* gigE = GigEDevice();
    if (!gigE) {
        return PxnErrSuccess;
    }
    ErrorOwner error;
    if (accessMode == PxnAccessModeRead) {
        // Aravis takes control on opening whenever it can.
        arv_gv_device_leave_control(gigE, error.Receive());
        return PxnErrSuccess;
    }
    if (!arv_gv_device_is_controller(gigE)) {
        return PxnErrInvalidAccess;
    }
    if (IsLoopbackAddress(where.network)) {
        // Packet sockets see nothing of what the loopback interface carries.
        arv_gv_device_set_stream_options(gigE, ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    }
    if (configuration.packetSize != 0) {
        arv_gv_device_set_packet_size_adjustment(gigE, ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
        arv_gv_device_set_packet_size(gigE, static_cast<gint>(configuration.packetSize),
                                      error.Receive());
    }
    return ToResult(error);
}

ArvGvDevice* CameraDevice::GigEDevice() const {
    return ARV_IS_GV_DEVICE(Device()) ? ARV_GV_DEVICE(Device()) : nullptr;
}

void CameraDevice::OnControlLost(ArvDevice*, gpointer self) {
    static_cast<CameraDevice*>(self)->MarkLost();
}

void CameraDevice::MarkLost() {
    if (!lost->exchange(true) && onLost) {
        onLost();
    }
}

PxnError CameraDevice::GetPayloadSize(std::uint32_t& size) const {
    const platform::MutexLock lock(*nodeMutex);
    ErrorOwner error;
    size = arv_camera_get_payload(camera.get(), error.Receive());
    return ToResult(error);
}

void CameraDevice::LockTransportParameters(bool locked) const {
    if (*lost) {
        return;
    }
    const platform::MutexLock lock(*nodeMutex);
    ArvGcNode* node = arv_device_get_feature(Device(), "TLParamsLocked");
    if (node && ARV_IS_GC_INTEGER(node)) {
        ErrorOwner error;
        arv_gc_integer_set_value(ARV_GC_INTEGER(node), locked ? 1 : 0, error.Receive());
    }
}

void CameraDevice::StopAcquisition() const {
    if (*lost) {
        return;
    }
    const platform::MutexLock lock(*nodeMutex);
    ErrorOwner error;
    arv_camera_stop_acquisition(camera.get(), error.Receive());
}

PxnError CameraDevice::ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                                  std::uint32_t& done) const {
    if (size == 0) {
        return PxnErrBadParameter;
    }
    ErrorOwner error;
    done = arv_device_read_memory(Device(), address, size, buffer, error.Receive()) ? size : 0;
    return ToResult(error);
}

PxnError CameraDevice::WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                                   std::uint32_t& done) const {
    if (size == 0) {
        return PxnErrBadParameter;
    }
    ErrorOwner error;
    // Aravis takes the bytes without const and only reads them.
    done =
        arv_device_write_memory(Device(), address, size, const_cast<char*>(bytes), error.Receive())
            ? size
            : 0;
    return ToResult(error);
}

} // namespace genicam
