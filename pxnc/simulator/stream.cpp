#include "pxnc/simulator/stream.h"

#include "pxnc/simulator/camera.h"

namespace pxsim {
namespace {

constexpr std::int64_t kLargestFrameCount = 0xFFFFFFFF;
constexpr std::uint32_t kPollMs = 1000;
constexpr std::int64_t kBestPacketSize = 8228;

std::int64_t Signed(std::uint64_t value) {
    return static_cast<std::int64_t>(value);
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
    const char* type = TransportLayerTypeName(camera.InterfaceType());
    String("StreamID")
        .Value("Stream" + std::to_string(index))
        .In("/StreamInformation")
        .ReadOnly()
        .Text("Identifier of the stream.");
    String("StreamType")
        .Value(type)
        .In("/StreamInformation")
        .ReadOnly()
        .Text("Transport layer type of the stream.");
    Int("StreamIndex")
        .Value(index)
        .In("/StreamInformation")
        .ReadOnly()
        .Text("Number of the stream.");
    Enum("StreamBufferHandlingMode")
        .Entries({"Default", "OldestFirst", "NewestOnly"})
        .Value("Default")
        .In("/BufferHandlingControl")
        .LockedWhileStreaming()
        .Text("Order in which queued buffers are filled.");
    Enum("StreamBufferHandlingModeSupport")
        .Entries({"None", "Host"})
        .Value("Host")
        .In("/BufferHandlingControl")
        .For(PxnVisibilityExpert)
        .Text("Who orders the buffers.");
    Int("StreamBufferAlignment")
        .Value(1)
        .Range(1, 4096)
        .In("/BufferHandlingControl")
        .For(PxnVisibilityExpert)
        .ReadOnly()
        .Unit("B")
        .Text("Alignment that buffers should have.");
    Int("StreamAnnounceBufferMinimum")
        .Value(1)
        .In("/BufferHandlingControl")
        .For(PxnVisibilityExpert)
        .ReadOnly()
        .Text("Buffers that have to be announced for an acquisition.");
    Int("StreamAnnouncedBufferCount")
        .Computed([this] { return std::int64_t{engine.AnnouncedFrames()}; })
        .In("/BufferHandlingControl")
        .ReadOnly()
        .Volatile(kPollMs)
        .Text("Buffers announced at present.");
    Int("StreamQueuedBufferCount")
        .Computed([this] { return std::int64_t{engine.QueuedFrames()}; })
        .In("/BufferHandlingControl")
        .ReadOnly()
        .Volatile(kPollMs)
        .Text("Buffers waiting to be filled.");
    Bool("StreamIsGrabbing")
        .Computed([this] { return engine.IsCapturing(); })
        .In("/StreamInformation")
        .ReadOnly()
        .Volatile(kPollMs)
        .Text("Capture has been started.");
}

void Stream::AddStatistics() {
    using Counter = std::atomic<std::uint64_t>;
    const auto add = [this](const char* name, const Counter& counter, const char* text) {
        Int(name)
            .Computed([&counter] { return Signed(counter); })
            .In("/Statistics")
            .ReadOnly()
            .Volatile(kPollMs)
            .Range(0, kLargestFrameCount)
            .Text(text);
    };
    StreamStatistics& counts = engine.Statistics();
    add("StreamDeliveredFrameCount", counts.delivered, "Complete frames handed to the host.");
    add("StreamIncompleteFrameCount", counts.incomplete, "Frames with missing parts.");
    add("StreamBufferUnderrunCount", counts.underrun, "Frames lost because no buffer was queued.");
    add("StreamLostFrameCount", counts.lost, "Frames lost on the way.");
    add("StreamReceivedBytes", counts.bytes, "Bytes written into buffers.");
    Command("StreamStatisticsReset")
        .Runs([this] {
            StreamStatistics& statistics = engine.Statistics();
            statistics.delivered = 0;
            statistics.incomplete = 0;
            statistics.underrun = 0;
            statistics.lost = 0;
            statistics.bytes = 0;
            return PxnErrSuccess;
        })
        .In("/Statistics")
        .Affects({"StreamDeliveredFrameCount", "StreamIncompleteFrameCount",
                  "StreamBufferUnderrunCount", "StreamLostFrameCount", "StreamReceivedBytes"})
        .Text("Sets the counters of this category to 0.");
}

void Stream::AddGigEFeatures() {
    Command("GVSPAdjustPacketSize")
        .Runs([this] { return AdjustPacketSize(); })
        .In("/GVSPControl")
        .Affects({"GVSPPacketSize"})
        .WritableWhen([this] { return !camera.IsStreaming(); })
        .Text("Finds the largest packet that the network carries and sets the camera to it.");
    Int("GVSPPacketSize")
        .Computed([this] { return camera.IntValue("GevSCPSPacketSize"); })
        .In("/GVSPControl")
        .ReadOnly()
        .Unit("B")
        .Text("Size of a stream packet with its headers.");
    Int("GVSPMaxLookBack")
        .Value(30)
        .Range(0, 1000)
        .In("/GVSPControl")
        .For(PxnVisibilityGuru)
        .Text("Packets looked back for before one counts as missing.");
    Int("GVSPMaxRequests")
        .Value(3)
        .Range(1, 100)
        .In("/GVSPControl")
        .For(PxnVisibilityGuru)
        .Text("Times that a missing packet is asked for again.");
    Int("GVSPTimeout")
        .Value(70)
        .Range(10, 10000)
        .In("/GVSPControl")
        .For(PxnVisibilityGuru)
        .Unit("ms")
        .Text("Time after which the rest of a frame counts as missing.");
    Bool("GVSPPacketResend")
        .Value(true)
        .In("/GVSPControl")
        .For(PxnVisibilityExpert)
        .Text("Ask the camera for missing packets.");
}

PxnError Stream::AdjustPacketSize() {
    auto* size = dynamic_cast<IntFeature*>(camera.Find("GevSCPSPacketSize"));
    size->Put(size->Nearest(kBestPacketSize));
    return PxnErrSuccess;
}

} // namespace pxsim
