// fake_gige_camera.h - a camera of GigE Vision's control protocol on the loopback interface
#pragma once

#include "apps/doctor/gvcp.h"
#include "platform/mutex.h"
#include "platform/udp_socket.h"

#include <cstdint>
#include <map>
#include <string>
#include <thread>
#include <vector>

/// Replies to searches, reads of registers and writes of those that it has, and takes another
/// address. It has no network of its own: whatever address it claims, its replies come from
/// 127.0.0.1, or from another address that begins with 127 once it has been given that one.
class FakeGigeCamera {
public:
    static constexpr std::uint32_t kLoopback = 0x7F000001;
    static constexpr std::uint64_t kMac = 0x0102030405AB;

    /// `takesAddress`: it does what ForceAddress asks for.
    explicit FakeGigeCamera(std::uint32_t claimedAddress, bool takesAddress = true)
        : address(claimedAddress), isObedient(takesAddress) {
        isOpen = socket.Open(kLoopback, 0);
        thread = std::thread([this] { Serve(socket); });
    }
    ~FakeGigeCamera() {
        End(kLoopback, thread);
        if (givenThread.joinable()) {
            End(Address(), givenThread);
        }
    }
    FakeGigeCamera(const FakeGigeCamera&) = delete;
    FakeGigeCamera& operator=(const FakeGigeCamera&) = delete;

    bool IsOpen() const { return isOpen; }
    std::uint16_t Port() const { return socket.Port(); }
    std::uint32_t Address() const {
        platform::MutexLock lock(mutex);
        return address;
    }
    void SetRegister(std::uint32_t place, std::uint32_t value) {
        platform::MutexLock lock(mutex);
        registers[place] = value;
    }
    std::uint32_t Register(std::uint32_t place) const {
        platform::MutexLock lock(mutex);
        return registers.at(place);
    }

private:
    static std::uint32_t Number(const gvcp::Message& message, std::size_t at) {
        return std::uint32_t{message[at]} << 24 | std::uint32_t{message[at + 1]} << 16 |
               std::uint32_t{message[at + 2]} << 8 | message[at + 3];
    }
    static void Put(gvcp::Message& message, std::size_t at, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i) {
            message[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
        }
    }
    static void Put(gvcp::Message& message, std::size_t at, const std::string& text) {
        std::copy(text.begin(), text.end(), message.begin() + static_cast<std::ptrdiff_t>(at));
    }

    void End(std::uint32_t at, std::thread& serving) const {
        platform::UdpSocket end;
        end.Open(kLoopback, 0);
        end.Send(at, socket.Port(), {}); // an empty datagram ends it
        serving.join();
    }
    void Serve(platform::UdpSocket& at) {
        while (isOpen) {
            const auto request = at.Receive(60000);
            if (!request || request->data.size() < 8) {
                return;
            }
            at.Send(request->address, request->port, Reply(request->data));
        }
    }
    void TakeAddress(std::uint32_t given) REQUIRES(mutex) {
        address = given;
        if (given != kLoopback && given >> 24 == kLoopback >> 24 && !givenThread.joinable() &&
            givenSocket.Open(given, socket.Port())) {
            givenThread = std::thread([this] { Serve(givenSocket); });
        }
    }
    /// True unless there is no such register, or somebody else has control.
    bool Write(std::uint32_t place, std::uint32_t value) REQUIRES(mutex) {
        const auto found = registers.find(place);
        const std::uint32_t control = registers[gvcp::kControlRegister];
        const bool isAllowed =
            place == gvcp::kControlRegister ? control == 0 || value == 0 : control == 2;
        if (found != registers.end() && isAllowed) {
            found->second = value;
        }
        return found != registers.end() && isAllowed;
    }
    gvcp::Message Reply(const gvcp::Message& request) {
        platform::MutexLock lock(mutex);
        gvcp::Message reply(8, 0);
        reply[3] = static_cast<std::uint8_t>(request[3] + 1); // 0x02 -> 0x03, 0x80 -> 0x81
        reply[6] = request[6];
        reply[7] = request[7];
        if (request[3] == 0x02) {
            reply.resize(8 + 248);
            Put(reply, 8 + 8, static_cast<std::uint32_t>(kMac >> 32));
            Put(reply, 8 + 12, static_cast<std::uint32_t>(kMac));
            Put(reply, 8 + 36, address);
            Put(reply, 8 + 52, 0xFF000000u);
            Put(reply, 8 + 72, std::string("Maker"));
            Put(reply, 8 + 104, std::string("Model"));
            Put(reply, 8 + 216, std::string("S-7"));
            Put(reply, 8 + 232, std::string("left one"));
        } else if (request[3] == 0x80) {
            const auto found = registers.find(Number(request, 8));
            reply.resize(12);
            reply[0] = found == registers.end() ? 0x80 : 0; // an error
            Put(reply, 8, found == registers.end() ? 0u : found->second);
        } else if (request[3] == 0x82) {
            reply.resize(12);
            reply[0] = Write(Number(request, 8), Number(request, 12)) ? 0 : 0x80;
        } else if (request[3] == 0x04 && isObedient) {
            TakeAddress(Number(request, 8 + 20));
        }
        return reply;
    }

    mutable platform::Mutex mutex;
    std::uint32_t address GUARDED_BY(mutex);
    std::map<std::uint32_t, std::uint32_t> registers GUARDED_BY(mutex);
    const bool isObedient;
    platform::UdpSocket socket;
    bool isOpen = false;
    platform::UdpSocket givenSocket;
    std::thread thread;
    std::thread givenThread; // started by the other one
};
