// camera_visit.cpp - opens a camera of the SDK, looks at it and corrects what can be corrected
#include "apps/doctor/camera_visit.h"

#include "apps/common/command_failure.h"
#include "apps/common/continuous_grab.h"
#include "apps/common/one_line.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/clock.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::uint64_t kTrialFrames = 5;
constexpr std::uint64_t kTrialBuffers = 8;
constexpr std::uint64_t kTrialSliceMs = 100;
constexpr std::uint64_t kTrialPatienceNs = 3'000'000'000; // without a frame of any kind
constexpr std::uint32_t kNegotiationMs = 5000;
constexpr const char* kCameraModule = "Camera";
constexpr const char* kStreamModule = "Stream0";
constexpr const char* kPacketDelay = "GevSCPD";

struct PacketSizeFeature {
    const char* module;
    const char* name;
};
/// Where the size of a packet is, the camera's own first.
constexpr PacketSizeFeature kPacketSizes[] = {{kCameraModule, "GevSCPSPacketSize"},
                                              {kStreamModule, "GVSPPacketSize"}};

bool Asks(const std::vector<Finding>& findings, const std::string& check) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return finding.check == check && finding.severity != Severity::kOk;
    });
}

} // namespace

std::vector<CameraFacts> ListCameraFacts(Session& session) {
    std::vector<CameraFacts> cameras;
    for (const KnownCamera& known : session.KnownCameras()) {
        CameraFacts camera;
        camera.name = known.Text();
        camera.serial = known.serialNumber;
        camera.transportLayer = known.transportLayer;
        camera.interfaceId = known.interfaceId;
        camera.canOpen = known.canOpen;
        cameras.push_back(camera);
    }
    return cameras;
}

CameraVisit::CameraVisit(Session& openingSession, std::int32_t index, CameraFacts listed)
    : session(openingSession), facts(std::move(listed)) {
    try {
        session.Check("SetActCameraIndex", session.Grabber().SetActCameraIndex(index), facts.name);
        session.OpenActCamera();
        isOpen = true;
    } catch (const CommandFailure& failure) {
        facts.openFailure = OneLine(failure.what());
    }
}

CameraVisit::~CameraVisit() {
    if (isOpen) {
        session.Grabber().CloseActCamera();
    }
}

std::optional<std::int64_t> CameraVisit::ReadInteger(const char* module, const char* feature) {
    const auto value = session.Services().TryReadFeature(module, feature);
    return value && value->type == MV_FEATURE_INTEGER ? std::optional(value->integer)
                                                      : std::nullopt;
}

void CameraVisit::ReadFeatures() {
    ServiceClient& services = session.Services();
    facts.packetSize.reset();
    for (const auto& [module, name] : kPacketSizes) {
        if (!facts.packetSize) {
            facts.packetSize = ReadInteger(module, name);
        }
    }
    facts.packetDelay = ReadInteger(kCameraModule, kPacketDelay);
    if (const auto milliseconds = ReadInteger(kCameraModule, "GevHeartbeatTimeout")) {
        facts.heartbeatMs = static_cast<double>(*milliseconds);
        facts.heartbeatSetting = "Camera/GevHeartbeatTimeout=3000";
    } else if (const auto value =
                   services.TryReadFeature(kCameraModule, "DeviceLinkHeartbeatTimeout");
               value && value->type == MV_FEATURE_FLOAT) {
        facts.heartbeatMs = value->real / 1000;
        facts.heartbeatSetting = "Camera/DeviceLinkHeartbeatTimeout=3000000";
    }
    const auto mode = services.TryReadFeature(kCameraModule, "TriggerMode");
    const auto selector = services.TryReadFeature(kCameraModule, "TriggerSelector");
    facts.trigger = mode && mode->text == "On" ? (selector ? selector->text : "TriggerMode") : "";
}

const CameraFacts& CameraVisit::Look() {
    if (!isOpen) {
        return facts;
    }
    try {
        ReadFeatures();
    } catch (const CommandFailure&) {
        // This module offers no access to features: what they would tell is not known.
    }
    facts.trial.reset();
    if (facts.trigger.empty()) {
        facts.trial = TakeFrames();
    }
    return facts;
}

