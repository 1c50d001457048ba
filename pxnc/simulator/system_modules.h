// system_modules.h - the modules above the cameras: system, transport layers, interfaces
#pragma once

#include "pxnc/simulator/configuration.h"
#include "pxnc/simulator/module.h"

#include <memory>
#include <string>

namespace pxsim {

/// The system module with its discovery events.
class SystemModule : public Module {
public:
    SystemModule(skeleton::TextPool& strings, skeleton::Invalidations& events);

    /// Sets the event features, which keep their values until the next event. Called on the event
    /// thread, right before the callbacks of the event.
    void LatchCameraEvent(const char* type, const std::string& cameraId);
    void LatchInterfaceEvent(const char* type, const std::string& interfaceId);

private:
    void Latch(const std::string& subject, const std::string& idSuffix, const char* type,
               const std::string& id);
};

class TransportLayer : public Module {
public:
    TransportLayer(const TransportLayerConfiguration& setup, skeleton::TextPool& strings,
                   skeleton::Invalidations& events);

    void FillInfo(PxnTransportLayerInfo& info) const;
    void SetHandle(PxnHandle newHandle) { handle = newHandle; }
    PxnHandle Handle() const { return handle; }
    const TransportLayerConfiguration& Setup() const { return setup; }

private:
    const TransportLayerConfiguration setup;
    PxnTransportLayerInfo info{};
    PxnHandle handle = nullptr; // set once at startup
};

class Interface : public Module {
public:
    Interface(const InterfaceConfiguration& setup, skeleton::TextPool& strings,
              skeleton::Invalidations& events);

    void FillInfo(PxnInterfaceInfo& info) const;
    void SetHandles(PxnHandle newHandle, PxnHandle newTransportLayer);
    PxnHandle Handle() const { return handle; }
    PxnHandle TransportLayerHandle() const { return transportLayer; }
    const InterfaceConfiguration& Setup() const { return setup; }

private:
    const InterfaceConfiguration setup;
    PxnInterfaceInfo info{};
    PxnHandle handle = nullptr; // both set once at startup
    PxnHandle transportLayer = nullptr;
};

} // namespace pxsim
