// camera_device.h - the control connection to one camera
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/transport_modules.h"

#include <atomic>
#include <cstdint>
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

    /// Opens the camera. `accessMode` is PxnAccessModeFull, which needs control
    /// (PxnErrInvalidAccess when somebody else has it), or PxnAccessModeRead. `lossHandler`
    /// is called once, on any thread, when the camera is lost while open.
    static PxnError Open(const Address& address, std::uint32_t accessMode,
                         const Configuration& configuration, std::function<void()> lossHandler,
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
    bool IsWritable() const { return writable; }
    bool IsLost() const { return *lost; }
    /// What IsLost returns; outlives the device without keeping it.
    std::shared_ptr<const std::atomic<bool>> LostFlag() const { return lost; }
    /// The camera is gone: calls the loss handler unless it has been called.
    void MarkLost();
    /// Signalled when the connection has been closed.
    std::shared_ptr<platform::Event> Released() const { return released; }

    /// Bytes of one frame. Any thread.
    PxnError GetPayloadSize(std::uint32_t& size) const;
    /// Makes the description lock what must not change while a stream runs, or unlock it again.
    /// Does nothing for a description without such a lock.
    void LockTransportParameters(bool locked) const;
    /// Asks the camera to send nothing more.
    void StopAcquisition() const;
    /// Registers; `done` is the number of bytes transferred.
    PxnError ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                        std::uint32_t& done) const;
    PxnError WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                         std::uint32_t& done) const;

private:
    CameraDevice(const Address& address, bool isWritable, ArvDevice* device);

    static void OnControlLost(ArvDevice* device, gpointer self);
    PxnError Prepare(std::uint32_t accessMode, const Configuration& configuration);

    const Address where;
    const bool writable;
    const std::shared_ptr<platform::Mutex> nodeMutex;
    const std::shared_ptr<platform::Event> released;
    const std::shared_ptr<std::atomic<bool>> lost = std::make_shared<std::atomic<bool>>(false);
    std::function<void()> onLost;
    gulong lostSignal = 0;
    ObjectOwner<ArvCamera> camera;
};

} // namespace genicam
