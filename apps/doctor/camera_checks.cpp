// camera_checks.cpp - judges the cameras that the SDK lists
#include "apps/doctor/checks.h"
#include "apps/doctor/ip_text.h"

#include <algorithm>

namespace {

constexpr double kLeastHeartbeatMs = 1000;
constexpr double kMostHeartbeatMs = 30000;
constexpr std::int64_t kSmallPacket = 1500;
constexpr std::uint32_t kLargeMtu = 8000;

const GigeCamera* FindReply(const CameraFacts& camera, const NetworkFacts& network) {
    const auto found =
        std::find_if(network.cameras.begin(), network.cameras.end(), [&](const GigeCamera& reply) {
            return !reply.serial.empty() && reply.serial == camera.serial;
        });
    return found == network.cameras.end() ? nullptr : &*found;
}

Finding CheckOpening(const CameraFacts& camera, const GigeCamera* reply) {
    if (camera.openFailure.empty()) {
        return {Severity::kOk, "open", camera.name, "can be opened", ""};
    }
    Finding finding{Severity::kProblem, "open", camera.name, camera.openFailure, ""};
    if (reply && !reply->IsInSubnet()) {
        finding.text = "its address " + IpText(reply->address) + " is of another subnet than " +
                       reply->interfaceName + ": " + finding.text;
        finding.advice = "give it an address of " +
                         SubnetText(reply->interfaceAddress, reply->interfaceNetmask) +
                         ": mivora doctor --fix --address ADDRESS";
    } else if ((reply && reply->isControlled) || !camera.canOpen) {
        const std::string host =
            reply && reply->controller != 0 ? " on " + IpText(reply->controller) : "";
        finding.text = "in use by another program" + host + ": " + finding.text;
        finding.advice = "end the program" + host + " that has it";
        if (reply && reply->heartbeatMs) {
            finding.advice += "; of one that crashed it is free after " +
                              std::to_string(*reply->heartbeatMs) + " ms";
        }
    } else {
        finding.advice = "another program may have it, or its cable or power is gone: end the "
                         "program, check the cable, try again";
    }
    return finding;
}

std::string NamedBy(const CameraFacts& camera) {
    const std::size_t id = camera.name.find(", 0x");
    return id == std::string::npos
               ? std::string("mivora")
               : "mivora --camera " + camera.name.substr(id + 2, sizeof "0x00000000" - 1);
}

void CheckHeartbeat(const CameraFacts& camera, std::vector<Finding>& findings) {
    if (!camera.heartbeatMs) {
        return;
    }
    const auto milliseconds = static_cast<std::int64_t>(*camera.heartbeatMs);
    Finding finding{Severity::kOk, "heartbeat", camera.name,
                    "the camera is free " + std::to_string(milliseconds) +
                        " ms after its program has gone",
                    ""};
    if (*camera.heartbeatMs < kLeastHeartbeatMs) {
        finding.severity = Severity::kWarning;
        finding.text += "; a program that pauses that long loses it";
        finding.advice = NamedBy(camera) + " set " + camera.heartbeatSetting;
    } else if (*camera.heartbeatMs > kMostHeartbeatMs) {
        finding.severity = Severity::kWarning;
        finding.text += "; so long nobody can open it after a crash";
        finding.advice = NamedBy(camera) + " set " + camera.heartbeatSetting;
    }
    findings.push_back(finding);
}

void CheckPacketSize(const CameraFacts& camera, std::uint32_t mtu, std::vector<Finding>& findings) {
    if (!camera.packetSize) {
        return;
    }
    Finding finding{Severity::kOk, "packet-size", camera.name,
                    std::to_string(*camera.packetSize) + " bytes", ""};
    if (mtu != 0) {
        finding.text += ", the interface takes " + std::to_string(mtu);
    }
    if (camera.packetDelay.value_or(0) != 0) {
        finding.text += ", with a delay of " + std::to_string(*camera.packetDelay) + " between two";
    }
    if (mtu != 0 && *camera.packetSize > std::int64_t{mtu}) {
        finding.severity = Severity::kProblem;
        finding.text += ": packets are lost on the way";
        finding.advice = "mivora doctor --fix, or ip link set INTERFACE mtu 9000 where camera and "
                         "switch take that";
    } else if (mtu >= kLargeMtu && *camera.packetSize <= kSmallPacket) {
        finding.severity = Severity::kWarning;
        finding.text += ": larger packets would cost less processor time";
        finding.advice = "mivora doctor --fix, and a switch that takes large packets";
    }
    findings.push_back(finding);
}

void CheckTrial(const CameraFacts& camera, std::vector<Finding>& findings) {
    if (!camera.trigger.empty()) {
        findings.push_back(
            {Severity::kWarning, "frames", camera.name,
             "the camera waits for the trigger " + camera.trigger + ", so that none was taken",
             NamedBy(camera) + " set Camera/TriggerMode=Off"});
        return;
    }
    if (!camera.trial) {
        return;
    }
    const Trial& trial = *camera.trial;
    Finding finding{
        Severity::kOk, "frames", camera.name,
        std::to_string(trial.whole) + " of " + std::to_string(trial.wanted) + " were whole", ""};
    if (!trial.failure.empty()) {
        finding = {Severity::kProblem, "frames", camera.name, trial.failure,
                   "mivora --log - grab --frames 1 shows at which step"};
    } else if (trial.incomplete > 0) {
        finding.severity = trial.whole == 0 ? Severity::kProblem : Severity::kWarning;
        finding.text += ", " + std::to_string(trial.incomplete) + " had gaps";
        finding.advice = camera.packetSize
                             ? "mivora doctor --fix tries other packet sizes and delays; a larger "
                               "receive buffer and a lower frame rate help as well"
                             : "a lower frame rate, another cable or port";
    } else if (trial.whole < trial.wanted) {
        finding.severity = Severity::kProblem;
        finding.text += ", the others never came";
        finding.advice = camera.packetSize
                             ? "allow UDP packets of the camera in the firewall, and a packet size "
                               "that gets through: mivora doctor --fix"
                             : "check exposure time and frame rate: " + NamedBy(camera) +
                                   " features --filter Acquisition";
    }
    findings.push_back(finding);
}

} // namespace

std::uint32_t MtuFor(const CameraFacts& camera, const NetworkFacts& network) {
    const GigeCamera* const reply = FindReply(camera, network);
    const std::string& name = reply ? reply->interfaceName : camera.interfaceId;
    const auto found = std::find_if(
        network.interfaces.begin(), network.interfaces.end(),
        [&](const platform::NetworkInterface& candidate) { return candidate.name == name; });
    return found == network.interfaces.end() ? 0 : found->mtu;
}

std::vector<Finding> CheckCameras(const std::vector<CameraFacts>& cameras,
                                  const NetworkFacts& network) {
    std::vector<Finding> findings;
    if (cameras.empty()) {
        findings.push_back(
            {Severity::kProblem, "cameras", "", "the SDK lists none",
             network.cameras.empty()
                 ? "check cable and power; GigE: an address in the interface's subnet and UDP "
                   "allowed in the firewall; USB: access to the device"
                 : "cameras reply on the network (above), so the SDK does not see them: put their "
                   "interface into its configuration, or use another SDK"});
    }
    for (const CameraFacts& camera : cameras) {
        findings.push_back(CheckOpening(camera, FindReply(camera, network)));
        if (camera.openFailure.empty()) {
            CheckHeartbeat(camera, findings);
            CheckPacketSize(camera, MtuFor(camera, network), findings);
            CheckTrial(camera, findings);
        }
    }
    return findings;
}
