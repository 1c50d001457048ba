// gvcp.h - messages of GigE Vision's control protocol that work without opening a camera
#pragma once

#include "apps/doctor/gige_camera.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace gvcp {

using Message = std::vector<std::uint8_t>;

inline constexpr std::uint16_t kPort = 3956;
inline constexpr std::uint32_t kControlRegister = 0x0A00;    ///< bits 0 and 1: somebody has it
inline constexpr std::uint32_t kControllerRegister = 0x0A14; ///< the address of who has it
inline constexpr std::uint32_t kHeartbeatRegister = 0x0938;  ///< in milliseconds

///@{
/// What a camera does at power-on, in the first of its network interfaces.
inline constexpr std::uint32_t kNetworkRegister =
    0x0014; ///< bit 0: it takes the persistent address
inline constexpr std::uint32_t kPersistentAddressRegister = 0x064C;
inline constexpr std::uint32_t kPersistentNetmaskRegister = 0x065C;
inline constexpr std::uint32_t kPersistentGatewayRegister = 0x066C;
///@}

/// Asks every camera that hears it to reply, those of other subnets by a broadcast.
Message Discover(std::uint16_t id);
/// Asks a camera for one register.
Message ReadRegister(std::uint16_t id, std::uint32_t address);
/// Sets a register of a camera that lets this socket control it.
Message WriteRegister(std::uint16_t id, std::uint32_t address, std::uint32_t value);
/// Gives the camera with this hardware address another address until its power is switched off.
Message ForceAddress(std::uint16_t id, std::uint64_t mac, std::uint32_t address,
                     std::uint32_t netmask);

/// The camera of a reply to Discover; nullopt for anything else. Sets nothing of the interface.
std::optional<GigeCamera> ParseDiscovery(const Message& reply, std::uint16_t id);
/// The value of a reply to ReadRegister; nullopt for anything else and for a refusal.
std::optional<std::uint32_t> ParseRegister(const Message& reply, std::uint16_t id);
/// True for a reply to WriteRegister that is no refusal.
bool IsWritten(const Message& reply, std::uint16_t id);

} // namespace gvcp