Trial CameraVisit::TakeFrames() {
    Trial trial;
    trial.wanted = kTrialFrames;
    const std::uint64_t errorsBefore = session.Log().ReceiveErrors();
    try {
        ContinuousGrab grab(session, kTrialBuffers);
        grab.Start();
        const std::vector<std::string> startErrors = session.ErrorsInSpiteOfSuccess();
        std::uint64_t errors = 0;
        std::uint64_t last = platform::MonotonicNanoseconds();
        while (trial.whole + errors < kTrialFrames &&
               platform::MonotonicNanoseconds() - last < kTrialPatienceNs) {
            const bool isTaken = grab.TakeFrame(kTrialSliceMs, nullptr) == FrameResult::kTaken;
            trial.whole += isTaken ? 1 : 0;
            const std::uint64_t errorsNow = session.Log().ReceiveErrors() - errorsBefore;
            if (isTaken || errorsNow != errors) {
                last = platform::MonotonicNanoseconds();
            }
            errors = errorsNow;
        }
        grab.Stop();
        trial.incomplete = std::min(errors, kTrialFrames - trial.whole);
        if (trial.whole == 0 && !startErrors.empty()) {
            trial.failure = startErrors.front();
        }
    } catch (const CommandFailure& failure) {
        trial.failure = OneLine(failure.what());
    }
    return trial;
}

std::vector<FixReport> CameraVisit::Fix(const std::vector<Finding>& findings, std::uint32_t mtu) {
    std::vector<FixReport> fixes;
    if (!isOpen || !facts.packetSize) {
        return fixes;
    }
    if (Asks(findings, "packet-size") || Asks(findings, "frames")) {
        fixes.push_back(FixPacketSize(mtu));
        Look();
    }
    if (facts.trial && facts.trial->incomplete > 0 && facts.packetDelay) {
        fixes.push_back(FixPacketDelay());
        Look();
    }
    return fixes;
}

bool CameraVisit::WriteInteger(const char* module, const char* feature, std::int64_t value) {
    ServiceValue wanted;
    wanted.type = MV_FEATURE_INTEGER;
    wanted.integer = value;
    try {
        session.Services().WriteFeature(module, feature, wanted, std::to_string(value));
    } catch (const CommandFailure&) {
        // Whether the camera took it is read back.
    }
    return ReadInteger(module, feature) == value;
}

FixReport CameraVisit::FixPacketSize(std::uint32_t mtu) {
    const std::int64_t before = *facts.packetSize;
    FixReport fix{false, "packet-size", facts.name, ""};
    try {
        session.Services().RunCommand(kStreamModule, "GVSPAdjustPacketSize", kNegotiationMs);
    } catch (const CommandFailure&) {
        // Not every SDK has this command; the interface's limit serves as well.
    }
    ReadFeatures();
    for (const auto& [module, name] : kPacketSizes) {
        const auto limits = session.Services().TryDescribeFeature(module, name);
        if (mtu == 0 || *facts.packetSize <= std::int64_t{mtu} || !limits || !limits->hasLimits ||
            !limits->isWritable) {
            continue;
        }
        const std::int64_t step =
            limits->hasIncrement ? std::max<std::int64_t>(1, limits->increment) : 1;
        const std::int64_t most = std::min<std::int64_t>(mtu, limits->integerMax);
        if (most >= limits->integerMin) {
            WriteInteger(module, name, most - (most - limits->integerMin) % step);
            ReadFeatures();
        }
    }
    const bool fits = mtu == 0 || *facts.packetSize <= std::int64_t{mtu};
    fix.isDone = *facts.packetSize != before && fits;
    fix.text = fix.isDone
                   ? std::to_string(before) + " -> " + std::to_string(*facts.packetSize) + " bytes"
                   : "stays " + std::to_string(*facts.packetSize) +
                         " bytes: the camera and the way to it take no other";
    return fix;
}

FixReport CameraVisit::FixPacketDelay() {
    const std::int64_t before = *facts.packetDelay;
    const auto limits = session.Services().TryDescribeFeature(kCameraModule, kPacketDelay);
    if (!limits || !limits->isWritable || !limits->hasLimits) {
        return {false, "packet-delay", facts.name, "the camera does not let it be written"};
    }
    const std::int64_t step =
        limits->hasIncrement ? std::max<std::int64_t>(1, limits->increment) : 1;
    const std::int64_t most = limits->integerMax;
    for (std::int64_t wanted = std::max<std::int64_t>(1000, 2 * before); wanted <= most;
         wanted *= 4) {
        const std::int64_t delay = wanted - (wanted - limits->integerMin) % step;
        if (WriteInteger(kCameraModule, kPacketDelay, delay) &&
            TakeFrames().whole == kTrialFrames) {
            return {true, "packet-delay", facts.name,
                    std::to_string(before) + " -> " + std::to_string(delay)};
        }
    }
    const bool isBack = WriteInteger(kCameraModule, kPacketDelay, before);
    return {false, "packet-delay", facts.name,
            isBack ? "no delay helps: " + std::to_string(before) + " as before"
                   : "no delay helps, and the camera did not take " + std::to_string(before) +
                         " back"};
}
