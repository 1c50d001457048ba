// out_of_memory_test.cpp - acquisition with every allocation refused in turn
#include "mivora/log_sink.h"
#include "platform/sleep.h"
#include "serial/cmd_kvn_pyxen.h"
#include "tests/module/acquisition/snap_fixture.h"
#include "tests/support/allocations/failing_allocations.h"

#include <algorithm>

using namespace pyxen;

namespace {

using support::GrantAllocations;
using support::RefuseEachAllocationBothWays;

/// An entry of the SDK that has memory when the module has none, so that what fails is the
/// module's own.
template <auto Entry, typename Pointer = decltype(Entry)>
struct EntryWithMemory;
template <auto Entry, typename... Arguments>
struct EntryWithMemory<Entry, PxnError (*CPyxenAPIAccess::*)(Arguments...)> {
    static inline PxnError (*original)(Arguments...) = nullptr;

    static PxnError Call(Arguments... arguments) {
        const support::AllocationPause pause;
        return original(arguments...);
    }
    static void Install(CPyxenAPIAccess& api) { original = std::exchange(api.*Entry, &Call); }
};
template <auto Entry>
struct EntryWithMemory<Entry, void (*CPyxenAPIAccess::*)()> {
    static void Install(CPyxenAPIAccess&) {}
};

class IgnoringSink final : public ILogSink {
public:
    void Write(int32_t, const char*, ...) override {}
    void WriteError(const char*) override {}
};

void DoNotSleep(std::uint32_t) {}

/// What PxnCaptureFrameQueue was given last.
struct QueuedFrame {
    PxnHandle camera = nullptr;
    const PxnFrame* frame = nullptr;
    PxnFrameCallback callback = nullptr;
};
QueuedFrame queuedFrame;

PxnError KeepQueuedFrame(PxnHandle camera, const PxnFrame* frame, PxnFrameCallback callback) {
    queuedFrame = {camera, frame, callback};
    return PxnErrSuccess;
}

class AcquisitionOutOfMemory : public SnapFixture {
protected:
    void SetUp() override {
        SnapFixture::SetUp();
        UseSink(&ignoring);
        // The fixture's own takes notes of the pauses, for which it needs memory.
        platform::SetSleepFunction(&DoNotSleep);
        sdk.Data().completeWaitsAtOnce = true;
        Camera()["PixelFormat"].text = "Mono12p";
        Camera()["Width"].intValue = 32;
        Camera()["Height"].intValue = 4;
        Camera()["PayloadSize"].intValue = 32 * 4 * 3 / 2;
        Camera()["ReverseX"].boolValue = true;
        Camera().localDevice.Put(scripted::BoolFeature("ReverseX", false));
        directory.Write(
            "a file of rules with a name too long for a string's own memory.json",
            R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"ReverseX","Dependencies":[{"ModuleName":"Localdevice","FeatureName":"ReverseX"}]}]})");
        WriteIni(
            "[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=a file of rules with a name too "
            "long for a string's own memory.json\n");
        Init();
#define GIVE_MEMORY(name) EntryWithMemory<&CPyxenAPIAccess::name>::Install(Grabber().Api());
        PXN_ENTRIES(GIVE_MEMORY)
#undef GIVE_MEMORY
    }
    void TearDown() override {
        EXPECT_EQ(Grabber().DeInit(), MV_OK);
        EXPECT_EQ(sdk.StartupCount(), 0);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
        EXPECT_EQ(sdk.Calls({"PxnCameraOpen"}).size(), sdk.Calls({"PxnCameraClose"}).size());
        SnapFixture::TearDown();
    }
    void OpenCamera() {
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    }
    void PrepareBuffers(uint64_t count) {
        OpenCamera();
        ASSERT_EQ(Grabber().PrepareFrameBuffers(count), MV_OK);
    }
    /// The whole way of a camera with nothing refused.
    void ExpectAcquisitionWorks() {
        for (const uint32_t mode : {1u, 3u}) {
            ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
            ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
            ASSERT_EQ(Grabber().Snap(mode), MV_OK);
            ASSERT_EQ(sdk.Deliver(0), mode == 1);
            ASSERT_EQ(Grabber().StopSnap(), MV_OK);
            ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
        }
    }

private:
    IgnoringSink ignoring;
};

TEST_F(AcquisitionOutOfMemory, OpeningIsRefusedOrDone) {
    const int allocations = RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE opened = Grabber().OpenActCamera();
        const MV_ERRCODE closed = Grabber().CloseActCamera();
        const bool refused = GrantAllocations();
        EXPECT_TRUE(opened == MV_OK || (refused && opened == MV_REFUSED)) << opened;
        EXPECT_EQ(closed, opened == MV_OK ? MV_OK : MV_CAMERA_NOT_OPEN);
        EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    });
    EXPECT_GT(allocations, 20);
    ExpectAcquisitionWorks();
}

TEST_F(AcquisitionOutOfMemory, ClosingIsAlwaysDone) {
    RefuseEachAllocationBothWays([&] {
        {
            const support::AllocationPause pause;
            OpenCamera();
        }
        const MV_ERRCODE closed = Grabber().CloseActCamera();
        GrantAllocations();
        EXPECT_EQ(closed, MV_OK);
        EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    });
    ExpectAcquisitionWorks();
}

