// serial_fixture.h - a serial channel of an opened camera, and its registers
#pragma once

#include "serial/cmd_kvn_pyxen.h"
#include "tests/module/grabber_fixture.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

inline pyxen::SerialSettings SettingsOf(const char* portName) {
    pyxen::SerialSettings settings;
    std::snprintf(settings.portName, sizeof settings.portName, "%s", portName);
    return settings;
}

class SerialFixture : public GrabberFixture {
protected:
    static constexpr uint64_t kBase = 0x61000; // port 2

    void SetUp() override {
        GrabberFixture::SetUp();
        Open();
        channel = std::make_unique<CCmdKVNPyxen>(&Grabber(), Grabber().SerialMutex());
        channel->SetSettings(SettingsOf("PYXENSERIALPORT2"));
    }
    void TearDown() override {
        channel.reset();
        GrabberFixture::TearDown();
    }

    void OpenChannel() {
        ASSERT_EQ(channel->Open(), MV_OK);
        Forget();
    }
    /// Each read of the receive length returns the next of the list.
    void QueueLengths(const std::vector<uint32_t>& lengths) {
        for (const uint32_t length : lengths) {
            Camera().QueueRegister32(kBase + 0x14C, length);
        }
    }
    void PutReceived(const std::string& bytes) {
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            Camera().registers[kBase + 0x800 + index] = static_cast<uint8_t>(bytes[index]);
        }
    }
    void SetTransmitReady() { Camera().SetRegister32(kBase + 0x124, 1); }

    // What is recorded for an access.
    static std::string Read(uint64_t offset, uint32_t size = 4, uint64_t base = kBase) {
        return "PxnMemoryRead(camera0, " + std::to_string(base + offset) + ", " +
               std::to_string(size) + ")";
    }
    static std::string Write(uint64_t offset, uint32_t value, uint64_t base = kBase) {
        char bytes[16];
        std::snprintf(bytes, sizeof bytes, "%02X %02X %02X %02X", value >> 24, value >> 16 & 0xFF,
                      value >> 8 & 0xFF, value & 0xFF);
        return "PxnMemoryWrite(camera0, " + std::to_string(base + offset) + ", [" + bytes + "])";
    }
    static std::string WriteBytes(uint64_t offset, const std::string& content) {
        std::string text = "PxnMemoryWrite(camera0, " + std::to_string(kBase + offset) + ", [";
        for (std::size_t index = 0; index < content.size(); ++index) {
            char byte[8];
            std::snprintf(byte, sizeof byte, index == 0 ? "%02X" : " %02X",
                          static_cast<unsigned>(static_cast<unsigned char>(content[index])));
            text += byte;
        }
        return text + "])";
    }
    static Texts Piece(const std::string& content) {
        return {Read(0x124), WriteBytes(0x400, content),
                Write(0x12C, static_cast<uint32_t>(content.size()))};
    }
    static const uint8_t* Bytes(const std::string& text) {
        return reinterpret_cast<const uint8_t*>(text.data());
    }

    MV_ERRCODE ReadByte(uint8_t& byte, uint64_t& count) {
        count = 99;
        return channel->ReadByte(&byte, &count);
    }
    MV_ERRCODE ReadBuffer(std::string& bytes, uint64_t length) {
        bytes.assign(length, '?');
        uint64_t count = 99;
        const MV_ERRCODE result =
            channel->ReadBuffer(reinterpret_cast<uint8_t*>(bytes.data()), length, &count);
        EXPECT_LE(count, length);
        bytes.resize(std::min<uint64_t>(count, length));
        return result;
    }
    MV_ERRCODE WriteBuffer(const std::string& bytes, uint64_t& count) {
        count = 99;
        return channel->WriteBuffer(Bytes(bytes), bytes.size(), &count);
    }
    const Texts opening{Write(0x104, 0x0C09), Write(0x128, 3), Write(0x148, 3),
                        Write(0x144, 0xFFFFFFFF)};
    const Texts closing{Write(0x128, 1), Write(0x148, 1), Write(0x144, 0xFFFFFFFF)};

    std::unique_ptr<CCmdKVNPyxen> channel;
};
