// transport_modules.h - the transport layers and the interfaces below them
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/network_interfaces.h"
#include "pxnc/skeleton/handle_table.h"
#include "pxnc/skeleton/text_pool.h"

#include <cstdint>
#include <string>
#include <vector>

namespace genicam {

/// How a camera is reached.
enum class Protocol {
    kGigEVision,
    kUsb3Vision,
};

/// The modules "GigE Vision" and "USB3 Vision" with one interface module per network interface and
/// one for USB. Modules appear as network interfaces do and stay until the end. Any thread.
class TransportModules {
public:
    TransportModules(skeleton::TextPool& textPool, skeleton::HandleTable& handleTable,
                     const Configuration& configuration);

    /// Adds the network interfaces that have come up since the last time.
    void Update(const std::vector<NetworkInterface>& interfaces);

    PxnHandle LayerOf(Protocol protocol) const;
    /// The module of the network interface, or of USB with an empty name.
    PxnHandle InterfaceOf(Protocol protocol, const std::string& interfaceName);
    /// False when the configuration leaves the network interface out.
    bool IsAllowed(const std::string& interfaceName) const;

    std::vector<PxnTransportLayerInfo> Layers() const;
    std::vector<PxnInterfaceInfo> Interfaces() const;

private:
    void AddLayer(std::uint32_t type) REQUIRES(mutex);
    PxnHandle AddInterface(const PxnTransportLayerInfo& layer, const std::string& id,
                           const std::string& displayName) REQUIRES(mutex);

    skeleton::TextPool& texts;
    skeleton::HandleTable& handles;
    const std::vector<std::string> allowedInterfaces;
    mutable platform::Mutex mutex;
    std::vector<PxnTransportLayerInfo> layers GUARDED_BY(mutex);
    std::vector<PxnInterfaceInfo> interfaceInfos GUARDED_BY(mutex);
};

} // namespace genicam
