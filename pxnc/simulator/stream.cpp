// stream.cpp - a stream module with the engine that moves its frames
#include "pxnc/simulator/stream.h"

#include "pxnc/simulator/camera.h"

namespace pxsim {
namespace {

constexpr std::int64_t kLargestFrameCount = 0xFFFFFFFF;
constexpr std::uint32_t kPollMs = 1000;
constexpr std::int64_t kBestPacketSize = 8228;

constexpr FeatureRow kBufferRows[] = {
    {"StreamBufferHandlingMode", Enum{"Default OldestFirst NewestOnly"}, kBeginner | kLocked,
     "Order in which queued buffers are filled."},
    {"StreamBufferHandlingModeSupport", Enum{"None Host", "Host"}, kExpert,
     "Where buffer handling modes are implemented."},
    {"StreamBufferAlignment", Int{.value = 1, .min = 1, .max = 4096}, kExpert | kReadOnly,
     "Recommended alignment of buffers.", Extra{.unit = "B"}},
    {"StreamAnnounceBufferMinimum", Int{1}, kExpert | kReadOnly,
     "Minimum number of announced buffers for an acquisition."},
    {"StreamAnnouncedBufferCount", Int{}, kBeginner | kReadOnly, "Number of announced buffers.",
     Extra{.pollingMs = kPollMs}},
    {"StreamQueuedBufferCount", Int{}, kBeginner | kReadOnly,
     "Number of buffers waiting to be filled.", Extra{.pollingMs = kPollMs}},
    {"StreamIsGrabbing", Bool{}, kBeginner | kReadOnly, "Whether capture has been started.",
     Extra{.pollingMs = kPollMs, .category = "/StreamInformation"}},
};

constexpr FeatureRow kStatisticsRows[] = {
    {"StreamDeliveredFrameCount", Int{.min = 0, .max = kLargestFrameCount}, kBeginner | kReadOnly,
     "Number of complete frames handed to the host.", Extra{.pollingMs = kPollMs}},
    {"StreamIncompleteFrameCount", Int{.min = 0, .max = kLargestFrameCount}, kBeginner | kReadOnly,
     "Number of frames with missing parts.", Extra{.pollingMs = kPollMs}},
    {"StreamBufferUnderrunCount", Int{.min = 0, .max = kLargestFrameCount}, kBeginner | kReadOnly,
     "Number of frames lost because no buffer was queued.", Extra{.pollingMs = kPollMs}},
    {"StreamLostFrameCount", Int{.min = 0, .max = kLargestFrameCount}, kBeginner | kReadOnly,
     "Number of frames lost in transmission.", Extra{.pollingMs = kPollMs}},
    {"StreamReceivedBytes", Int{.min = 0, .max = kLargestFrameCount}, kBeginner | kReadOnly,
     "Number of bytes written into buffers.", Extra{.pollingMs = kPollMs}},
    {"StreamStatisticsReset", Command{}, kBeginner, "Resets the counters of this category to 0.",
     Extra{.affects = "StreamDeliveredFrameCount StreamIncompleteFrameCount "
                      "StreamBufferUnderrunCount StreamLostFrameCount StreamReceivedBytes "
                      "GevStreamSeenPacketCount GevStreamLostPacketCount "
                      "GevStreamResendPacketCount"}},
};

constexpr FeatureRow kPacketRows[] = {
    {"GevStreamSeenPacketCount", Int{.min = 0, .max = kLargestFrameCount}, kExpert | kReadOnly,
     "Number of stream packets received.", Extra{.pollingMs = kPollMs}},
    {"GevStreamLostPacketCount", Int{.min = 0, .max = kLargestFrameCount}, kExpert | kReadOnly,
     "Number of stream packets that never came.", Extra{.pollingMs = kPollMs}},
    {"GevStreamResendPacketCount", Int{.min = 0, .max = kLargestFrameCount}, kExpert | kReadOnly,
     "Number of stream packets received after a request to send them again.",
     Extra{.pollingMs = kPollMs}},
};

constexpr FeatureRow kGigEStreamRows[] = {
    {"GVSPAdjustPacketSize", Command{}, kBeginner,
     "Sets the camera to the largest packet size that the network supports.",
     Extra{.affects = "GVSPPacketSize"}},
    {"GVSPPacketSize", Int{}, kBeginner | kReadOnly,
     "Size of a stream packet including its headers.", Extra{.unit = "B"}},
    {"GVSPMaxLookBack", Int{.value = 30, .min = 0, .max = 1000}, kGuru,
     "Number of recent packets that are checked for missing ones."},
    {"GVSPMaxRequests", Int{.value = 3, .min = 1, .max = 100}, kGuru,
     "Maximum number of requests for a missing packet."},
    {"GVSPTimeout", Int{.value = 70, .min = 10, .max = 10000}, kGuru,
     "Time after which the rest of a frame is considered missing.", Extra{.unit = "ms"}},
    {"GVSPPacketResend", Bool{true}, kExpert, "Enables requests for missing packets."},
};

void AddStreamIdentity(Module& module, std::uint32_t index, const char* type) {
    const std::string id = "Stream" + std::to_string(index);
    const FeatureRow rows[] = {
        {"StreamID", String{id.c_str()}, kBeginner | kReadOnly, "Identifier of the stream."},
        {"StreamType", String{type}, kBeginner | kReadOnly, "Transport layer type of the stream."},
        {"StreamIndex", Int{index}, kBeginner | kReadOnly, "Index of the stream."},
    };
    module.AddTable("/StreamInformation", rows);
}

} // namespace

Stream::Stream(Camera& owner, std::uint32_t index, skeleton::TextPool& pool,
               skeleton::Invalidations& dispatcher,
               std::shared_ptr<skeleton::CallbackTurns> turnsOfCamera)
    : Module(pool, dispatcher, owner.SharedMutex()),
      camera(owner),
      engine(owner, std::move(turnsOfCamera)) {
    AddFeatures(index);
    AddStatistics();
    if (camera.Setup().kind == CameraKind::kGigE) {
        AddGigEFeatures();
    }
}

PxnError Stream::GetPayloadSize(std::uint32_t& bytes) {
    return camera.GetPayloadSize(bytes);
}

void Stream::OnCaptureChanged() {
    camera.OnCaptureChanged();
}

void Stream::AddFeatures(std::uint32_t index) {
    AddStreamIdentity(*this, index, TransportLayerTypeName(camera.InterfaceType()));
    AddTable("/BufferHandlingControl", kBufferRows);
    Get<Int>("StreamAnnouncedBufferCount").Computed([this] {
        return std::int64_t{engine.AnnouncedFrames()};
    });
    Get<Int>("StreamQueuedBufferCount").Computed([this] {
        return std::int64_t{engine.QueuedFrames()};
    });
    Get<Bool>("StreamIsGrabbing").Computed([this] { return engine.IsCapturing(); });
}

void Stream::AddStatistics() {
    AddTable("/Statistics", kStatisticsRows);
    StreamStatistics& counts = engine.Statistics();
    Show("StreamDeliveredFrameCount", counts.delivered);
    Show("StreamIncompleteFrameCount", counts.incomplete);
    Show("StreamBufferUnderrunCount", counts.underrun);
    Show("StreamLostFrameCount", counts.lost);
    Show("StreamReceivedBytes", counts.bytes);
    Get<Command>("StreamStatisticsReset").Runs([&counts] {
        counts.delivered = 0;
        counts.incomplete = 0;
        counts.underrun = 0;
        counts.lost = 0;
        counts.bytes = 0;
        counts.packets = 0;
        counts.missingPackets = 0;
        counts.resentPackets = 0;
        return PxnErrSuccess;
    });
}

void Stream::Show(const char* name, const std::atomic<std::uint64_t>& counter) {
    Get<Int>(name).Computed([&counter] { return static_cast<std::int64_t>(counter.load()); });
}

void Stream::AddGigEFeatures() {
    AddTable("/Statistics", kPacketRows);
    StreamStatistics& counts = engine.Statistics();
    Show("GevStreamSeenPacketCount", counts.packets);
    Show("GevStreamLostPacketCount", counts.missingPackets);
    Show("GevStreamResendPacketCount", counts.resentPackets);
    AddTable("/GVSPControl", kGigEStreamRows);
    Get<Command>("GVSPAdjustPacketSize")
        .Runs([this] {
            IntFeature& size = camera.Get<Int>("GevSCPSPacketSize");
            size.Put(size.Nearest(kBestPacketSize));
            return PxnErrSuccess;
        })
        .WritableWhen([this] { return !camera.IsStreaming(); });
    Get<Int>("GVSPPacketSize").Computed([this] { return camera.IntValue("GevSCPSPacketSize"); });
}

} // namespace pxsim