TEST_F(AcquisitionOutOfMemory, BuffersAreAllThereOrRefused) {
    OpenCamera();
    const int allocations = RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE prepared = Grabber().PrepareFrameBuffers(3);
        const MV_ERRCODE snapped = Grabber().Snap(3);
        const bool refused = GrantAllocations();
        EXPECT_TRUE(prepared == MV_OK || (refused && prepared == MV_REFUSED)) << prepared;
        EXPECT_EQ(snapped, prepared == MV_OK ? MV_OK : MV_BUFFERS_NOT_PREPARED);
        for (uint64_t index = 0; prepared == MV_OK && index < 3; ++index) {
            EXPECT_NE(Grabber().GetFrameBuffer(index), nullptr) << index;
        }
        // Each run begins with no record and no memory.
        EXPECT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    });
    EXPECT_GE(allocations, 3 * 3);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    ExpectAcquisitionWorks();
}

TEST_F(AcquisitionOutOfMemory, OtherImagesFitOrAreRefused) {
    PrepareBuffers(2);
    const int allocations = RefuseEachAllocationBothWays([&] {
        Camera()["Width"].intValue = 320;
        Camera()["PayloadSize"].intValue = 320 * 4 * 3 / 2;
        const MV_ERRCODE prepared = Grabber().PrepareFrameBuffers(2);
        const bool refused = GrantAllocations();
        EXPECT_TRUE(prepared == MV_OK || (refused && prepared == MV_REFUSED)) << prepared;
        Camera()["Width"].intValue = 32;
        Camera()["PayloadSize"].intValue = 32 * 4 * 3 / 2;
        EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
        EXPECT_EQ(Grabber().Snap(1), MV_OK);
        EXPECT_TRUE(sdk.Deliver(1));
        EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    });
    EXPECT_GE(allocations, 4);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(AcquisitionOutOfMemory, SnapsNeedNoMemory) {
    for (const uint32_t mode : {1u, 2u, 3u, 4u, 5u}) {
        PrepareBuffers(2);
        support::RefuseAllocationsAfter(0);
        const MV_ERRCODE snapped = Grabber().Snap(mode);
        const MV_ERRCODE stopped = Grabber().StopSnap();
        const bool refused = GrantAllocations();
        EXPECT_EQ(snapped, MV_OK) << mode;
        EXPECT_EQ(stopped, MV_OK) << mode;
        EXPECT_FALSE(refused) << mode;
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u) << mode;
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    }
}

TEST_F(AcquisitionOutOfMemory, ASingleSnapWithoutItsThreadIsEndedByStopping) {
    Grabber().Api().PxnCaptureFrameQueue = &KeepQueuedFrame;
    PrepareBuffers(1);
    const int allocations = RefuseEachAllocationBothWays([&] {
        const MV_ERRCODE snapped = Grabber().Snap(2);
        queuedFrame.callback(queuedFrame.camera, nullptr, const_cast<PxnFrame*>(queuedFrame.frame));
        const MV_ERRCODE again = Grabber().Snap(2);
        const MV_ERRCODE stopped = Grabber().StopSnap();
        const bool refused = GrantAllocations();
        EXPECT_EQ(snapped, MV_OK);
        EXPECT_EQ(again, refused ? MV_BUSY : MV_OK);
        EXPECT_EQ(stopped, MV_OK);
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
        EXPECT_EQ(sdk.AnnouncedFrames(), std::vector<std::uint64_t>{});
    });
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(AcquisitionOutOfMemory, ParametersNeverThrow) {
    OpenCamera();
    for (const uint32_t id : {257u, 258u, 261u, 262u, 4096u}) {
        RefuseEachAllocationBothWays([&] {
            uint64_t first = 0;
            uint64_t second = 0;
            uint64_t third = 0;
            uint64_t fourth = 0;
            const MV_ERRCODE read = Grabber().GetGrabberParam(id, &first, &second);
            const MV_ERRCODE limits =
                Grabber().GetGrabberParamLimits(id, &first, &second, &third, &fourth);
            const bool refused = GrantAllocations();
            EXPECT_FALSE(refused && (read == MV_OK || limits == MV_OK)) << id;
        });
    }
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(AcquisitionOutOfMemory, EventsOfCamerasAreToldWhenInDoubt) {
    OpenCamera();
    unsigned told = 0;
    const auto count = [](void* context) {
        ++*static_cast<unsigned*>(context);
    };
    ASSERT_EQ(Grabber().InstCamCfgChangeCallBack(count, &told), MV_OK);
    sdk.Data().system["EventCameraDiscoveryCameraID"].text =
        "another camera with an identifier too long for a string's own memory";
    sdk.Data().system["EventCameraDiscoveryType"].text = "Missing";
    const int allocations = RefuseEachAllocationBothWays([&] {
        told = 0;
        Grabber().InvalidationCallback(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
        const bool refused = GrantAllocations();
        EXPECT_EQ(told, refused ? 1u : 0u);
    });
    EXPECT_GT(allocations, 0);
    ASSERT_EQ(Grabber().InstCamCfgChangeCallBack(nullptr, nullptr), MV_OK);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(AcquisitionOutOfMemory, CachesAreListedWholeOrEmpty) {
    OpenCamera();
    const PxnHandle camera = Grabber().GetFeatureCacheByName("Camera")->GetHandle();
    const int allocations = RefuseEachAllocationBothWays([&] {
        FeatureCache cache;
        const bool listed = cache.Init("Camera", &Grabber().Api(), camera, nullptr);
        const bool refused = GrantAllocations();
        EXPECT_EQ(listed, !refused);
        EXPECT_EQ(cache.GetFeatureCount() == 0, refused);
        EXPECT_EQ(cache.GetFeatureList() == nullptr, refused);
    });
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

} // namespace
