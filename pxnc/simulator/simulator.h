// simulator.h - everything that lives from the first startup to the last shutdown
#pragma once

#include "pxnc/simulator/accounting.h"
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/configuration.h"
#include "pxnc/simulator/delayed_commands.h"
#include "pxnc/simulator/event_dispatcher.h"
#include "pxnc/simulator/handle_table.h"
#include "pxnc/simulator/string_pool.h"
#include "pxnc/simulator/system_modules.h"

#include <memory>
#include <string>
#include <vector>

namespace pxsim {

/// The modules of one run. The lists are fixed once it is started; any thread may use them.
class Simulator : public FrameScheduler {
public:
    explicit Simulator(const Configuration& configuration);
    ~Simulator() override;
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    /// Starts the event thread and hands out the handles of the upper modules.
    bool Start();
    /// Closes all cameras and ends all threads; what was left open is said on standard error.
    void Stop();

    StringPool& Strings() { return strings; }
    EventDispatcher& Events() { return events; }
    DelayedCommands& Delayed() { return delayed; }
    HandleTable& Handles() { return handles; }
    Accounting& Counts() { return accounting; }
    const std::vector<std::unique_ptr<TransportLayer>>& TransportLayers() const { return layers; }
    const std::vector<std::unique_ptr<Interface>>& Interfaces() const { return interfaces; }
    const std::vector<std::unique_ptr<Camera>>& Cameras() const { return cameras; }
    const Configuration& Setup() const { return configuration; }
    /// By plain or extended identifier, plugged or not; null when there is none.
    Camera* FindCamera(const std::string& id) const;

    /// Plugs or unplugs a camera and raises the discovery event; false when nothing changes.
    bool SetPlugged(Camera& camera, bool plugged);
    /// Raises a discovery event of another kind.
    void RaiseCameraEvent(const char* type, const Camera& camera);
    /// False when there is no such interface.
    bool RaiseInterfaceEvent(const char* type, const std::string& interfaceId);
    std::string LeakReport() const;
    /// The first thing in the configuration that a camera cannot do, or null.
    const Setting* FirstProblem() const;

    // FrameScheduler
    void OnScheduledFrame(Camera& sender, std::uint64_t frameId) override;

private:
    const Configuration configuration;
    StringPool strings;
    EventDispatcher events;
    HandleTable handles;
    Accounting accounting;
    SystemModule system;
    std::vector<std::unique_ptr<TransportLayer>> layers;
    std::vector<std::unique_ptr<Interface>> interfaces;
    std::vector<std::unique_ptr<Camera>> cameras;
    DelayedCommands delayed;
};

} // namespace pxsim
