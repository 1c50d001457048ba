// chunk_data_test.cpp - what a camera appends to its images
#include "tests/pxnc/simulator/simulator_fixture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulator_tests {
namespace {

struct ChunkReading {
    PxnError result = 1;
    std::int64_t width = 0;
    std::int64_t frameId = -1;
    double exposure = 0;
    std::string format;
    PxnHandle handle = nullptr;

    static PxnError PXN_CALL Read(PxnHandle chunks, void* context) {
        auto* self = static_cast<ChunkReading*>(context);
        self->handle = chunks;
        self->width = GetInt(chunks, "ChunkWidth");
        self->frameId = GetInt(chunks, "ChunkFrameID");
        self->exposure = GetFloat(chunks, "ChunkExposureTime");
        self->format = GetEnum(chunks, "ChunkPixelFormat");
        EXPECT_FALSE(IsWritable(chunks, "ChunkWidth"));
        return PxnErrBusy; // the result of the call
    }
};

class ChunkDataTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kGigECamera);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        SimulatorTest::TearDown();
    }

    PxnHandle camera = nullptr;
};

TEST_F(ChunkDataTest, DescribeTheFrame) {
    ASSERT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "Mono12"), 0);
    const std::int64_t plain = GetInt(camera, "PayloadSize");
    ASSERT_EQ(PxnFeatureBoolSet(camera, "ChunkModeActive", 1), 0);
    EXPECT_EQ(GetInt(camera, "PayloadSize"), plain + 8 + 10 * 16);
    ASSERT_EQ(PxnFeatureEnumSet(camera, "ChunkSelector", "Gain"), 0);
    ASSERT_EQ(PxnFeatureBoolSet(camera, "ChunkEnable", 0), 0);
    EXPECT_EQ(GetInt(camera, "PayloadSize"), plain + 8 + 9 * 16);
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    EXPECT_EQ(buffers[0].frame.chunkDataPresent, 1u);
    EXPECT_NE(buffers[0].frame.receiveFlags & PxnFrameFlagChunkData, 0u);
    EXPECT_EQ(buffers[0].frame.imageSize, plain);
    ChunkReading reading;
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, &ChunkReading::Read, &reading), PxnErrBusy);
    EXPECT_EQ(reading.width, 640);
    EXPECT_EQ(reading.frameId, 0);
    EXPECT_EQ(reading.exposure, 5000.0);
    EXPECT_EQ(reading.format, "Mono12");
    std::int64_t value = 0;
    EXPECT_EQ(PxnFeatureIntGet(reading.handle, "ChunkWidth", &value), PxnErrBadHandle);
}

TEST_F(ChunkDataTest, AccessSaysWhatIsMissing) {
    std::vector<Buffer> buffers = Announce(camera, 1);
    ChunkReading reading;
    PxnFrame stranger{};
    EXPECT_EQ(PxnChunkDataAccess(nullptr, &ChunkReading::Read, &reading), PxnErrBadParameter);
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, nullptr, &reading), PxnErrBadParameter);
    EXPECT_EQ(PxnChunkDataAccess(&stranger, &ChunkReading::Read, &reading), PxnErrNotFound);
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, &ChunkReading::Read, &reading), PxnErrNoData);
    Snap(camera, buffers[0]);
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, &ChunkReading::Read, &reading),
              PxnErrNoChunkData);
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
    ASSERT_EQ(PxnFeatureBoolSet(camera, "ChunkModeActive", 1), 0);
    buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    const auto throwing = [](PxnHandle, void*) -> PxnError {
        throw 1;
    };
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, throwing, nullptr),
              PxnErrUserCallbackException);
    buffers[0].memory.back() = 77;
    EXPECT_EQ(PxnChunkDataAccess(&buffers[0].frame, &ChunkReading::Read, &reading),
              PxnErrParsingChunkData);
}

} // namespace
} // namespace simulator_tests
