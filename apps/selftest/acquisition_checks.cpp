// acquisition_checks.cpp - checks of opening, buffers, modes and stopping
#include "apps/selftest/acquisition_checks.h"

#include "apps/common/host_image.h"
#include "apps/selftest/bench.h"
#include "mivora/grabber.h"
#include "platform/mutex.h"

#include <set>

namespace {

constexpr std::uint32_t kAsynchronousMode = 2;
constexpr int kOpenings = 3;
constexpr int kRestarts = 5;
constexpr std::uint64_t kFewFrames = 3;
constexpr std::uint64_t kBufferCounts[] = {2, 3, 10, 50, 100};

std::string CheckOpenClose(SelftestBench& bench) {
    Session& session = bench.Use();
    for (int i = 0; i < kOpenings; ++i) {
        session.Check("CloseActCamera", bench.Grabber().CloseActCamera());
        Require(!bench.Grabber().IsCameraOpen(), "the camera is open after closing it");
        session.OpenActCamera();
        Require(bench.Grabber().IsCameraOpen(), "the camera is not open after opening it");
    }
    return std::to_string(kOpenings) + " times";
}

std::string CheckMode(SelftestBench& bench) {
    CMivoraGfxMode& mode = bench.Use().CheckedMode();
    const ImageLayout layout = DescribeImage(mode);
    Require(layout.bits != 0 && layout.bits <= layout.allocatedBits,
            std::to_string(layout.bits) + " of " + std::to_string(layout.allocatedBits) +
                " bits are used");
    Require(mode.GetImageSize() == layout.Size(),
            "an image is said to have " + std::to_string(mode.GetImageSize()) + " bytes and has " +
                std::to_string(layout.Size()));
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + ", " +
           std::to_string(layout.components) + " x " + std::to_string(layout.bits) + " bits";
}

std::string CheckContinuous(SelftestBench& bench) {
    bench.RequireFrames(kMvCapContinuous);
    bench.TakeFrames(8, 2 * kFewFrames);
    return std::to_string(2 * kFewFrames) + " frames";
}

/// A buffer with an image can be taken and given back.
void TakeBuffer(SelftestBench& bench) {
    std::uint64_t index = 0;
    bench.Use().Check("GetLastFilledBuffer", bench.Grabber().GetLastFilledBuffer(&index));
    Require(bench.Grabber().GetFrameBuffer(index) != nullptr, "the filled buffer has no memory");
    MV_FRAME_INFO info{};
    info.size = sizeof info;
    if (bench.Offers() && bench.Services().GetFrameInfo(index, &info, nullptr) == MV_SERVICE_OK) {
        Require(info.status == MV_FRAME_COMPLETE,
                "the frame was received with status " + std::to_string(info.status));
    }
    bench.Use().Check("ReleaseFrameBuffer", bench.Grabber().ReleaseFrameBuffer(index));
}

std::string CheckSingle(SelftestBench& bench, std::uint32_t mode) {
    bench.RequireFrames(kMvCapSingleSnap);
    Session& session = bench.Use();
    EventRecorder& events = session.Events();
    const std::string object = "mode " + std::to_string(mode);
    for (std::uint64_t i = 0; i < kFewFrames; ++i) {
        session.PrepareBuffers(1, object);
        events.ResetFrames();
        bench.Expect("Snap", bench.Grabber().Snap(mode), object);
        const bool hasCome = events.WaitFor([&] { return events.Frames() > 0; },
                                            mode == kAsynchronousMode ? bench.TimeoutMs() : 0);
        Require(hasCome, "no frame came");
        Require(events.WaitFor([&] { return bench.Grabber().GetAcquisitionState() == 0; },
                               bench.TimeoutMs()),
                "the acquisition does not end after its frame");
        Require(events.Frames() == 1,
                std::to_string(events.Frames()) + " frames came for one snap");
        TakeBuffer(bench);
        bench.Expect("StopSnap", bench.Grabber().StopSnap(), object);
    }
    return std::to_string(kFewFrames) + " frames";
}

template <std::uint32_t kMode>
std::string CheckSingleMode(SelftestBench& bench) {
    return CheckSingle(bench, kMode);
}

std::string CheckBuffers(SelftestBench& bench) {
    bench.RequireFrames(kMvCapContinuous);
    for (const std::uint64_t count : kBufferCounts) {
        bench.TakeFrames(count, kFewFrames);
        std::set<const void*> places;
        for (std::uint64_t i = 0; i < count; ++i) {
            places.insert(bench.Grabber().GetFrameBuffer(i));
        }
        Require(places.size() == count,
                "some of " + std::to_string(count) + " buffers share their memory");
    }
    return "2, 3, 10, 50 and 100 buffers";
}

std::string CheckRestarts(SelftestBench& bench) {
    bench.RequireFrames(kMvCapContinuous);
    for (int i = 0; i < kRestarts; ++i) {
        bench.TakeFrames(4, 1);
    }
    return std::to_string(kRestarts) + " times";
}

std::string CheckStopQueued(SelftestBench& bench) {
    bench.RequireFrames(kMvCapContinuous);
    Session& session = bench.Use();
    for (int i = 0; i < kRestarts; ++i) {
        session.PrepareBuffers(10, "10 buffers");
        bench.Expect("Snap", bench.Grabber().Snap(1), "mode 1");
        bench.Expect("StopSnap", bench.Grabber().StopSnap(), "an acquisition that just began");
        Require(bench.Grabber().GetAcquisitionState() == 0, "the acquisition does not stop");
        session.Events().ResetFrames();
        // What the camera kept would be written to later.
        session.PrepareBuffers(2, "2 buffers after a stop with frames queued");
        Require(session.Events().Frames() == 0, "frames come after the stop");
    }
    bench.TakeFrames(10, kFewFrames);
    return std::to_string(kRestarts) + " times, then frames came";
}

/// What is known of the frames of one acquisition.
class FrameInfos {
public:
    FrameInfos(SelftestBench& usedBench, IMivoraModuleServices& moduleServices)
        : bench(usedBench), services(moduleServices) {
        bench.Use().Events().SetFrameHook([this](std::uint64_t index) { Add(index); });
    }
    ~FrameInfos() {
        bench.Grabber().StopSnap();
        bench.Use().Events().SetFrameHook(nullptr);
    }
    FrameInfos(const FrameInfos&) = delete;
    FrameInfos& operator=(const FrameInfos&) = delete;

