// register_space.h - a camera's registers
#pragma once

#include "pxnc.h"
#include "pxnc/simulator/uart.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pxsim {

class Camera;

/// Registers are 32 bits wide, big-endian, and accessed whole and aligned; adjacent ones may be
/// accessed at once. Text areas and the buffers of the serial ports take any
/// size. Any thread.
class RegisterSpace {
public:
    explicit RegisterSpace(Camera& camera);

    /// `done` receives the bytes transferred, also before an error. PxnErrInvalidAddress where
    /// there is nothing, PxnErrIncomplete when only the first part of the range exists.
    PxnError Read(std::uint64_t address, std::uint32_t size, std::uint8_t* out,
                  std::uint32_t& done);
    PxnError Write(std::uint64_t address, std::uint32_t size, const std::uint8_t* in,
                   std::uint32_t& done);

    /// Null when the camera has no such port.
    Uart* Port(std::size_t index) { return index < ports.size() ? ports[index].get() : nullptr; }
    void Reset();

private:
    struct Register {
        std::uint64_t address;
        std::function<std::uint32_t()> read;
        std::function<PxnError(std::uint32_t)> write; // empty: read-only
    };
    struct Text {
        std::uint64_t address;
        std::uint32_t size;
        std::function<std::string()> read;
        std::function<PxnError(const std::string&)> write; // empty: read-only
    };

    void AddBootstrap(Camera& camera);
    void AddImageRegisters(Camera& camera);
    void AddPorts(Camera& camera);
    void AddRegister(std::uint64_t address, std::function<std::uint32_t()> read,
                     std::function<PxnError(std::uint32_t)> write = nullptr);
    PxnError ReadPart(std::uint64_t address, std::uint32_t size, std::uint8_t* out,
                      std::uint32_t& part);
    PxnError WritePart(std::uint64_t address, std::uint32_t size, const std::uint8_t* in,
                       std::uint32_t& part);
    const Register* FindRegister(std::uint64_t address) const;
    const Text* FindText(std::uint64_t address) const;
    Uart* FindPort(std::uint64_t address, std::uint32_t& offset);

    std::vector<Register> registers; // by ascending address
    std::vector<Text> texts;
    std::array<std::unique_ptr<Uart>, 5> ports;
    std::array<std::atomic<std::uint32_t>, 64> scratch{};
};

} // namespace pxsim
