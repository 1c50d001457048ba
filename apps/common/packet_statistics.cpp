// packet_statistics.cpp - what the stream says of packets and frames on their way
#include "apps/common/packet_statistics.h"

#include "apps/common/service_client.h"

#include <initializer_list>
#include <set>
#include <vector>

namespace {

using Count = std::optional<std::uint64_t>;

struct CountedFeature {
    Count PacketStatistics::*member;
    /// As the GenICam standards call it, else as SDKs do. The first that there is counts, and for
    /// nothing else.
    std::initializer_list<const char*> names;
    const char* key;
    const char* text;
};

const CountedFeature kCounted[] = {
    {&PacketStatistics::received,
     {"GevStreamSeenPacketCount", "GVSPReceivedPackets"},
     "received",
     " packets received"},
    {&PacketStatistics::missing,
     {"GevStreamLostPacketCount", "GVSPMissingPackets"},
     "missing",
     " packets missing"},
    {&PacketStatistics::resent,
     {"GevStreamResendPacketCount", "GVSPResentPackets"},
     "resent",
     " packets resent"},
    {&PacketStatistics::underruns,
     {"StreamBufferUnderrunCount", "StreamLostFrameCount"},
     "underruns",
     " frames without a buffer"},
    // Frames for which no buffer was queued, by the standard; some SDKs count these apart.
    {&PacketStatistics::lost, {"StreamLostFrameCount"}, "lostFrames", " frames lost on the way"},
};

} // namespace

PacketStatistics& PacketStatistics::operator+=(const PacketStatistics& other) {
    for (const CountedFeature& feature : kCounted) {
        Count& count = this->*feature.member;
        const Count& more = other.*feature.member;
        if (more) {
            count = count.value_or(0) + *more;
        }
    }
    return *this;
}

std::string PacketStatistics::Text() const {
    std::string text;
    for (const CountedFeature& feature : kCounted) {
        if (const Count& count = this->*feature.member) {
            text += (text.empty() ? "" : ", ") + std::to_string(*count) + feature.text;
        }
    }
    return text;
}

JsonValue PacketStatistics::Json() const {
    if (IsEmpty()) {
        return nullptr;
    }
    std::vector<JsonMember> members;
    for (const CountedFeature& feature : kCounted) {
        const Count& count = this->*feature.member;
        members.push_back({feature.key, count ? JsonValue(*count) : JsonValue(nullptr)});
    }
    return JsonObject(members);
}

PacketStatistics ReadPacketStatistics(ServiceClient* services) {
    PacketStatistics statistics;
    if (!services) {
        return statistics;
    }
    std::set<std::string> used;
    for (const CountedFeature& feature : kCounted) {
        for (const char* const name : feature.names) {
            if (statistics.*feature.member || used.count(name) != 0) {
                continue;
            }
            const std::optional<ServiceValue> value = services->TryReadFeature("Stream0", name);
            if (value && value->type == MV_FEATURE_INTEGER && value->integer >= 0) {
                statistics.*feature.member = static_cast<std::uint64_t>(value->integer);
                used.insert(name);
            }
        }
    }
    return statistics;
}

PacketStatistics StatisticsSince(const PacketStatistics& before, const PacketStatistics& now) {
    PacketStatistics since = now;
    for (const CountedFeature& feature : kCounted) {
        Count& count = since.*feature.member;
        const Count& former = before.*feature.member;
        if (!former) {
            count.reset(); // how many of them came before is not known
        } else if (count && *former <= *count) {
            *count -= *former;
        }
    }
    return since;
}
