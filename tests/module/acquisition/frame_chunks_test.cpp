// frame_chunks_test.cpp - reading the data that a camera has sent along with an image
#include "platform/event.h"
#include "tests/module/acquisition/acquisition_insides.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <cstring>
#include <functional>
#include <thread>
#include <utility>

using namespace pyxen;

namespace {

/// Does something when the host's buffers are prepared.
class ShapingSink final : public ILogSink {
public:
    void Write(int, const char* format, ...) override {
        if (onShaping && std::strstr(format, "got mutex")) {
            onShaping();
        }
    }
    void WriteError(const char*) override {}

    std::function<void()> onShaping;
};

class FrameChunks : public SnapFixture {
protected:
    void TearDown() override {
        sdk.Release("PxnChunkDataAccess");
        SnapFixture::TearDown();
    }

    Acquisition& Frames() { return AcquisitionInsides::Of(Grabber()); }
    MV_SERVICE_RESULT Read(uint64_t index) {
        PxnError error = PxnErrSuccess;
        return Frames().ReadChunks(index, &OnAccess, this, error);
    }
    /// As if the camera had sent chunks with the frame.
    void AddChunks(uint64_t index) {
        PxnFrame* const frame = sdk.FrameOf(index);
        frame->receiveFlags |= PxnFrameFlagChunkData;
        frame->chunkDataPresent = 1;
    }
    /// Buffer 0 has a frame with chunks, and the SDK has not.
    void SnapOneWithChunks() {
        Ready(2);
        sdk.Data().completeWaitsAtOnce = true;
        onHandOver = [&](uint64_t) {
            AddChunks(0);
        };
        ASSERT_EQ(Grabber().Snap(3), MV_OK);
        onHandOver = nullptr;
    }

    ShapingSink shaping;
    unsigned accesses = 0;

private:
    static PxnError PXN_CALL OnAccess(PxnHandle handle, void* context) {
        EXPECT_EQ(handle, scripted::ChunkHandle());
        ++static_cast<FrameChunks*>(context)->accesses;
        return PxnErrSuccess;
    }
};

TEST_F(FrameChunks, AreReadInsideTheHandOverAndNotAfterIt) {
    Ready(2);
    EXPECT_EQ(Read(0), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Read(2), MV_SERVICE_NOT_FOUND);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    onHandOver = [&](uint64_t index) {
        EXPECT_EQ(Read(index), MV_SERVICE_NOT_SUPPORTED);
        AddChunks(index);
        EXPECT_TRUE(Frames().IsHandingOver(index));
        EXPECT_EQ(Read(index), MV_SERVICE_OK);
        // The other one is with the SDK.
        EXPECT_FALSE(Frames().IsHandingOver(1 - index));
        EXPECT_EQ(Read(1 - index), index == 0 ? MV_SERVICE_NOT_FOUND : MV_SERVICE_GONE);
    };
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(accesses, 2u);
    EXPECT_EQ(Read(0), MV_SERVICE_GONE);
    EXPECT_FALSE(Frames().IsHandingOver(0));
    EXPECT_EQ(accesses, 2u);
}

// The frame of a callback is the SDK's until it ends, for all other threads.
TEST_F(FrameChunks, AreReadByTheThreadThatHandsTheFrameOverAlone) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    MV_SERVICE_RESULT others = MV_SERVICE_OK;
    onHandOver = [&](uint64_t index) {
        AddChunks(index);
        std::thread([&] { others = Read(index); }).join();
    };
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(others, MV_SERVICE_GONE);
    EXPECT_EQ(accesses, 0u);
}

TEST_F(FrameChunks, AreReadAfterASynchronousSnap) {
    SnapOneWithChunks();
    EXPECT_EQ(Read(0), MV_SERVICE_OK);
    EXPECT_EQ(Read(1), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(accesses, 1u);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Read(0), MV_SERVICE_NOT_FOUND);
}

