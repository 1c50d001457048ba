// frame_service.cpp - what hosts get to know of each frame
#include "services/frame_service.h"

#include "acquisition/acquisition.h"
#include "sdk/answer_size.h"
#include "sdk/no_throw.h"
#include "services/feature_records.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pyxen {

namespace {

struct ChunkRecord {
    std::string name;
    OwnedValue value;
};

/// What decides which chunks there are; no chunks themselves.
constexpr std::string_view kChunkControls[] = {"ChunkModeActive", "ChunkSelector", "ChunkEnable"};

/// Reads all chunks of a frame inside the SDK's callback.
class ChunkReader {
public:
    ChunkReader(const CPyxenAPIAccess& access, PxnHandle cameraHandle)
        : api(access), camera(cameraHandle) {}

    static PxnError PXN_CALL OnAccess(PxnHandle handle, void* context) {
        return NoThrow<PxnError>(PxnErrResources,
                                 [&] { return static_cast<ChunkReader*>(context)->Read(handle); });
    }
    const std::vector<ChunkRecord>& Chunks() const { return chunks; }

private:
    PxnError Read(PxnHandle handle) {
        std::uint32_t count = 0;
        PxnError result = api.PxnFeaturesList(handle, nullptr, 0, &count, sizeof(PxnFeatureInfo));
        if (result != PxnErrSuccess) {
            return result;
        }
        if (!IsAnswerSize<PxnFeatureInfo>(count)) {
            return PxnErrResources;
        }
        std::vector<PxnFeatureInfo> infos(std::max(count, 1u), PxnFeatureInfo{});
        std::uint32_t found = 0;
        result = api.PxnFeaturesList(handle, infos.data(), count, &found, sizeof(PxnFeatureInfo));
        if (result != PxnErrSuccess) {
            return result;
        }
        infos.resize(std::min(count, found));
        for (const PxnFeatureInfo& info : infos) {
            if (info.name && IsChunk(info.name)) {
                ReadOne({api, handle, info.name, static_cast<FeatureType>(info.featureDataType)});
            }
        }
        return PxnErrSuccess;
    }

    // Some SDKs give all features of the camera beside the chunks.
    bool IsChunk(const char* name) const {
        const std::string_view text = name;
        if (text.substr(0, 5) == "Chunk") {
            return std::find(std::begin(kChunkControls), std::end(kChunkControls), text) ==
                   std::end(kChunkControls);
        }
        PxnFeatureInfo info{};
        return api.PxnFeatureInfoQuery(camera, name, &info, sizeof info) == PxnErrNotFound;
    }

    void ReadOne(const Feature& feature) {
        bool isReadable = false;
        bool isWritable = false;
        FeatureValue value;
        // A chunk that the frame does not carry is not readable.
        if (!HasValue(feature.Type()) || feature.Access(isReadable, isWritable) != PxnErrSuccess ||
            !isReadable || feature.Read(value) != PxnErrSuccess) {
            return;
        }
        std::int64_t number = 0;
        const EnumEntry* const entry = value.GetIf<EnumEntry>();
        if (entry && entry->name && feature.EntryNumber(entry->name, number) != PxnErrSuccess) {
            number = 0;
        }
        chunks.push_back({feature.Name(), OwnedValue(value, number)});
    }

    const CPyxenAPIAccess& api;
    const PxnHandle camera;
    std::vector<ChunkRecord> chunks;
};

/// `nothing` is what the frame has not brought.
ServiceOutcome FrameOutcome(std::uint64_t bufferIndex, MV_SERVICE_RESULT result,
                            const char* nothing) {
    const std::string buffer = "buffer " + std::to_string(bufferIndex);
    switch (result) {
    case MV_SERVICE_OK:
        return {};
    case MV_SERVICE_NOT_FOUND:
        return {result, buffer + ": there is none, or nothing has been received into it"};
    case MV_SERVICE_GONE:
        return {result, buffer + ": the camera has it again"};
    case MV_SERVICE_NOT_SUPPORTED:
        return {result, buffer + nothing};
    case MV_SERVICE_BUSY:
        return {result, buffer + ": another thread reads or queues frames"};
    case MV_SERVICE_NO_CAMERA:
        return {result, buffer + ": no camera is open, or it has gone"};
    case MV_SERVICE_OUT_OF_MEMORY:
        return {result, "out of memory"};
    default:
        return {result, buffer};
    }
}

ServiceOutcome ChunkOutcome(std::uint64_t bufferIndex, MV_SERVICE_RESULT result, PxnError error) {
    ServiceOutcome outcome = FrameOutcome(bufferIndex, result, ": the frame carries no chunks");
    if (result == MV_SERVICE_SDK_FAILED) {
        outcome.reason = SdkFailure(outcome.reason + ": the chunks", error, false).reason;
    }
    return outcome;
}

} // namespace

ServiceOutcome FrameService::GetInfo(std::uint64_t bufferIndex, MV_FRAME_INFO& info) const {
    if (!context.Grabber().Frames().LoadFrameInfo(bufferIndex, info)) {
        return {MV_SERVICE_NOT_FOUND, "there is no buffer " + std::to_string(bufferIndex)};
    }
    return {};
}

template <typename Read>
ServiceOutcome FrameService::WhileFrameStays(std::uint64_t bufferIndex, Read read) {
    return context.Grabber().Frames().IsHandingOver(bufferIndex) ? read()
                                                                 : context.WhileLocked(read);
}

ServiceOutcome FrameService::ReadChunks(std::uint64_t bufferIndex, MV_CHUNK_RECEIVER receiver,
                                        void* receiverContext) {
    IServiceGrabber& grabber = context.Grabber();
    ChunkReader reader(grabber.Api(), grabber.Frames().CameraHandle());
    ServiceOutcome outcome = WhileFrameStays(bufferIndex, [&] {
        PxnError error = PxnErrSuccess;
        const MV_SERVICE_RESULT result =
            grabber.Frames().ReadChunks(bufferIndex, &ChunkReader::OnAccess, &reader, error);
        return ChunkOutcome(bufferIndex, result, error);
    });
    if (outcome) {
        for (const ChunkRecord& chunk : reader.Chunks()) {
            const MV_FEATURE_VALUE value = chunk.value.Record();
            CallReceiver(receiver, chunk.name.c_str(), &value, receiverContext);
        }
    }
    return outcome;
}

ServiceOutcome FrameService::ReadSentImage(std::uint64_t bufferIndex, MV_DATA_RECEIVER receiver,
                                           void* receiverContext) {
    SentImage image;
    ServiceOutcome outcome = WhileFrameStays(bufferIndex, [&] {
        return FrameOutcome(bufferIndex,
                            context.Grabber().Frames().CopySentImage(bufferIndex, image),
                            ": the frame has brought no image");
    });
    if (outcome) {
        CallReceiver(receiver, image.format, image.bytes.data(), image.bytes.size(),
                     receiverContext);
    }
    return outcome;
}

ServiceOutcome FrameService::InstallReceiver(MV_FRAME_RECEIVER receiver, void* receiverContext) {
    context.Grabber().Frames().Listener().Install(receiver, receiverContext);
    return {};
}

} // namespace pyxen
