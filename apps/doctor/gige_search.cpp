// gige_search.cpp - looks for GigE Vision cameras without an SDK
#include "apps/doctor/gige_search.h"

#include "platform/clock.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint32_t kEverybody = 0xFFFFFFFF;
constexpr std::uint32_t kRegisterMs = 300;
constexpr std::uint32_t kControlBits = 3;
constexpr std::uint32_t kControl = 2;
constexpr std::uint32_t kPersistentAddress = 1;
constexpr std::uint64_t kNanoseconds = 1000000; // of a millisecond

} // namespace

/// The sockets of one interface: one is bound to its address, so that what it sends leaves there;
/// the other hears broadcasts, by which cameras of other subnets reply.
class GigeSearch::Asker {
public:
    Asker(const platform::NetworkInterface& interfaceToAsk, std::uint16_t cameraPort)
        : one(interfaceToAsk), port(cameraPort) {
        isOpen = own.Open(one.address, 0) && all.Open(0, own.Port());
    }

    bool Send(const gvcp::Message& message) {
        // The loopback interface has no broadcast.
        return isOpen && own.Send(one.isLoopback ? one.address : kEverybody, port, message);
    }
    std::optional<platform::Datagram> Receive(std::uint32_t timeoutMs) {
        if (!isOpen) {
            return std::nullopt;
        }
        // What comes to the second socket while the first is waited for is there afterwards.
        auto datagram = all.Receive(0);
        datagram = datagram ? std::move(datagram) : own.Receive(timeoutMs);
        return datagram ? std::move(datagram) : all.Receive(0);
    }
    const platform::NetworkInterface& Interface() const { return one; }

private:
    const platform::NetworkInterface one;
    const std::uint16_t port;
    platform::UdpSocket own;
    platform::UdpSocket all;
    bool isOpen = false;
};

GigeSearch::GigeSearch(std::vector<platform::NetworkInterface> interfacesToAsk,
                       std::uint16_t cameraPort)
    : interfaces(std::move(interfacesToAsk)), port(cameraPort) {}

std::vector<std::unique_ptr<GigeSearch::Asker>> GigeSearch::Askers() const {
    std::vector<std::unique_ptr<Asker>> askers;
    for (const platform::NetworkInterface& one : interfaces) {
        if (one.isUp && one.address != 0) {
            askers.push_back(std::make_unique<Asker>(one, port));
        }
    }
    return askers;
}

std::vector<GigeCamera> GigeSearch::Run(std::uint32_t timeoutMs) {
    std::vector<std::unique_ptr<Asker>> askers = Askers();
    std::vector<GigeCamera> cameras = Collect(askers, timeoutMs);
    for (GigeCamera& camera : cameras) {
        if (camera.IsInSubnet()) {
            ReadRegisters(camera);
        }
    }
    return cameras;
}

std::optional<std::uint32_t> GigeSearch::FindController(const std::string& serial,
                                                        std::uint32_t timeoutMs) {
    if (serial.empty()) {
        return std::nullopt;
    }
    std::vector<std::unique_ptr<Asker>> askers = Askers();
    const std::vector<GigeCamera> cameras = Collect(askers, timeoutMs, serial);
    const auto camera = std::find_if(cameras.begin(), cameras.end(), [&](const GigeCamera& reply) {
        return reply.serial == serial && reply.IsInSubnet();
    });
    platform::UdpSocket socket;
    if (camera == cameras.end() || !socket.Open(camera->interfaceAddress, 0)) {
        return std::nullopt;
    }
    const auto controller = ReadRegister(socket, *camera, gvcp::kControllerRegister, timeoutMs);
    return controller && *controller != 0 ? controller : std::nullopt;
}

std::vector<GigeCamera> GigeSearch::Collect(std::vector<std::unique_ptr<Asker>>& askers,
                                            std::uint32_t timeoutMs, const std::string& last) {
    std::vector<GigeCamera> cameras;
    const std::uint16_t id = NextId();
    for (const auto& asker : askers) {
        asker->Send(gvcp::Discover(id));
    }
    const std::uint64_t end = platform::MonotonicNanoseconds() + timeoutMs * kNanoseconds;
    // The first interface is waited for; what came to the others meanwhile is in their sockets.
    for (const auto& asker : askers) {
        while (true) {
            const std::uint64_t now = platform::MonotonicNanoseconds();
            const auto left =
                static_cast<std::uint32_t>(now < end ? (end - now) / kNanoseconds : 0);
            const auto datagram = asker->Receive(left);
            if (!datagram) {
                break;
            }
            auto camera = gvcp::ParseDiscovery(datagram->data, id);
            if (!camera) {
                continue;
            }
            camera->interfaceName = asker->Interface().name;
            camera->interfaceAddress = asker->Interface().address;
            camera->interfaceNetmask = asker->Interface().netmask;
            const bool isKnown =
                std::any_of(cameras.begin(), cameras.end(), [&](const GigeCamera& known) {
                    return known.mac == camera->mac && known.serial == camera->serial &&
                           known.interfaceName == camera->interfaceName;
                });
            if (!isKnown) {
                cameras.push_back(std::move(*camera));
            }
            if (!last.empty() && cameras.back().serial == last) {
                return cameras;
            }
        }
    }
    return cameras;
}

