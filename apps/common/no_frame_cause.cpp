// no_frame_cause.cpp - why no frame comes
#include "apps/common/no_frame_cause.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr const char* kCamera = "Camera";
constexpr double kMillisecondsPerSecond = 1000;
constexpr double kMicrosecondsPerMillisecond = 1000;

std::string NumberText(double number) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.6g", number);
    return text.data();
}

class CauseFinder {
public:
    CauseFinder(ServiceClient& moduleServices, const NoFrameFacts& knownFacts)
        : services(moduleServices), facts(knownFacts) {}

    bool IsTriggered(NoFrameCause& cause) {
        const std::optional<ServiceValue> selected =
            services.TryReadFeature(kCamera, "TriggerSelector");
        if (IsTriggeredNow(cause, selected ? selected->text : "")) {
            return true;
        }
        if (!selected) {
            return false;
        }
        bool isTriggered = false;
        for (const std::string& name : OtherTriggers(selected->text)) {
            if (SelectTrigger(name) && IsTriggeredNow(cause, name)) {
                isTriggered = true;
                break;
            }
        }
        SelectTrigger(selected->text);
        return isTriggered;
    }

    NoFrameCause Find() {
        NoFrameCause cause;
        // What is certain before what is likely.
        if (IsGone(cause) || IsNotStarted(cause) || HasEnded(cause) || IsIncomplete(cause) ||
            IsTriggered(cause) || IsSlow(cause) || HasNoBuffer(cause) || IsNotArriving(cause)) {
            return cause;
        }
        cause.text = "the camera replies, waits for no trigger and sends nothing";
        return cause;
    }

private:
    bool IsGone(NoFrameCause& cause) {
        // Every camera has a width; whether it can be read is all that matters.
        switch (services.ProbeFeature(kCamera, "Width")) {
        case MV_SERVICE_NO_CAMERA:
        case MV_SERVICE_NOT_INITIALISED:
            cause = {NoFrameKind::kGone, "it is gone"};
            return true;
        case MV_SERVICE_SDK_FAILED:
        case MV_SERVICE_TIMED_OUT:
            cause = {NoFrameKind::kGone, "it does not reply any more"};
            return true;
        default:
            return false;
        }
    }

    bool IsNotStarted(NoFrameCause& cause) const {
        if (facts.startErrors.empty()) {
            return false;
        }
        cause = {NoFrameKind::kNotStarted, "its start failed with: " + facts.startErrors.front()};
        return true;
    }

    /// Of an SDK that plays a recording.
    bool HasEnded(NoFrameCause& cause) {
        const std::optional<ServiceValue> ended = services.TryReadFeature(kCamera, "PlaybackEnded");
        if (!ended || ended->integer == 0) {
            return false;
        }
        cause = {NoFrameKind::kEnded, "the recording that is played has ended; with "
                                      "Camera/PlaybackRepeat=1 it begins again"};
        return true;
    }

    bool IsIncomplete(NoFrameCause& cause) const {
        if (facts.incomplete == 0) {
            return false;
        }
        cause = {NoFrameKind::kIncomplete,
                 std::to_string(facts.incomplete) + " frames came and none was complete"};
        if (facts.packets.missing.value_or(0) != 0) {
            cause.text += ", " + std::to_string(*facts.packets.missing) + " packets are missing";
        }
        cause.text += "; the network or the computer loses packets (packet size, receive buffer, "
                      "other traffic), or the buffers are too small";
        return true;
    }

    /// The triggers that hold frames back, but for the one that is selected.
    std::vector<std::string> OtherTriggers(const std::string& selected) {
        std::vector<std::string> names;
        const std::optional<FeatureDescription> selector =
            services.TryDescribeFeature(kCamera, "TriggerSelector");
        for (const DescribedEntry& entry :
             selector ? selector->entries : std::vector<DescribedEntry>()) {
            const bool isStart = std::string_view(entry.name).ends_with("Start") ||
                                 std::string_view(entry.name).ends_with("Active");
            if (entry.isAvailable && isStart && entry.name != selected) {
                names.push_back(entry.name);
            }
        }
        return names;
    }

