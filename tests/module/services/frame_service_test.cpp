// frame_service_test.cpp - what hosts get to know of each frame
#include "tests/module/acquisition/snap_fixture.h"
#include "tests/module/services/services_fixture.h"
#include "tests/module/simulator_grabber_fixture.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <set>
#include <thread>

using namespace pyxen;

namespace {

MV_FRAME_INFO EmptyFrameInfo(uint32_t size = sizeof(MV_FRAME_INFO)) {
    MV_FRAME_INFO info{};
    info.size = size;
    return info;
}

/// Chunk values by name, as a receiver gets them.
struct ReceivedChunks {
    std::map<std::string, ReceivedValue> values;

    static void Receive(const char* name, const MV_FEATURE_VALUE* value, void* context) {
        static_cast<ReceivedChunks*>(context)->values.emplace(name, ReceivedValue(*value));
    }
    Texts Names() const {
        Texts names;
        for (const auto& [name, value] : values) {
            names.push_back(name);
        }
        return names;
    }
};

class FrameServiceTest : public SnapFixture {
protected:
    IMivoraModuleServices& Services() { return Grabber().Services(); }
    MV_SERVICE_RESULT GetInfo(uint64_t index) {
        return Services().GetFrameInfo(index, &info, &reason);
    }
    MV_SERVICE_RESULT ReadChunks(uint64_t index) {
        chunks.values.clear();
        return Services().ReadChunks(index, &ReceivedChunks::Receive, &chunks, &reason);
    }
    void AddChunksTo(uint64_t index) {
        PxnFrame* const frame = sdk.FrameOf(index);
        frame->receiveFlags |= PxnFrameFlagChunkData;
        frame->chunkDataPresent = 1;
    }

    MV_FRAME_INFO info = EmptyFrameInfo();
    MV_SERVICE_REASON reason{sizeof(MV_SERVICE_REASON), {}};
    ReceivedChunks chunks;

    // ---- images as they were sent ----

    void ReadyPacked(uint64_t buffers) {
        Camera()["PixelFormat"].text = "Mono12p";
        Camera()["PayloadSize"].intValue = kPackedBytes;
        Ready(buffers);
    }
    MV_SERVICE_RESULT ReadSent(uint64_t index) {
        sentFormat.clear();
        sentBytes.clear();
        return Services().ReadSentImage(index, &ReceiveSent, this, &reason);
    }
    static void ReceiveSent(const char* format, const void* data, uint64_t bytes, void* self) {
        auto* const test = static_cast<FrameServiceTest*>(self);
        test->sentFormat = format;
        test->sentBytes.assign(static_cast<const char*>(data), bytes);
    }

    static constexpr uint64_t kPackedBytes = 640 * 480 * 3 / 2;
    std::string sentFormat;
    std::string sentBytes;
};

TEST_F(FrameServiceTest, GetsTheInformationOfABuffer) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(1, PxnFrameStatusComplete, 17));
    EXPECT_EQ(GetInfo(1), MV_SERVICE_OK);
    EXPECT_EQ(info.size, sizeof info);
    EXPECT_EQ(info.bufferIndex, 1u);
    EXPECT_EQ(info.frameId, 17u);
    EXPECT_EQ(info.picture, MV_PICTURE_GONE);
    EXPECT_EQ(GetInfo(0), MV_SERVICE_OK);
    EXPECT_EQ(info.picture, MV_PICTURE_NONE);
    EXPECT_STREQ(reason.text, "");
    EXPECT_EQ(GetInfo(2), MV_SERVICE_NOT_FOUND);
    EXPECT_STREQ(reason.text, "there is no buffer 2");
}

TEST_F(FrameServiceTest, WantsARecordOfAtLeastItsOwnSize) {
    Ready(1);
    EXPECT_EQ(Services().GetFrameInfo(0, nullptr, &reason), MV_SERVICE_BAD_ARGUMENT);
    info.size = sizeof info - 1;
    EXPECT_EQ(GetInfo(0), MV_SERVICE_BAD_ARGUMENT);
    // A later host's record is longer; what is behind is left alone.
    struct Longer {
        MV_FRAME_INFO known;
        uint32_t more;
    } longer{EmptyFrameInfo(sizeof(Longer)), 77};
    EXPECT_EQ(Services().GetFrameInfo(0, &longer.known, nullptr), MV_SERVICE_OK);
    EXPECT_EQ(longer.known.size, sizeof longer);
    EXPECT_EQ(longer.more, 77u);
    EXPECT_EQ(Services().ReadChunks(0, nullptr, nullptr, &reason), MV_SERVICE_BAD_ARGUMENT);
}

