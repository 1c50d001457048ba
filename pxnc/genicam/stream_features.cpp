// stream_features.cpp - the features of a camera's stream module
#include "pxnc/genicam/stream_features.h"

#include "pxnc/genicam/configuration.h"
#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/result_codes.h"

#include <cstdint>
#include <limits>

namespace genicam {
namespace {

constexpr char kInformation[] = "/StreamInformation";
constexpr char kHandling[] = "/BufferHandlingControl";
constexpr char kStatistics[] = "/Statistics";
constexpr char kTransport[] = "/GVSPControl";

void AddCount(LocalFeatures& add, const LocalDescription& description, const FrameStream& frames,
              std::int64_t FrameStream::Statistics::*member) {
    add.AddInt(description, {0, std::numeric_limits<std::int64_t>::max(), 1},
               [&frames, member](std::int64_t& value) {
                   value = frames.GetStatistics().*member;
                   return PxnErrSuccess;
               });
}

void AddPacketFeatures(LocalFeatures& add, ArvGvDevice* gigE, FrameStream& frames) {
    add.AddCommand({"GVSPAdjustPacketSize", kTransport, "Adjust Packet Size",
                    "Finds the largest packet that reaches this machine and uses it."},
                   [gigE] {
                       ErrorOwner error;
                       arv_gv_device_auto_packet_size(gigE, error.Receive());
                       return ToResult(error);
                   });
    add.AddInt(
        {"GVSPPacketSize", kTransport, "Packet Size", "Size of a stream packet with its headers.",
         PxnVisibilityBeginner, "B"},
        {kLeastPacketSize, kGreatestPacketSize, 1},
        [gigE](std::int64_t& value) {
            ErrorOwner error;
            value = arv_gv_device_get_packet_size(gigE, error.Receive());
            return ToResult(error);
        },
        [gigE](const std::int64_t& value) {
            ErrorOwner error;
            arv_gv_device_set_packet_size(gigE, static_cast<gint>(value), error.Receive());
            return ToResult(error);
        });
    add.AddBool(
        {"GVSPPacketResend", kTransport, "Packet Resend",
         "Asks the camera again for packets that were lost; holds from the next start of "
         "the capture on.",
         PxnVisibilityExpert},
        [&frames](bool& value) {
            value = frames.GetPacketResend();
            return PxnErrSuccess;
        },
        [&frames](const bool& value) {
            frames.SetPacketResend(value);
            return PxnErrSuccess;
        });
    add.AddInt(
        {"GVSPSocketBufferSize", kTransport, "Socket Buffer Size",
         "Room in the kernel for packets that wait, 0 for one that fits the payload; holds "
         "from the next start of the capture on.",
         PxnVisibilityExpert, "B"},
        {0, std::numeric_limits<std::int32_t>::max(), 1},
        [&frames](std::int64_t& value) {
            value = frames.GetSocketBufferSize();
            return PxnErrSuccess;
        },
        [&frames](const std::int64_t& value) {
            frames.SetSocketBufferSize(static_cast<std::uint32_t>(value));
            return PxnErrSuccess;
        });
    AddCount(add,
             {"GVSPReceivedPackets", kStatistics, "Received Packets",
              "Packets that came, those that were asked for again included.", PxnVisibilityExpert},
             frames, &FrameStream::Statistics::receivedPackets);
    AddCount(add,
             {"GVSPResentPackets", kStatistics, "Resent Packets",
              "Packets that came after they were asked for again.", PxnVisibilityExpert},
             frames, &FrameStream::Statistics::resentPackets);
    AddCount(add,
             {"GVSPMissingPackets", kStatistics, "Missing Packets", "Packets that never came.",
              PxnVisibilityExpert},
             frames, &FrameStream::Statistics::missingPackets);
}

} // namespace

Module::Features MakeStreamFeatures(skeleton::TextPool& texts, CameraDevice& device,
                                    FrameStream& frames) {
    Module::Features features;
    LocalFeatures add(texts, features);
    const bool isGigE = device.Where().protocol == Protocol::kGigEVision;
    add.AddText({"StreamID", kInformation, "ID", "Identifier of the stream."}, "Stream0");
    add.AddEnum({"StreamType", kInformation, "Type", "Technology of the stream."},
                {{"GEV", PxnTransportLayerGEV}, {"U3V", PxnTransportLayerU3V}},
                [isGigE](std::int64_t& value) {
                    value = isGigE ? PxnTransportLayerGEV : PxnTransportLayerU3V;
                    return PxnErrSuccess;
                });
    add.AddBool({"StreamIsGrabbing", kHandling, "Is Grabbing", "Whether the capture runs."},
                [&frames](bool& value) {
                    value = frames.IsCapturing();
                    return PxnErrSuccess;
                });
    add.AddInt({"PayloadSize", kHandling, "Payload Size", "Bytes of one frame.",
                PxnVisibilityBeginner, "B"},
               {0, std::numeric_limits<std::uint32_t>::max(), 1}, [&device](std::int64_t& value) {
                   std::uint32_t size = 0;
                   const PxnError result = device.GetPayloadSize(size);
                   value = size;
                   return result;
               });
    AddCount(add,
             {"StreamAnnouncedBufferCount", kHandling, "Announced Frames",
              "Frames that are announced.", PxnVisibilityExpert},
             frames, &FrameStream::Statistics::announced);
    AddCount(add,
             {"StreamInputBufferCount", kHandling, "Queued Frames",
              "Frames that wait to be filled.", PxnVisibilityExpert},
             frames, &FrameStream::Statistics::queued);
    AddCount(add,
             {"StreamDeliveredFrameCount", kStatistics, "Delivered Frames",
              "Complete frames since the camera was opened."},
             frames, &FrameStream::Statistics::delivered);
    AddCount(add,
             {"StreamIncompleteFrameCount", kStatistics, "Incomplete Frames",
              "Frames that came with an error since the camera was opened."},
             frames, &FrameStream::Statistics::incomplete);
    AddCount(add,
             {"StreamLostFrameCount", kStatistics, "Lost Frames",
              "Frames that came while none was queued."},
             frames, &FrameStream::Statistics::lost);
    if (ArvGvDevice* gigE = device.GigEDevice()) {
        AddPacketFeatures(add, gigE, frames);
    }
    return features;
}

} // namespace genicam