void GigeSearch::ReadRegisters(GigeCamera& camera) {
    platform::UdpSocket socket;
    if (!socket.Open(camera.interfaceAddress, 0)) {
        return;
    }
    const auto read = [&](std::uint32_t place) {
        return ReadRegister(socket, camera, place, kRegisterMs);
    };
    const auto control = read(gvcp::kControlRegister);
    if (!control) {
        return; // this one lets nobody read, or has gone
    }
    camera.isControlled = (*control & kControlBits) != 0;
    camera.controller = camera.isControlled ? read(gvcp::kControllerRegister).value_or(0) : 0;
    camera.heartbeatMs = read(gvcp::kHeartbeatRegister);
}

std::optional<std::uint32_t> GigeSearch::ReadRegister(platform::UdpSocket& socket,
                                                      const GigeCamera& camera, std::uint32_t place,
                                                      std::uint32_t timeoutMs) {
    const std::uint16_t id = NextId();
    socket.Send(camera.address, port, gvcp::ReadRegister(id, place));
    const auto reply = socket.Receive(timeoutMs);
    return reply ? gvcp::ParseRegister(reply->data, id) : std::nullopt;
}

bool GigeSearch::WriteRegister(platform::UdpSocket& socket, const GigeCamera& camera,
                               std::uint32_t place, std::uint32_t value) {
    const std::uint16_t id = NextId();
    socket.Send(camera.address, port, gvcp::WriteRegister(id, place, value));
    const auto reply = socket.Receive(kRegisterMs);
    return reply && gvcp::IsWritten(reply->data, id);
}

std::string GigeSearch::KeepAddress(const GigeCamera& camera) {
    platform::UdpSocket socket;
    const auto read = [&](std::uint32_t place) {
        return ReadRegister(socket, camera, place, kRegisterMs);
    };
    const auto write = [&](std::uint32_t place, std::uint32_t value) {
        return WriteRegister(socket, camera, place, value);
    };
    if (!socket.Open(camera.interfaceAddress, 0) || !write(gvcp::kControlRegister, kControl)) {
        return "it does not reply, or somebody else has it open";
    }
    const auto before = read(gvcp::kNetworkRegister);
    const bool isWritten = before && write(gvcp::kPersistentAddressRegister, camera.address) &&
                           write(gvcp::kPersistentNetmaskRegister, camera.interfaceNetmask) &&
                           // The one of the former subnet would not be reached.
                           write(gvcp::kPersistentGatewayRegister, 0) &&
                           write(gvcp::kNetworkRegister, *before | kPersistentAddress);
    const bool isKept = isWritten && read(gvcp::kPersistentAddressRegister) == camera.address &&
                        read(gvcp::kPersistentNetmaskRegister) == camera.interfaceNetmask &&
                        (read(gvcp::kNetworkRegister).value_or(0) & kPersistentAddress) != 0;
    write(gvcp::kControlRegister, 0);
    return isKept ? "" : "it does not take a persistent address";
}

bool GigeSearch::ForceAddress(const GigeCamera& camera, std::uint32_t address,
                              std::uint32_t timeoutMs) {
    const auto one = std::find_if(interfaces.begin(), interfaces.end(), [&](const auto& candidate) {
        return candidate.name == camera.interfaceName &&
               candidate.address == camera.interfaceAddress;
    });
    if (one == interfaces.end()) {
        return false;
    }
    std::vector<std::unique_ptr<Asker>> askers;
    askers.push_back(std::make_unique<Asker>(*one, port));
    const std::uint16_t id = NextId();
    askers[0]->Send(gvcp::ForceAddress(id, camera.mac, address, camera.interfaceNetmask));
    // A camera restarts its network before it replies, or instead.
    askers[0]->Receive(timeoutMs);
    const std::vector<GigeCamera> cameras = Collect(askers, timeoutMs);
    return std::any_of(cameras.begin(), cameras.end(), [&](const GigeCamera& reply) {
        return reply.mac == camera.mac && reply.address == address;
    });
}

std::uint16_t GigeSearch::NextId() {
    return lastId = static_cast<std::uint16_t>(lastId % 0xFFFF + 1); // 0 is not allowed
}