TEST_F(FrameServiceTest, InstallsAndRemovesTheReceiverOfFrames) {
    Ready(1);
    unsigned received = 0;
    ReceiverOf<const MV_FRAME_INFO*> receiver{[&](const MV_FRAME_INFO* frame) {
        EXPECT_EQ(frame->status, MV_FRAME_INCOMPLETE);
        ++received;
    }};
    EXPECT_EQ(Services().InstallFrameReceiver(receiver.Receive, &receiver, &reason), MV_SERVICE_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete));
    EXPECT_EQ(Services().InstallFrameReceiver(nullptr, nullptr, &reason), MV_SERVICE_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete));
    EXPECT_EQ(received, 1u);
}

TEST_F(FrameServiceTest, ReadsTheChunksOfAFrameInItsCallbackAlone) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_NOT_SUPPORTED);
        EXPECT_STREQ(reason.text, "buffer 0: the frame carries no chunks");
        AddChunksTo(index);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_OK);
        EXPECT_EQ(chunks.values.at("ChunkWidth").integer, 640);
    };
    EXPECT_EQ(ReadChunks(0), MV_SERVICE_NOT_FOUND);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(ReadChunks(0), MV_SERVICE_GONE);
    EXPECT_STREQ(reason.text, "buffer 0: the camera has it again");
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

// Some SDKs offer all features of the camera with a frame.
TEST_F(FrameServiceTest, PassesChunksAlone) {
    sdk.Data().chunk.Put(scripted::IntFeature("Width", 8, 0, 10));
    sdk.Data().chunk.Put(scripted::IntFeature("ChunkSelector", 1, 0, 10));
    sdk.Data().chunk.Put(scripted::IntFeature("LineCounter", 5, 0, 10));
    scripted::Feature unreadable = scripted::IntFeature("ChunkHeight", 5, 0, 10);
    unreadable.readable = false;
    sdk.Data().chunk.Put(unreadable);
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        AddChunksTo(index);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_OK);
        EXPECT_EQ(chunks.Names(), (Texts{"ChunkWidth", "LineCounter"}));
        EXPECT_EQ(chunks.values.at("LineCounter").integer, 5);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

TEST_F(FrameServiceTest, ReportsWhatTheSdkFailsAt) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        AddChunksTo(index);
        sdk.Fail("PxnFeaturesList", PxnErrIO);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_SDK_FAILED);
        EXPECT_STREQ(reason.text,
                     "buffer 0: the chunks: Low level IO error in transport layer (-20)");
        EXPECT_TRUE(chunks.values.empty());
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

TEST_F(FrameServiceTest, LeavesOutChunksThatCannotBeRead) {
    scripted::Module& chunk = sdk.Data().chunk;
    chunk.Put(scripted::CommandFeature("ChunkReset"));
    chunk.Put(scripted::EnumFeature("ChunkFormat", "Mono8", {{"Mono8", 7}}));
    chunk.Put(scripted::IntFeature("ChunkLine", 5, 0, 10));
    chunk.Put(scripted::IntFeature("ChunkCount", 5, 0, 10));
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    sdk.FailFeature(scripted::ChunkHandle(), "ChunkLine", "PxnFeatureAccessQuery", PxnErrIO);
    sdk.FailFeature(scripted::ChunkHandle(), "ChunkCount", "PxnFeatureIntGet", PxnErrIO);
    sdk.FailFeature(scripted::ChunkHandle(), "ChunkFormat", "PxnFeatureEnumAsInt", PxnErrIO);
    onHandOver = [&](uint64_t index) {
        AddChunksTo(index);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_OK);
        EXPECT_EQ(chunks.Names(), (Texts{"ChunkFormat", "ChunkWidth"}));
        EXPECT_EQ(chunks.values.at("ChunkFormat").text, "Mono8");
        EXPECT_EQ(chunks.values.at("ChunkFormat").integer, 0);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

TEST_F(FrameServiceTest, ReportsAListOfChunksThatMakesNoSense) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        AddChunksTo(index);
        sdk.Fail("PxnFeaturesList", PxnErrIO, 2);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_SDK_FAILED);
        sdk.Data().foundAnswers["PxnFeaturesList"] = {0xFFFFFFFFu};
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_SDK_FAILED);
        EXPECT_NE(std::string(reason.text).find("buffer 0: the chunks: "), std::string::npos);
        // A record that was counted and is not filled.
        sdk.Data().foundAnswers["PxnFeaturesList"] = {2, 2};
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_OK);
        EXPECT_EQ(chunks.Names(), Texts{"ChunkWidth"});
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