TEST_F(FrameChunks, FailAsTheSdkSays) {
    SnapOneWithChunks();
    const std::pair<PxnError, MV_SERVICE_RESULT> kResults[] = {
        {PxnErrNoChunkData, MV_SERVICE_NOT_SUPPORTED},
        {PxnErrNotFound, MV_SERVICE_GONE},
        {PxnErrNoData, MV_SERVICE_GONE},
        {PxnErrBadHandle, MV_SERVICE_NO_CAMERA},
        {PxnErrIO, MV_SERVICE_SDK_FAILED},
    };
    for (const auto& [code, result] : kResults) {
        sdk.Fail("PxnChunkDataAccess", code);
        PxnError error = PxnErrSuccess;
        EXPECT_EQ(Frames().ReadChunks(0, nullptr, nullptr, error), result);
        EXPECT_EQ(error, code);
    }
}

TEST_F(FrameChunks, KeepTheFrameFromBeingQueuedWhileTheyAreRead) {
    SnapOneWithChunks();
    sdk.Hold("PxnChunkDataAccess");
    Forget();
    std::thread reader([&] { EXPECT_EQ(Read(0), MV_SERVICE_OK); });
    EXPECT_TRUE(sdk.WaitForCall("PxnChunkDataAccess"));
    std::thread host([&] { EXPECT_EQ(Grabber().Snap(3), MV_OK); });
    EXPECT_TRUE(sdk.WaitForCall(captureStart));
    EXPECT_FALSE(sdk.WaitForCall("PxnCaptureFrameQueue", 50));
    sdk.Release("PxnChunkDataAccess");
    reader.join();
    host.join();
    EXPECT_TRUE(sdk.WaitForCall("PxnCaptureFrameQueue"));
}

TEST_F(FrameChunks, KeepTheRecordsFromBeingShapedWhileTheyAreRead) {
    SnapOneWithChunks();
    sdk.Hold("PxnChunkDataAccess");
    std::thread reader([&] { EXPECT_EQ(Read(0), MV_SERVICE_OK); });
    EXPECT_TRUE(sdk.WaitForCall("PxnChunkDataAccess"));
    platform::Event prepared;
    std::thread host([&] {
        EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
        prepared.Set();
    });
    EXPECT_FALSE(prepared.Wait(50));
    sdk.Release("PxnChunkDataAccess");
    reader.join();
    host.join();
}

TEST_F(FrameChunks, AreGoneWhileTheRecordsAreShaped) {
    UseSink(&shaping);
    SnapOneWithChunks();
    unsigned tried = 0;
    shaping.onShaping = [&] {
        ++tried;
        EXPECT_EQ(Read(0), MV_SERVICE_GONE);
    };
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    EXPECT_EQ(tried, 1u);
    EXPECT_EQ(accesses, 0u);
    shaping.onShaping = nullptr;
}

// Another thread may hold what excludes reading, and wait for this callback.
TEST_F(FrameChunks, WaitForNobodyInsideACallback) {
    SnapOneWithChunks();
    sdk.Hold("PxnChunkDataAccess");
    Forget();
    std::thread reader([&] { EXPECT_EQ(Read(0), MV_SERVICE_OK); });
    EXPECT_TRUE(sdk.WaitForCall("PxnChunkDataAccess"));
    onHandOver = [&](uint64_t) {
        EXPECT_EQ(Read(0), MV_SERVICE_BUSY);
    };
    PxnFrame* const frame = sdk.FrameOf(0);
    PxnFrame foreign = *frame;
    foreign.context[1] = nullptr;
    foreign.context[2] = reinterpret_cast<void*>(1);
    Grabber().FrameCallback(&foreign);
    EXPECT_EQ(TakeHandedOver().size(), 2u);
    sdk.Release("PxnChunkDataAccess");
    reader.join();
}

TEST_F(FrameChunks, AreNoneWithoutACamera) {
    SnapOneWithChunks();
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Read(0), MV_SERVICE_NO_CAMERA);
}

} // namespace
