// register_space_test.cpp - registers and serial ports
#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/uart.h"

#include <cstring>
#include <utility>

namespace simulator_tests {
namespace {

class RegisterTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kSerialCamera);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        SimulatorTest::TearDown();
    }
    std::uint32_t Read(std::uint64_t address) const {
        unsigned char bytes[4] = {};
        std::uint32_t done = 0;
        EXPECT_EQ(PxnMemoryRead(camera, address, 4, reinterpret_cast<char*>(bytes), &done), 0)
            << std::hex << address;
        EXPECT_EQ(done, 4u);
        return static_cast<std::uint32_t>(bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 |
                                          bytes[3]);
    }
    PxnError Write(std::uint64_t address, std::uint32_t value) const {
        const char bytes[4] = {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
                               static_cast<char>(value >> 8), static_cast<char>(value)};
        std::uint32_t done = 0;
        return PxnMemoryWrite(camera, address, 4, bytes, &done);
    }
    std::string ReadBytes(std::uint64_t address, std::uint32_t size) const {
        std::string bytes(size, '\0');
        std::uint32_t done = 0;
        EXPECT_EQ(PxnMemoryRead(camera, address, size, bytes.data(), &done), 0);
        EXPECT_EQ(done, size);
        return bytes;
    }
    void WriteBytes(std::uint64_t address, const std::string& bytes) const {
        std::uint32_t done = 0;
        EXPECT_EQ(PxnMemoryWrite(camera, address, static_cast<std::uint32_t>(bytes.size()),
                                 bytes.data(), &done),
                  0);
        EXPECT_EQ(done, bytes.size());
    }

    PxnHandle camera = nullptr;
};

TEST_F(RegisterTest, IdentityStandsInTheFirstRegisters) {
    EXPECT_EQ(Read(0x0000), 0x00010004u);
    EXPECT_STREQ(ReadBytes(0x0048, 32).c_str(), "Korvane");
    EXPECT_STREQ(ReadBytes(0x0068, 32).c_str(), "L-400");
    EXPECT_STREQ(ReadBytes(0x00D8, 16).c_str(), "CL-0042");
    WriteBytes(0x00E8, std::string("Station 7\0", 10));
    EXPECT_EQ(GetString(camera, "DeviceUserID"), "Station 7");
    EXPECT_STREQ(ReadBytes(0x00E8, 16).c_str(), "Station 7");
    std::uint32_t done = 9;
    EXPECT_EQ(PxnMemoryWrite(camera, 0x0048, 4, "abc", &done), PxnErrInvalidAccess);
    EXPECT_EQ(done, 0u);
}

TEST_F(RegisterTest, RegistersAndFeaturesShowTheSame) {
    EXPECT_EQ(Read(0x10000), 640u);
    EXPECT_EQ(Write(0x10000, 320), 0);
    EXPECT_EQ(GetInt(camera, "Width"), 320);
    EXPECT_EQ(Write(0x10000, 321), PxnErrInvalidValue);
    EXPECT_EQ(Read(0x10010), 0x01080001u);
    EXPECT_EQ(Read(0x10014), 320u * 480u);
    EXPECT_EQ(Write(0x10014, 5), PxnErrInvalidAccess);
    EXPECT_EQ(Write(0x10018, 1), 0);
    EXPECT_TRUE(GetBool(camera, "TLParamsLocked"));
    EXPECT_EQ(Write(0x10018, 0), 0);
    EXPECT_EQ(Write(0x10104, 0xDEADBEEF), 0);
    EXPECT_EQ(Read(0x10104), 0xDEADBEEFu);
    EXPECT_EQ(Read(0x10100), 0u);
}

TEST_F(RegisterTest, SeveralRegistersMoveAtOnce) {
    const std::string bytes = ReadBytes(0x10000, 8);
    EXPECT_EQ(bytes, std::string("\0\0\x02\x80\0\0\x01\xE0", 8)) << "640 and 480, high byte first";
}

