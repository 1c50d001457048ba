// packet_test.cpp - frames that the fake camera never sends
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/pxnc/genicam/frame_set.h"
#include "tests/pxnc/genicam/packet_sender.h"

#include <cstddef>
#include <cstdint>
#include <numeric>

namespace genicam_test {
namespace {

constexpr std::uint32_t kWidth = 32;
constexpr std::uint32_t kHeight = 16;
constexpr std::uint32_t kPicture = kWidth * kHeight;
constexpr std::uint32_t kPacketOverhead = 36; // of the network, the transport and the stream
constexpr std::uint32_t kChunk = 0xC0DE;

/// The chunk that the test description reads: a counter and a kind.
std::vector<unsigned char> ChunkOf(unsigned char counter, unsigned char kind) {
    return {0, 0, 0, counter, 0, 0, 0, kind};
}

} // namespace

/// Frames that the fake camera never sends.
class PacketTest : public CameraFixture {
protected:
    static void SetUpTestSuite() {
        StartSuite(MIVORA_SOURCE_DIR "/tests/pxnc/genicam/test_camera.xml");
    }

    void SetUp() override {
        Open();
        ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", kWidth), PxnErrSuccess);
        ASSERT_EQ(Sdk().FeatureIntSet(camera, "Height", kHeight), PxnErrSuccess);
        // Aravis computes from the packet size what belongs into which packet. It is less than a
        // camera may be asked for, so it goes straight into the register.
        constexpr std::uint32_t kSize = PacketSender::kPacketPayload + kPacketOverhead;
        const char bytes[4] = {0, 0, 0, static_cast<char>(kSize)};
        std::uint32_t done = 0;
        ASSERT_EQ(Sdk().MemoryWrite(camera, 0x0D04, 4, bytes, &done), PxnErrSuccess);
    }

    static PacketSender::Frame Picture() {
        PacketSender::Frame frame;
        frame.width = kWidth;
        frame.height = kHeight;
        frame.data.resize(kPicture);
        std::iota(frame.data.begin(), frame.data.end(), static_cast<unsigned char>(7));
        return frame;
    }
};

TEST_F(PacketTest, ReportsWhereThePictureWasOnTheSensor) {
    FrameSet frames(camera, 1, kPicture);
    frames.keepsPictures = true;
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    PacketSender::Frame sent = Picture();
    sent.id = 4711;
    sent.offsetX = 100;
    sent.offsetY = 200;
    sent.pixelFormat = 0x01080009;
    const PacketSender sender(camera);
    sender.Send(sent);
    ASSERT_TRUE(frames.WaitForCount(1));
    const FrameSet::Received received = frames.Frames()[0];
    EXPECT_EQ(received.frame.receiveStatus, PxnFrameStatusComplete);
    EXPECT_EQ(received.frame.frameId, 4711u);
    EXPECT_EQ(received.frame.offsetX, 100u);
    EXPECT_EQ(received.frame.offsetY, 200u);
    EXPECT_EQ(received.frame.width, kWidth);
    EXPECT_EQ(received.frame.height, kHeight);
    EXPECT_EQ(received.frame.pixelFormat, 0x01080009u);
    EXPECT_EQ(received.picture, sent.data);
    frames.StopAndRevoke();
}

TEST_F(PacketTest, ReportsThatPacketsAreMissing) {
    FrameSet frames(camera, 2, kPicture);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    const PacketSender sender(camera);
    PacketSender::Frame sent = Picture();
    sent.lostPackets = {3, 4};
    sender.Send(sent);
    ASSERT_TRUE(frames.WaitForCount(1));
    EXPECT_EQ(frames.Frames()[0].frame.receiveStatus, PxnFrameStatusIncomplete);
    EXPECT_EQ(frames.Frames()[0].frame.frameId, 1u);
    EXPECT_EQ(frames.Frames()[0].frame.imageData, nullptr);

    PacketSender::Frame whole = Picture();
    whole.id = 2;
    sender.Send(whole);
    ASSERT_TRUE(frames.WaitForCount(2));
    EXPECT_EQ(frames.Frames()[1].frame.receiveStatus, PxnFrameStatusComplete);
    frames.StopAndRevoke();
    std::int64_t incomplete = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(stream, "StreamIncompleteFrameCount", &incomplete),
              PxnErrSuccess);
    EXPECT_EQ(incomplete, 1);
    std::int64_t missing = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(stream, "GVSPMissingPackets", &missing), PxnErrSuccess);
    EXPECT_GE(missing, 2);
    std::int64_t received = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(stream, "GVSPReceivedPackets", &received), PxnErrSuccess);
    EXPECT_GT(received, missing);
}

