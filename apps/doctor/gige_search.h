// gige_search.h - looks for GigE Vision cameras without an SDK
#pragma once

#include "apps/doctor/gige_camera.h"
#include "apps/doctor/gvcp.h"
#include "platform/network_interfaces.h"
#include "platform/udp_socket.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Asks on each of the interfaces that are up for cameras, of whatever subnet. One thread.
class GigeSearch {
public:
    /// `cameraPort` is another than the protocol's for tests.
    explicit GigeSearch(std::vector<platform::NetworkInterface> interfacesToAsk,
                        std::uint16_t cameraPort = gvcp::kPort);

    /// The cameras that reply within so many milliseconds, each once, with the registers that they
    /// let anybody read.
    std::vector<GigeCamera> Run(std::uint32_t timeoutMs);
    /// The address of the host whose program has the camera with this serial number; nullopt when
    /// the camera does not tell. Takes up to twice `timeoutMs`.
    std::optional<std::uint32_t> FindController(const std::string& serial, std::uint32_t timeoutMs);
    /// Gives a camera that Run has found another address until its power is switched off, and looks
    /// for it there. False when it does not reply from there.
    bool ForceAddress(const GigeCamera& camera, std::uint32_t address, std::uint32_t timeoutMs);
    /// Has a camera keep the address that it has, with the netmask of its interface, when its power
    /// is switched off. Returns why that could not be done; empty once it has been read back.
    std::string KeepAddress(const GigeCamera& camera);

private:
    class Asker;

    std::vector<std::unique_ptr<Asker>> Askers() const;
    /// Ends early once a camera with the serial number `last` has replied; empty for none.
    std::vector<GigeCamera> Collect(std::vector<std::unique_ptr<Asker>>& askers,
                                    std::uint32_t timeoutMs, const std::string& last = {});
    void ReadRegisters(GigeCamera& camera);
    /// nullopt when the camera does not let it be read, or has gone.
    std::optional<std::uint32_t> ReadRegister(platform::UdpSocket& socket, const GigeCamera& camera,
                                              std::uint32_t place, std::uint32_t timeoutMs);
    bool WriteRegister(platform::UdpSocket& socket, const GigeCamera& camera, std::uint32_t place,
                       std::uint32_t value);
    std::uint16_t NextId();

    const std::vector<platform::NetworkInterface> interfaces;
    const std::uint16_t port;
    std::uint16_t lastId = 0;
};