TEST_F(FrameServiceTest, PassesTheImageAsItWasSentInTheCallback) {
    ReadyPacked(2);
    EXPECT_EQ(Services().ReadSentImage(0, nullptr, nullptr, &reason), MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(ReadSent(2), MV_SERVICE_NOT_FOUND);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        EXPECT_EQ(ReadSent(index), MV_SERVICE_OK);
        EXPECT_EQ(sentFormat, "Mono12p");
        EXPECT_EQ(sentBytes, std::string(kPackedBytes, '\x5A'));
        MV_SERVICE_RESULT others = MV_SERVICE_OK;
        std::thread([&] {
            others = Services().ReadSentImage(index, &ReceiveSent, this, nullptr);
        }).join();
        EXPECT_EQ(others, MV_SERVICE_GONE) << "the frame of a callback is its thread's alone";
    };
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 1, 0x5A));
    EXPECT_EQ(TakeHandedOver().size(), 1u);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_GONE);
    EXPECT_STREQ(reason.text, "buffer 0: the camera has it again");
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_GONE) << "the camera may have begun another frame";
}

TEST_F(FrameServiceTest, PassesTheImageAsItWasSentAfterASnapOfOne) {
    ReadyPacked(1);
    sdk.Data().completeWaitsAtOnce = true;
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_OK);
    EXPECT_EQ(sentBytes.size(), kPackedBytes);
    EXPECT_EQ(sentFormat, "Mono12p");
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_GONE);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 1, 0x33));
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_OK);
    EXPECT_EQ(sentBytes, std::string(kPackedBytes, '\x33'));
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_NOT_FOUND);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(ReadSent(0), MV_SERVICE_NO_CAMERA);
}

TEST_F(FrameServiceTest, PassesNoImageThatWasNotSent) {
    Ready(1);
    MV_SERVICE_RESULT result = MV_SERVICE_OK;
    ReceiverOf<const MV_FRAME_INFO*> receiver{[&](const MV_FRAME_INFO* frame) {
        result = ReadSent(frame->bufferIndex);
    }};
    ASSERT_EQ(Services().InstallFrameReceiver(receiver.Receive, &receiver, nullptr), MV_SERVICE_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusTooSmall));
    EXPECT_EQ(result, MV_SERVICE_NOT_SUPPORTED);
    EXPECT_STREQ(reason.text, "buffer 0: the frame has brought no image");
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusIncomplete));
    EXPECT_EQ(result, MV_SERVICE_OK) << "with the parts that came";
    EXPECT_EQ(Services().InstallFrameReceiver(nullptr, nullptr, nullptr), MV_SERVICE_OK);
}

