// snap_fixture.h - what the tests of acquiring share
#pragma once

#include "tests/module/grabber_fixture.h"

#include "platform/mutex.h"

/// Buffers are prepared by Ready. The host's receiver keeps what it is handed.
class SnapFixture : public GrabberFixture {
protected:
    enum class Strategy { kStartFirst, kQueueFirst };

    void TearDown() override {
        sleep.Open();
        if (handOverInstalled) {
            Grabber().InstPostProcessCallBack(nullptr, nullptr);
        }
        GrabberFixture::TearDown();
    }

    /// The camera open and `buffers` buffers prepared, nothing recorded.
    void Ready(uint64_t buffers, Strategy strategy = Strategy::kStartFirst) {
        WriteIni(strategy == Strategy::kQueueFirst
                     ? "[TLSpecificConfig_0]\nTLType=GEV\nFirstQueueThenStartSnap=1\n"
                     : "");
        Prepare(buffers);
        Grabber().InstPostProcessCallBack(&Receive, this);
        handOverInstalled = true;
    }

    std::vector<HandedOver> TakeHandedOver() {
        const platform::MutexLock lock(handedOverMutex);
        return std::exchange(handedOver, {});
    }
    /// Runs on the thread that hands a buffer over.
    std::function<void(uint64_t)> onHandOver;

    uint64_t FramesReceived() {
        uint64_t count = 0;
        uint64_t again = 0;
        EXPECT_EQ(Grabber().GetGrabberParam(MVGF_FRAMES_RECEIVED, &count, &again), MV_OK);
        EXPECT_EQ(again, count);
        return count;
    }

    static constexpr const char* kTag = "CMivoraKVNPyxenClass::Snap: ";
    static std::string Said(const std::string& text) { return std::string("1 ") + kTag + text; }
    static std::string Failed(const std::string& text) {
        return std::string("0 ") + kTag + text + ": Low level IO error in transport layer";
    }

    const std::string start = "PxnFeatureCommandRun(camera0, \"AcquisitionStart\")";
    const std::string stop = "PxnFeatureCommandRun(camera0, \"AcquisitionStop\")";
    const std::string captureStart = "PxnCaptureStart(camera0)";
    const std::string captureEnd = "PxnCaptureEnd(camera0)";
    const std::string flush = "PxnCaptureQueueFlush(camera0)";
    const std::string revokeAll = "PxnFrameRevokeAll(camera0)";
    const Texts stopping{stop, captureEnd, flush, revokeAll};

    static std::string Announce(unsigned frame) {
        return "PxnFrameAnnounce(camera0, frame" + std::to_string(frame) + ", 112)";
    }
    static std::string Queue(unsigned frame) {
        return "PxnCaptureFrameQueue(camera0, frame" + std::to_string(frame) + ", cb)";
    }

private:
    static void Receive(uint64_t index, uint32_t fromCallback, void* context) {
        auto& fixture = *static_cast<SnapFixture*>(context);
        {
            const platform::MutexLock lock(fixture.handedOverMutex);
            fixture.handedOver.push_back({index, fromCallback});
        }
        if (fixture.onHandOver) {
            fixture.onHandOver(index);
        }
    }

    platform::Mutex handedOverMutex;
    std::vector<HandedOver> handedOver GUARDED_BY(handedOverMutex);
    bool handOverInstalled = false;
};