TEST_F(PacketTest, KnowsNothingOfAFrameWithoutItsFirstPacket) {
    FrameSet frames(camera, 1, kPicture);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    PacketSender::Frame sent = Picture();
    sent.losesFirstPacket = true;
    const PacketSender sender(camera);
    sender.Send(sent);
    ASSERT_TRUE(frames.WaitForCount(1));
    const PxnFrame frame = frames.Frames()[0].frame;
    EXPECT_EQ(frame.receiveStatus, PxnFrameStatusIncomplete);
    EXPECT_EQ(frame.receiveFlags & (PxnFrameFlagDimension | PxnFrameFlagImageData), 0u);
    EXPECT_EQ(frame.width, 0u);
    EXPECT_EQ(frame.imageData, nullptr);
    frames.StopAndRevoke();
}

TEST_F(PacketTest, ReadsTheChunksOfAFrame) {
    FrameSet frames(camera, 2, kPicture + 64);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    const PacketSender sender(camera);
    for (unsigned char i = 0; i < 2; ++i) {
        PacketSender::Frame sent = Picture();
        sent.id = static_cast<std::uint16_t>(i + 1);
        sent.hasChunks = true;
        AppendChunk(sent.data, 0xABCD, {1, 2, 3, 4});
        AppendChunk(sent.data, kChunk, ChunkOf(static_cast<unsigned char>(40 + i), i));
        sender.Send(sent);
        ASSERT_TRUE(frames.WaitForCount(i + 1u));
    }
    struct Seen {
        PxnHandle camera = nullptr;
        PxnHandle handle = nullptr;
        std::int64_t counter = 0;
        std::int64_t width = 0;
        std::string kind;
        std::vector<PxnError> refused;
    };
    const PxnChunkAccessCallback read = [](PxnHandle handle, void* context) -> PxnError {
        const SdkLibrary& sdk = SdkLibrary::Instance();
        auto& seen = *static_cast<Seen*>(context);
        const char* kind = "";
        seen.handle = handle;
        EXPECT_EQ(sdk.FeatureIntGet(handle, "ChunkCounter", &seen.counter), PxnErrSuccess);
        EXPECT_EQ(sdk.FeatureEnumGet(handle, "ChunkKind", &kind), PxnErrSuccess);
        seen.kind = kind;
        // Everything else comes from the camera.
        EXPECT_EQ(sdk.FeatureIntGet(handle, "Width", &seen.width), PxnErrSuccess);
        seen.refused = {sdk.FeatureIntSet(handle, "Width", 64), sdk.CaptureStart(handle),
                        sdk.CameraClose(handle), sdk.CameraClose(seen.camera)};
        return PxnErrBusy;
    };
    for (int i = 0; i < 2; ++i) {
        const PxnFrame& frame = *frames.At(static_cast<std::size_t>(i));
        EXPECT_EQ(frame.receiveStatus, PxnFrameStatusComplete);
        EXPECT_EQ(frame.chunkDataPresent, 1u);
        EXPECT_NE(frame.receiveFlags & PxnFrameFlagChunkData, 0u);
        EXPECT_EQ(frame.payloadType, std::uint32_t{PxnPayloadImage});
        EXPECT_EQ(frame.width, kWidth);
        Seen seen;
        seen.camera = camera;
        // The callback's result is the function's.
        EXPECT_EQ(Sdk().ChunkDataAccess(&frame, read, &seen), PxnErrBusy);
        EXPECT_EQ(seen.counter, 40 + i);
        EXPECT_EQ(seen.kind, i == 0 ? "Plain" : "Special");
        EXPECT_EQ(seen.width, kWidth);
        EXPECT_EQ(seen.refused, (std::vector<PxnError>{PxnErrInvalidAccess, PxnErrBadHandle,
                                                       PxnErrBadHandle, PxnErrInvalidCall}));
        std::int64_t value = 0;
        EXPECT_EQ(Sdk().FeatureIntGet(seen.handle, "ChunkCounter", &value), PxnErrBadHandle);
    }
    // Outside a frame there is no chunk to read.
    std::int64_t value = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "ChunkCounter", &value), PxnErrInvalidAccess);
    PxnBool isReadable = 1;
    EXPECT_EQ(Sdk().FeatureAccessQuery(camera, "ChunkCounter", &isReadable, nullptr),
              PxnErrSuccess);
    EXPECT_EQ(isReadable, 0);
    frames.StopAndRevoke();
}

TEST_F(PacketTest, ReportsThatAChunkCallbackHasThrown) {
    FrameSet frames(camera, 1, kPicture + 64);
    frames.Announce();
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    frames.Queue();
    PacketSender::Frame sent = Picture();
    sent.hasChunks = true;
    AppendChunk(sent.data, kChunk, ChunkOf(1, 0));
    const PacketSender sender(camera);
    sender.Send(sent);
    ASSERT_TRUE(frames.WaitForCount(1));
    const PxnChunkAccessCallback throws = [](PxnHandle, void*) -> PxnError {
        throw 1;
    };
    EXPECT_EQ(Sdk().ChunkDataAccess(frames.At(0), throws, nullptr), PxnErrUserCallbackException);
    frames.StopAndRevoke();
}

} // namespace genicam_test