TEST_F(RegisterTest, BadAddressesAndSizesAreRefused) {
    char bytes[64] = {};
    std::uint32_t done = 9;
    EXPECT_EQ(PxnMemoryRead(camera, 0x999999, 4, bytes, &done), PxnErrInvalidAddress);
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(PxnMemoryRead(camera, 0x10001, 4, bytes, &done), PxnErrInvalidAddress)
        << "not aligned";
    EXPECT_EQ(PxnMemoryRead(camera, 0x10000, 2, bytes, &done), PxnErrInvalidAddress)
        << "half a register";
    EXPECT_EQ(PxnMemoryRead(camera, 0x10018, 8, bytes, &done), PxnErrIncomplete);
    EXPECT_EQ(done, 4u);
    EXPECT_EQ(PxnMemoryRead(camera, 0x10000, 4, nullptr, &done), PxnErrBadParameter);
    EXPECT_EQ(PxnMemoryRead(camera, 0x10000, 4, bytes, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnMemoryWrite(camera, 0x10000, 4, nullptr, &done), PxnErrBadParameter);
    EXPECT_EQ(PxnMemoryRead(PXN_SYSTEM_HANDLE, 0, 4, bytes, &done), PxnErrNotSupported);
    EXPECT_EQ(PxnMemoryRead(InfoOf(camera).streamHandles[0], 0, 4, bytes, &done),
              PxnErrNotSupported);
    EXPECT_EQ(PxnMemoryRead(nullptr, 0, 4, bytes, &done), PxnErrBadHandle);
    const PxnHandle reader = Open(kSerialCamera, PxnAccessModeRead);
    EXPECT_EQ(PxnMemoryRead(reader, 0, 4, bytes, &done), 0);
    EXPECT_EQ(PxnMemoryWrite(reader, 0x10100, 4, bytes, &done), PxnErrInvalidAccess);
    EXPECT_EQ(PxnCameraClose(reader), 0);
}

// ---- serial ports ----

constexpr std::uint64_t kPorts[] = {0x16000, 0x60000, 0x61000, 0x62000, 0x63000};

class SerialPortTest : public RegisterTest {
protected:
    void Enable(std::uint64_t port, std::uint32_t mode = 0x0C09) const {
        EXPECT_EQ(Write(port + 0x104, mode), 0);
        EXPECT_EQ(Write(port + 0x128, 3), 0);
        EXPECT_EQ(Write(port + 0x148, 3), 0);
        EXPECT_EQ(Write(port + 0x144, 0xFFFFFFFF), 0);
    }
    void Send(std::uint64_t port, const std::string& bytes) const {
        ASSERT_EQ(Read(port + 0x124) & 1, 1u);
        WriteBytes(port + 0x400, bytes);
        ASSERT_EQ(Write(port + 0x12C, static_cast<std::uint32_t>(bytes.size())), 0);
    }
    std::string Receive(std::uint64_t port) const {
        const std::uint32_t waiting = Read(port + 0x14C);
        if (waiting == 0) {
            return {};
        }
        std::string bytes = ReadBytes(port + 0x800, waiting);
        EXPECT_EQ(Write(port + 0x14C, waiting), 0);
        return bytes;
    }
};

TEST_F(SerialPortTest, FivePortsAnswerTheInquiry) {
    for (const std::uint64_t port : kPorts) {
        EXPECT_EQ(Read(port) & 3, 3u);
        EXPECT_EQ(Read(port + 0x100), 0x07F707FFu);
        EXPECT_EQ(Read(port + 0x104), 0x0C09u);
        EXPECT_EQ(Read(port + 0x124), 1u);
        EXPECT_EQ(Read(port + 0x14C), 0u);
    }
    const PxnHandle gige = Open(kGigECamera);
    char bytes[4];
    std::uint32_t done = 0;
    EXPECT_EQ(PxnMemoryRead(gige, kPorts[0], 4, bytes, &done), PxnErrInvalidAddress);
    EXPECT_EQ(PxnCameraClose(gige), 0);
}

TEST_F(SerialPortTest, LoopbackReturnsWhatWasSent) {
    Enable(kPorts[0]);
    std::string all;
    for (int i = 0; i < 1024; ++i) {
        all += static_cast<char>(i * 7);
    }
    Send(kPorts[0], all);
    EXPECT_EQ(Read(kPorts[0] + 0x144) & 1, 1u) << "data are waiting";
    EXPECT_EQ(Receive(kPorts[0]), all);
    EXPECT_EQ(Receive(kPorts[0]), "");
    Send(kPorts[0], "abc");
    EXPECT_EQ(ReadBytes(kPorts[0] + 0x800, 1), "a");
    EXPECT_EQ(Write(kPorts[0] + 0x14C, 1), 0);
    EXPECT_EQ(Receive(kPorts[0]), "bc") << "one byte had been taken";
}

TEST_F(SerialPortTest, PurgingForgetsWhatWasReceived) {
    Enable(kPorts[0]);
    Send(kPorts[0], "old");
    EXPECT_EQ(Write(kPorts[0] + 0x148, 3), 0);
    EXPECT_EQ(Read(kPorts[0] + 0x14C), 0u);
    Send(kPorts[0], "new");
    EXPECT_EQ(Receive(kPorts[0]), "new");
    EXPECT_EQ(Write(kPorts[0] + 0x128, 1), 0);
    EXPECT_EQ(Write(kPorts[0] + 0x148, 1), 0);
    Send(kPorts[0], "closed");
    EXPECT_EQ(Receive(kPorts[0]), "") << "a closed port sends nothing";
}

TEST_F(SerialPortTest, TooMuchUnreadDataOverrun) {
    Enable(kPorts[0]);
    for (int i = 0; i < 5; ++i) {
        Send(kPorts[0], std::string(1024, static_cast<char>('a' + i)));
    }
    EXPECT_EQ(Read(kPorts[0] + 0x144) & 2, 2u);
    EXPECT_EQ(Read(kPorts[0] + 0x14C), 1024u) << "a buffer at a time";
    std::string received;
    for (int i = 0; i < 4; ++i) {
        received += Receive(kPorts[0]);
    }
    EXPECT_EQ(received.size(), 4096u);
    EXPECT_EQ(received.back(), 'd');
    EXPECT_EQ(Write(kPorts[0] + 0x144, 0xFFFFFFFF), 0);
    EXPECT_EQ(Read(kPorts[0] + 0x144), 0u);
}

TEST_F(SerialPortTest, TheLensControllerSpeaksInLines) {
    Enable(kPorts[1]);
    const auto ask = [&](const std::string& line) {
        Send(kPorts[1], line + "\r\n");
        return Receive(kPorts[1]);
    };
    EXPECT_EQ(ask("FOCUS?"), "FOCUS 1200\r\n");
    EXPECT_EQ(ask("FOCUS 1300"), "OK\r\n");
    EXPECT_EQ(ask("focus?"), "FOCUS 1300\r\n");
    EXPECT_EQ(ask("IRIS?"), "IRIS 56\r\n");
    EXPECT_EQ(ask("IRIS 500"), "ERR OUT OF RANGE\r\n");
    EXPECT_EQ(ask("IRIS wide"), "ERR BAD VALUE\r\n");
    EXPECT_EQ(ask("IRIS"), "ERR BAD VALUE\r\n");
    EXPECT_EQ(ask("IRIS 1 2"), "ERR TOO MANY ARGUMENTS\r\n");
    EXPECT_EQ(ask("IRIS? 1"), "ERR TOO MANY ARGUMENTS\r\n");
    EXPECT_EQ(ask("TILT 5"), "ERR UNKNOWN COMMAND\r\n");
    EXPECT_EQ(ask("ID?"), "ID PYXEN LENS 1.0\r\n");
    EXPECT_EQ(ask(""), "");
    Send(kPorts[1], "ZO");
    Send(kPorts[1], "OM?\nFOCUS?\n");
    EXPECT_EQ(Receive(kPorts[1]), "ZOOM 100\r\nFOCUS 1300\r\n") << "lines may come in pieces";
}

TEST_F(SerialPortTest, TheModeMustBeOneThePortHas) {
    EXPECT_EQ(Write(kPorts[0] + 0x104, 0x0C0A), 0) << "230400 baud";
    EXPECT_EQ(Read(kPorts[0] + 0x104), 0x0C0Au);
    EXPECT_EQ(Write(kPorts[0] + 0x104, 0x0C0B), PxnErrInvalidValue) << "no such speed";
    EXPECT_EQ(Write(kPorts[0] + 0x104, 0x0F09), PxnErrInvalidValue) << "no such parity";
    EXPECT_EQ(Write(kPorts[0] + 0x12C, 1025), PxnErrInvalidValue);
    EXPECT_EQ(Write(kPorts[0] + 0x100, 0), PxnErrInvalidAccess) << "read-only";
    std::uint32_t done = 0;
    EXPECT_EQ(PxnMemoryWrite(camera, kPorts[0] + 0x800, 4, "abcd", &done), PxnErrInvalidAccess);
    char bytes[8];
    EXPECT_EQ(PxnMemoryRead(camera, kPorts[0] + 0x200, 4, bytes, &done), PxnErrInvalidAddress);
}

TEST_F(SerialPortTest, AStuckPortIsNeverReadyUntilItIsFreed) {
    Enable(kPorts[2]);
    Control("uart 2 stuck");
    EXPECT_EQ(Read(kPorts[2] + 0x124), 0u);
    WriteBytes(kPorts[2] + 0x400, "x");
    EXPECT_EQ(Write(kPorts[2] + 0x12C, 1), PxnErrBusy);
    Control(std::string("uart 2 ok ") + kSerialCamera);
    Send(kPorts[2], "free");
    EXPECT_EQ(Receive(kPorts[2]), "free");
}

// The readings of a port that takes 33.3 ms for a byte while "ab" goes out and comes back.
TEST_F(SerialPortTest, ASlowPortTakesItsTime) {
    Enable(kPorts[3]);
    Control("uart 3 slow");
    Control("clock stop");
    Send(kPorts[3], "ab");
    EXPECT_EQ(Read(kPorts[3] + 0x124), 0u) << "sending";
    Control("clock advance 66");
    EXPECT_EQ(Read(kPorts[3] + 0x124), 0u) << "still sending";
    Control("clock advance 1");
    EXPECT_EQ(Read(kPorts[3] + 0x124), 1u) << "both bytes are out";
    EXPECT_EQ(Receive(kPorts[3]), "") << "and none is back";
    Control("clock advance 32");
    EXPECT_EQ(Receive(kPorts[3]), "");
    Control("clock advance 1");
    EXPECT_EQ(Receive(kPorts[3]), "a");
    Control("clock advance 33");
    EXPECT_EQ(Receive(kPorts[3]), "");
    Control("clock advance 1");
    EXPECT_EQ(Receive(kPorts[3]), "b");
    EXPECT_EQ(Read(kPorts[3] + 0x124), 1u);
}

TEST_F(SerialPortTest, APacedPortKeepsTheBaudRateOfItsMode) {
    const pxsim::PortConfiguration paced{true, 0x07F707FF, "loopback", true};
    pxsim::Uart port(paced);
    const auto write = [&port](std::uint32_t offset, std::uint32_t value) {
        const std::uint8_t bytes[4] = {
            static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
        EXPECT_EQ(port.Write(offset, 4, bytes), 0);
    };
    const auto waiting = [&port] {
        std::uint8_t bytes[4] = {};
        EXPECT_EQ(port.Read(0x14C, 4, bytes), 0);
        return bytes[2] * 256 + bytes[3];
    };
    Control("clock stop");
    for (const auto& [index, byteMs] :
         {std::pair{0, 33333}, std::pair{1, 16666}, std::pair{5, 1041}, std::pair{9, 86}}) {
        write(0x104, 0x0C00 + static_cast<std::uint32_t>(index));
        write(0x128, 3);
        write(0x148, 3);
        write(0x12C, 1000); // a second for a bit of each byte, and as long on the way back
        Control("clock advance " + std::to_string(byteMs));
        EXPECT_EQ(waiting(), 0) << "index " << index;
        Control("clock advance " + std::to_string(byteMs));
        EXPECT_LT(waiting(), 1000) << "index " << index;
        Control("clock advance 2");
        EXPECT_EQ(waiting(), 1000) << "index " << index;
    }
}

} // namespace
} // namespace simulator_tests
