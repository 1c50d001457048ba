// register_access_test.cpp - 32-bit device registers
#include "tests/module/sdk/loaded_api.h"

namespace {

constexpr std::uint64_t kAddress = 0x16104;

class RegisterAccess : public LoadedApi {
protected:
    void Store(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3) {
        auto& registers = Camera().registers;
        registers[kAddress] = b0;
        registers[kAddress + 1] = b1;
        registers[kAddress + 2] = b2;
        registers[kAddress + 3] = b3;
    }
    Texts Stored() {
        Texts bytes;
        for (std::uint64_t offset = 0; offset < 4; ++offset) {
            bytes.push_back(std::to_string(Camera().registers[kAddress + offset]));
        }
        return bytes;
    }
    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }

    PxnHandle camera = scripted::CameraHandle();
};

TEST_F(RegisterAccess, ReadReversesTheBytesWhenSwapping) {
    Store(0x11, 0x22, 0x33, 0x44);
    std::uint32_t value = 0;
    ASSERT_TRUE(api.ReadRegister32(camera, kAddress, &value, true));
    EXPECT_EQ(value, 0x11223344u);
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnMemoryRead(camera0, 90372, 4)"});
}

TEST_F(RegisterAccess, ReadRepeatsTheLowestByteWhenNotSwapping) {
    Store(0x11, 0x22, 0x33, 0x44);
    std::uint32_t value = 0;
    ASSERT_TRUE(api.ReadRegister32(camera, kAddress, &value, false));
    EXPECT_EQ(value, 0x11332211u);
}

TEST_F(RegisterAccess, ReadKeepsEveryBitOfItsPattern) {
    Store(0x80, 0xFF, 0x01, 0xFE);
    std::uint32_t value = 0;
    ASSERT_TRUE(api.ReadRegister32(camera, kAddress, &value, true));
    EXPECT_EQ(value, 0x80FF01FEu);
    ASSERT_TRUE(api.ReadRegister32(camera, kAddress, &value, false));
    EXPECT_EQ(value, 0x8001FF80u);
}

TEST_F(RegisterAccess, ReadFailsWhenTheSdkRefuses) {
    sdk.Fail("PxnMemoryRead", PxnErrIO);
    std::uint32_t value = 7;
    EXPECT_FALSE(api.ReadRegister32(camera, kAddress, &value, true));
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(RegisterAccess, ReadFailsWhenBytesAreMissing) {
    Camera().transferLimit = 3;
    std::uint32_t value = 7;
    EXPECT_FALSE(api.ReadRegister32(camera, kAddress, &value, true));
    EXPECT_EQ(value, 7u);
}

TEST_F(RegisterAccess, WriteReversesTheBytesWhenSwapping) {
    ASSERT_TRUE(api.WriteRegister32(camera, kAddress, 0x11223344, true));
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnMemoryWrite(camera0, 90372, [11 22 33 44])"});
}

TEST_F(RegisterAccess, WriteRepeatsTheLowestByteWhenNotSwapping) {
    ASSERT_TRUE(api.WriteRegister32(camera, kAddress, 0x11223344, false));
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnMemoryWrite(camera0, 90372, [44 33 22 44])"});
}

TEST_F(RegisterAccess, WriteFailsWhenTheSdkRefuses) {
    sdk.Fail("PxnMemoryWrite", PxnErrIO);
    EXPECT_FALSE(api.WriteRegister32(camera, kAddress, 1, true));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(RegisterAccess, WriteFailsWhenBytesAreMissing) {
    Camera().transferLimit = 2;
    EXPECT_FALSE(api.WriteRegister32(camera, kAddress, 1, true));
}

TEST_F(RegisterAccess, WhatIsWrittenIsReadBack) {
    ASSERT_TRUE(api.WriteRegister32(camera, kAddress, 0xDEADBEEF, true));
    EXPECT_EQ(Stored(), (Texts{"222", "173", "190", "239"}));
    std::uint32_t value = 0;
    ASSERT_TRUE(api.ReadRegister32(camera, kAddress, &value, true));
    EXPECT_EQ(value, 0xDEADBEEFu);
}

} // namespace