    std::vector<MV_FRAME_INFO> Take() {
        platform::MutexLock lock(mutex);
        return infos;
    }
    MV_SERVICE_RESULT Result() {
        platform::MutexLock lock(mutex);
        return result;
    }

private:
    void Add(std::uint64_t index) {
        MV_FRAME_INFO info{};
        info.size = sizeof info;
        const MV_SERVICE_RESULT got = services.GetFrameInfo(index, &info, nullptr);
        platform::MutexLock lock(mutex);
        result = got == MV_SERVICE_OK ? result : got;
        infos.push_back(info);
    }

    SelftestBench& bench;
    IMivoraModuleServices& services;
    platform::Mutex mutex;
    std::vector<MV_FRAME_INFO> infos GUARDED_BY(mutex);
    MV_SERVICE_RESULT result GUARDED_BY(mutex) = MV_SERVICE_OK;
};

std::string CheckFrameInformation(SelftestBench& bench) {
    IMivoraModuleServices& services = bench.Services();
    bench.RequireFrames(kMvCapContinuous);
    const ImageLayout layout = DescribeImage(bench.Use().CheckedMode());
    FrameInfos known(bench, services);
    bench.TakeFrames(8, 2 * kFewFrames);
    if (known.Result() == MV_SERVICE_NOT_SUPPORTED) {
        throw SelftestNotApplicable("the module keeps no information on frames");
    }
    Require(known.Result() == MV_SERVICE_OK,
            "GetFrameInfo fails with " + std::to_string(static_cast<int>(known.Result())));
    const std::vector<MV_FRAME_INFO> infos = known.Take();
    for (std::size_t i = 0; i < infos.size(); ++i) {
        const MV_FRAME_INFO& info = infos[i];
        Require((info.valid & kMvFrameHasDimension) == 0 ||
                    (info.width == layout.width && info.height == layout.height),
                "a frame has " + std::to_string(info.width) + " x " + std::to_string(info.height) +
                    " pixels, the mode " + std::to_string(layout.width) + " x " +
                    std::to_string(layout.height));
        if (i == 0) {
            continue;
        }
        const MV_FRAME_INFO& before = infos[i - 1];
        const std::uint32_t both = info.valid & before.valid;
        Require((both & kMvFrameHasFrameId) == 0 || info.frameId > before.frameId,
                "frame " + std::to_string(info.frameId) + " comes after frame " +
                    std::to_string(before.frameId));
        Require((both & kMvFrameHasTimestamp) == 0 || info.timestamp > before.timestamp,
                "the timestamp does not grow from frame to frame");
    }
    return std::to_string(infos.size()) + " frames";
}

} // namespace

std::vector<SelftestCheck> AcquisitionSelftestChecks() {
    return {{"open-close", CheckOpenClose},
            {"mode", CheckMode},
            {"snap-1", CheckContinuous},
            {"snap-2", CheckSingleMode<2>},
            {"snap-3", CheckSingleMode<3>},
            {"snap-4", CheckSingleMode<4>},
            {"snap-5", CheckSingleMode<5>},
            {"buffers", CheckBuffers},
            {"restarts", CheckRestarts},
            {"stop-queued", CheckStopQueued},
            {"frame-information", CheckFrameInformation}};
}