    bool SelectTrigger(const std::string& name) {
        ServiceValue value;
        value.type = MV_FEATURE_ENUMERATION;
        value.text = name;
        try {
            services.WriteFeature(kCamera, "TriggerSelector", value, name);
            return true;
        } catch (const CommandFailure&) {
            return false;
        }
    }

    bool IsTriggeredNow(NoFrameCause& cause, const std::string& selected) {
        const std::optional<ServiceValue> mode = services.TryReadFeature(kCamera, "TriggerMode");
        if (!mode || mode->text != "On") {
            return false;
        }
        const std::optional<ServiceValue> source =
            services.TryReadFeature(kCamera, "TriggerSource");
        cause = {NoFrameKind::kTrigger,
                 "it waits for a trigger (TriggerMode is On" +
                     (selected.empty() ? std::string() : " for " + selected) +
                     (source ? ", TriggerSource is " + source->text : "") + ")"};
        if (source && source->text == "Software") {
            cause.text += "; the command Camera/TriggerSoftware gives one";
        }
        return true;
    }

    std::optional<double> Number(const char* feature) {
        const std::optional<ServiceValue> value = services.TryReadFeature(kCamera, feature);
        if (!value) {
            return std::nullopt;
        }
        return value->type == MV_FEATURE_FLOAT ? value->real : static_cast<double>(value->integer);
    }

    bool IsSlow(NoFrameCause& cause) {
        const auto waitedMs = static_cast<double>(facts.waitedMs);
        const std::optional<double> exposure = Number("ExposureTime");
        if (exposure && *exposure / kMicrosecondsPerMillisecond >= waitedMs) {
            cause = {NoFrameKind::kSlow, "it exposes longer (ExposureTime is " +
                                             NumberText(*exposure) + " us) than the " +
                                             NumberText(waitedMs) + " ms that were waited"};
            return true;
        }
        const std::optional<ServiceValue> isLimited =
            services.TryReadFeature(kCamera, "AcquisitionFrameRateEnable");
        const std::optional<double> rate =
            isLimited && isLimited->integer == 0 ? std::nullopt : Number("AcquisitionFrameRate");
        if (rate && *rate > 0 && kMillisecondsPerSecond / *rate >= waitedMs) {
            cause = {NoFrameKind::kSlow,
                     "it is slower (AcquisitionFrameRate is " + NumberText(*rate) +
                         " Hz, a frame each " + NumberText(kMillisecondsPerSecond / *rate) +
                         " ms) than the " + NumberText(waitedMs) + " ms that were waited"};
            return true;
        }
        return false;
    }

    bool HasNoBuffer(NoFrameCause& cause) const {
        if (facts.packets.underruns.value_or(0) == 0) {
            return false;
        }
        cause = {NoFrameKind::kNoBuffer, std::to_string(*facts.packets.underruns) +
                                             " frames came while no buffer was queued"};
        return true;
    }

    bool IsNotArriving(NoFrameCause& cause) {
        const std::optional<ServiceValue> packetSize =
            services.TryReadFeature("Stream0", "GVSPPacketSize");
        const bool isLost = facts.packets.lost.value_or(0) != 0;
        if (!packetSize && !isLost) {
            return false;
        }
        cause.kind = NoFrameKind::kNotArriving;
        cause.text = isLost ? std::to_string(*facts.packets.lost) + " frames were lost on the way"
                            : "the camera replies and nothing of its stream arrives";
        if (packetSize) {
            cause.text += "; a firewall may keep the stream away, or its packets of " +
                          std::to_string(packetSize->integer) +
                          " bytes (GVSPPacketSize) are larger than the network carries";
        }
        return true;
    }

    ServiceClient& services;
    const NoFrameFacts& facts;
};

} // namespace

std::optional<NoFrameCause> FindTriggerWait(ServiceClient& services) {
    const NoFrameFacts facts;
    NoFrameCause cause;
    return CauseFinder(services, facts).IsTriggered(cause) ? std::optional(cause) : std::nullopt;
}

NoFrameCause FindNoFrameCause(ServiceClient* services, const NoFrameFacts& facts) {
    if (!services) {
        return {NoFrameKind::kGone, "it is gone, or slower than --timeout allows"};
    }
    return CauseFinder(*services, facts).Find();
}