// Another service may take long; in its callback a frame needs no lock.
TEST_F(FrameServiceTest, ReadsInACallbackWhileAnotherThreadIsInsideAService) {
    Ready(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    sdk.Hold("PxnFeatureIntGet");
    Forget();
    std::thread other([&] {
        ReceiverOf<const MV_FEATURE_VALUE*> receiver{[](const MV_FEATURE_VALUE*) {
        }};
        EXPECT_EQ(Services().ReadFeature("Camera", "Width", receiver.Receive, &receiver, nullptr),
                  MV_SERVICE_OK);
    });
    EXPECT_TRUE(sdk.WaitForCall("PxnFeatureIntGet"));
    onHandOver = [&](uint64_t index) {
        EXPECT_EQ(GetInfo(index), MV_SERVICE_OK);
        EXPECT_EQ(ReadChunks(index), MV_SERVICE_NOT_SUPPORTED);
        EXPECT_EQ(ReadChunks(1 - index), MV_SERVICE_BUSY);
    };
    ASSERT_TRUE(sdk.DeliverOnThread(0));
    sdk.WaitForDeliveries();
    sdk.Release("PxnFeatureIntGet");
    other.join();
    EXPECT_EQ(TakeHandedOver().size(), 1u);
}

// ---- with a camera of the simulator ----

const std::set<uint64_t> kIncomplete = {3, 5, 9, 499};
const std::set<uint64_t> kTooSmall = {100, 998};
const std::set<uint64_t> kDropped = {7, 50, 51, 52, 900};

std::string NumbersOf(const std::set<uint64_t>& numbers) {
    std::string text;
    for (const uint64_t number : numbers) {
        text += (text.empty() ? "" : ",") + std::to_string(number);
    }
    return text;
}

class ScriptedFramesTest : public SimulatorGrabberFixture {
protected:
    static constexpr uint64_t kFrames = 1000;
    static constexpr uint64_t kPeriodNs = 10'000'000;

    std::string Configuration() const override {
        return "<PxnC><camera id=\"A\" sensorWidth=\"64\" sensorHeight=\"64\"/><faults><script>"
               "frame incomplete " +
               NumbersOf(kIncomplete) + "\nframe small " + NumbersOf(kTooSmall) + "\nframe drop " +
               NumbersOf(kDropped) + "\n</script></faults></PxnC>";
    }
    void TearDown() override {
        Control("clear");
        SimulatorGrabberFixture::TearDown();
    }
    void OnFrame() override { ++handedOver; }

    std::atomic<uint64_t> handedOver{0};
};

TEST_F(ScriptedFramesTest, FrameIdsAndTimestampsOf1000FramesWithLosses) {
    std::vector<MV_FRAME_INFO> received;
    received.reserve(kFrames);
    std::atomic<uint64_t> count{0};
    uint64_t complete = 0;
    ReceiverOf<const MV_FRAME_INFO*> receiver{[&](const MV_FRAME_INFO* frame) {
        MV_FRAME_INFO noted = EmptyFrameInfo();
        EXPECT_EQ(grabber->Services().GetFrameInfo(frame->bufferIndex, &noted, nullptr),
                  MV_SERVICE_OK);
        EXPECT_EQ(noted.frameId, frame->frameId);
        EXPECT_EQ(noted.timestamp, frame->timestamp);
        EXPECT_EQ(noted.status, frame->status);
        EXPECT_EQ(noted.received, frame->received);
        EXPECT_EQ(noted.picture, frame->picture);
        EXPECT_EQ(handedOver, complete) << "before the host's callback";
        complete += frame->status == MV_FRAME_COMPLETE ? 1 : 0;
        received.push_back(*frame);
        ++count;
    }};
    ASSERT_EQ(grabber->Services().InstallFrameReceiver(receiver.Receive, &receiver, nullptr),
              MV_SERVICE_OK);
    Control("clock stop");
    ASSERT_EQ(grabber->Snap(1), MV_OK);
    uint64_t expected = 0;
    for (uint64_t number = 0; number < kFrames; ++number) {
        if (number > 0) {
            Control("clock advance 10");
        }
        expected += kDropped.count(number) == 0 ? 1 : 0;
        // What is dropped gives no sign; the next frame has its own time all the same.
        ASSERT_TRUE(support::WaitUntil([&] { return count == expected; })) << number;
    }
    ASSERT_EQ(received.size(), kFrames - kDropped.size());
    uint64_t number = 0;
    for (uint64_t index = 0; index < received.size(); ++index, ++number) {
        while (kDropped.count(number) != 0) {
            ++number;
        }
        const MV_FRAME_INFO& frame = received[index];
        ASSERT_EQ(frame.frameId, number);
        ASSERT_EQ(frame.timestamp, received[0].timestamp + number * kPeriodNs);
        ASSERT_EQ(frame.received, index + 1);
        const int32_t status = kIncomplete.count(number) != 0 ? MV_FRAME_INCOMPLETE
                               : kTooSmall.count(number) != 0 ? MV_FRAME_TOO_SMALL
                                                              : MV_FRAME_COMPLETE;
        ASSERT_EQ(frame.status, status) << number;
        ASSERT_EQ(frame.picture,
                  status == MV_FRAME_COMPLETE ? MV_PICTURE_CURRENT : MV_PICTURE_GONE);
        ASSERT_EQ(frame.valid & (kMvFrameHasFrameId | kMvFrameHasTimestamp),
                  kMvFrameHasFrameId | kMvFrameHasTimestamp);
        ASSERT_EQ(frame.width, 64u);
    }
    EXPECT_EQ(complete, kFrames - kDropped.size() - kIncomplete.size() - kTooSmall.size());
    EXPECT_TRUE(support::WaitUntil([&] { return handedOver == complete; }));
    EXPECT_EQ(grabber->Services().InstallFrameReceiver(nullptr, nullptr, nullptr), MV_SERVICE_OK);
}

/// The image and what belongs to it come in one buffer, converted from there.
class ChunksOfTheSimulator : public SimulatorGrabberFixture {
protected:
    std::string Configuration() const override {
        return "<PxnC><camera id=\"A\" sensorWidth=\"64\" sensorHeight=\"64\" "
               "freeRunning=\"true\"><feature name=\"PixelFormat\" value=\"Mono12p\"/><feature "
               "name=\"Gain\" value=\"2.5\"/><feature name=\"ExposureTime\" "
               "value=\"1500\"/><feature name=\"ChunkModeActive\" value=\"true\"/></camera></PxnC>";
    }
    MV_SERVICE_RESULT Read(uint64_t index, ReceivedChunks& chunks) {
        return grabber->Services().ReadChunks(index, &ReceivedChunks::Receive, &chunks, nullptr);
    }
};

TEST_F(ChunksOfTheSimulator, AreThoseOfTheirFrame) {
    std::atomic<unsigned> read{0};
    ReceiverOf<const MV_FRAME_INFO*> receiver{[&](const MV_FRAME_INFO* frame) {
        ReceivedChunks chunks;
        EXPECT_NE(frame->valid & kMvFrameHasChunks, 0u);
        EXPECT_EQ(Read(frame->bufferIndex, chunks), MV_SERVICE_OK);
        EXPECT_EQ(chunks.values.at("ChunkFrameID").integer, static_cast<int64_t>(frame->frameId));
        EXPECT_EQ(chunks.values.at("ChunkTimestamp").integer,
                  static_cast<int64_t>(frame->timestamp));
        EXPECT_EQ(chunks.values.at("ChunkExposureTime").real, 1500);
        EXPECT_EQ(chunks.values.at("ChunkGain").real, 2.5);
        EXPECT_EQ(chunks.values.at("ChunkPixelFormat").text, "Mono12p");
        EXPECT_EQ(chunks.values.at("ChunkPixelFormat").integer, frame->pixelFormat);
        ++read;
    }};
    ASSERT_EQ(grabber->Services().InstallFrameReceiver(receiver.Receive, &receiver, nullptr),
              MV_SERVICE_OK);
    ASSERT_EQ(grabber->Snap(1), MV_OK);
    EXPECT_TRUE(support::WaitUntil([&] { return read >= 20; }));
    EXPECT_EQ(grabber->Services().InstallFrameReceiver(nullptr, nullptr, nullptr), MV_SERVICE_OK);
}

TEST_F(ChunksOfTheSimulator, AreReadAfterASynchronousSnap) {
    ASSERT_EQ(grabber->Snap(3), MV_OK);
    MV_FRAME_INFO info = EmptyFrameInfo();
    ASSERT_EQ(grabber->Services().GetFrameInfo(0, &info, nullptr), MV_SERVICE_OK);
    ReceivedChunks chunks;
    ASSERT_EQ(Read(0, chunks), MV_SERVICE_OK);
    EXPECT_EQ(chunks.values.at("ChunkFrameID").integer, static_cast<int64_t>(info.frameId));
    EXPECT_EQ(chunks.values.at("ChunkTimestamp").integer, static_cast<int64_t>(info.timestamp));
}

// The sanitizers see who reads what others write.
TEST_F(ChunksOfTheSimulator, AreReadWhileTheAcquisitionStartsStopsAndIsPrepared) {
    std::atomic<bool> ended{false};
    std::thread reader([&] {
        while (!ended) {
            for (uint64_t index = 0; index < 4; ++index) {
                ReceivedChunks chunks;
                const MV_SERVICE_RESULT result = Read(index, chunks);
                EXPECT_TRUE(result == MV_SERVICE_OK || result == MV_SERVICE_GONE ||
                            result == MV_SERVICE_NOT_FOUND || result == MV_SERVICE_NO_CAMERA ||
                            result == MV_SERVICE_NOT_SUPPORTED)
                    << result;
                MV_FRAME_INFO info = EmptyFrameInfo();
                grabber->Services().GetFrameInfo(index, &info, nullptr);
            }
        }
    });
    for (unsigned round = 0; round < 20; ++round) {
        EXPECT_EQ(grabber->Snap(1), MV_OK);
        ExpectMoreFrames();
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        EXPECT_EQ(grabber->Snap(3), MV_OK);
        EXPECT_EQ(grabber->PrepareFrameBuffers(2 + round % 3), MV_OK);
        if (round % 5 == 4) {
            EXPECT_EQ(grabber->CloseActCamera(), MV_OK);
            EXPECT_EQ(grabber->OpenActCamera(), MV_OK);
            EXPECT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        }
    }
    ended = true;
    reader.join();
}

} // namespace
