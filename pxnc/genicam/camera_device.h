// camera_device.h - the control connection to one camera
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/transport_modules.h"
#include "pxnc/include/pxnc.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace genicam {

/// An open camera as Aravis sees it. GigE Vision cameras are controlled exclusively from the first
/// moment and kept by Aravis' heartbeat; the destructor gives the control back.
class CameraDevice {
public:
    /// How to reach a camera.
    struct Address {
        /// Aravis' identifier.
        std::string id;
        Protocol protocol;
        /// Dotted network address; empty for USB.
        std::string network;
    };

    /// Opens the camera. `accessMode` is PxnAccessModeFull, which demands control
    /// (PxnErrInvalidAccess when somebody else has it), or PxnAccessModeRead. `onLost` is called
    /// once, on a thread of Aravis', when the camera is lost while open.
    static PxnError Open(const Address& address, uint32_t accessMode,
                         const Configuration& configuration, std::function<void()> onLost,
                         std::shared_ptr<CameraDevice>& device);
    ~CameraDevice();
    CameraDevice(const CameraDevice&) = delete;
    CameraDevice& operator=(const CameraDevice&) = delete;

    ArvCamera* Camera() const { return camera.get(); }
    ArvDevice* Device() const { return arv_camera_get_device(camera.get()); }
    ArvGc* Description() const { return arv_device_get_genicam(Device()); }
    /// The device as a GigE Vision device; null for a USB one.
    ArvGvDevice* GigEDevice() const;

    /// Held around every use of the description, which Aravis does not protect.
    const std::shared_ptr<platform::Mutex>& NodeMutex() const { return nodeMutex; }
    const Address& Where() const { return where; }
    bool IsWriteable() const { return writeable; }
    bool IsLost() const { return lost; }
    /// Notes that the camera is gone, as the loss of control does, and tells `onLost`.
    void MarkLost();
    /// Signalled when the connection has been given back.
    std::shared_ptr<platform::Event> Released() const { return released; }

    /// Bytes of one frame. Any thread.
    PxnError GetPayloadSize(uint32_t& size) const;
    /// Tells the description that a stream runs, so that it locks what must not change meanwhile.
    /// Does nothing for a description that does not want to know.
    void LockTransportParameters(bool locked) const;
    /// Asks the camera to send nothing more; for one that somebody left running.
    void StopAcquisition() const;
    PxnError ReadMemory(uint64_t address, uint32_t size, char* buffer) const;
    PxnError WriteMemory(uint64_t address, uint32_t size, const char* buffer) const;

private:
    CameraDevice(const Address& address, bool isWriteable, ArvDevice* device);

    static void OnControlLost(ArvDevice* device, gpointer self);
    PxnError Prepare(uint32_t accessMode, const Configuration& configuration);

    const Address where;
    const bool writeable;
    const std::shared_ptr<platform::Mutex> nodeMutex;
    const std::shared_ptr<platform::Event> released;
    std::function<void()> tellLost;
    std::atomic<bool> lost = false;
    gulong lostSignal = 0;
    ObjectOwner<ArvCamera> camera;
};

} // namespace genicam
