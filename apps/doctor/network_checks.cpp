// network_checks.cpp - judges interfaces, limits of the network and the cameras that reply
#include "apps/doctor/checks.h"
#include "apps/doctor/ip_text.h"

#include <algorithm>
#include <cstdio>

namespace {

using platform::NetworkInterface;

constexpr std::uint64_t kLeastReceiveBuffer = 2ull << 20;
constexpr std::uint32_t kLeastMtu = 1500;
constexpr const char* kInterface = "interface";

bool IsForCameras(const NetworkInterface& one) {
    return one.isUp && one.address != 0 && !one.isLoopback;
}

void CheckInterfaces(const NetworkFacts& network, std::vector<Finding>& findings) {
    const std::vector<NetworkInterface>& interfaces = network.interfaces;
    for (const NetworkInterface& one : interfaces) {
        if (!IsForCameras(one)) {
            continue;
        }
        Finding finding{Severity::kOk, kInterface, one.name, SubnetText(one.address, one.netmask),
                        ""};
        if (one.mtu != 0) {
            finding.text += ", packets of up to " + std::to_string(one.mtu) + " bytes";
        }
        const auto other = std::find_if(
            interfaces.begin(), interfaces.end(), [&](const NetworkInterface& candidate) {
                return IsForCameras(candidate) && candidate.name != one.name &&
                       ((candidate.address ^ one.address) & candidate.netmask & one.netmask) == 0;
            });
        if (other != interfaces.end()) {
            finding.severity = Severity::kWarning;
            finding.text += ", the same subnet as " + other->name;
            finding.advice = "give each interface a subnet of its own: packets for a camera leave "
                             "by one of them only";
        } else if (one.mtu != 0 && one.mtu < kLeastMtu) {
            finding.severity = Severity::kWarning;
            finding.advice = "ip link set " + one.name + " mtu 1500, or 9000 where camera and " +
                             "switch take that; small packets cost more processor time";
        }
        findings.push_back(finding);
    }
    if (!network.wanted.empty() && interfaces.empty()) {
        findings.push_back({Severity::kProblem, kInterface, network.wanted.front(),
                            "there is no network interface of this name or address",
                            "mivora doctor without --interface lists those that are up"});
    } else if (network.wanted.empty() &&
               std::none_of(interfaces.begin(), interfaces.end(), IsForCameras)) {
        findings.push_back({Severity::kWarning, kInterface, "",
                            "no network interface is up and has an IPv4 address",
                            "for GigE cameras: ip addr add 192.168.1.1/24 dev INTERFACE; ip link "
                            "set INTERFACE up"});
    }
}

void CheckReceiveBuffer(const NetworkFacts& network, std::vector<Finding>& findings) {
    if (!network.receiveBuffer) {
        return;
    }
    const bool isGood = *network.receiveBuffer >= kLeastReceiveBuffer;
    findings.push_back(
        {isGood ? Severity::kOk : Severity::kWarning, "receive-buffer", "",
         "a socket gets at most " + std::to_string(*network.receiveBuffer) + " bytes" +
             (isGood ? "" : ", so that packets of a GigE camera are lost when the program waits"),
         isGood ? "" : "sysctl -w net.core.rmem_max=" + std::to_string(kGoodReceiveBuffer)});
}

void CheckFilters(const NetworkFacts& network, std::vector<Finding>& findings) {
    for (const auto& [name, filter] : network.filters) {
        const bool isStrict = filter == 1;
        findings.push_back(
            {isStrict ? Severity::kWarning : Severity::kOk, "path-filter", name,
             isStrict ? "replies of cameras whose address is of another subnet are dropped"
                      : "replies of cameras of other subnets come through",
             isStrict ? "sysctl -w net.ipv4.conf." + name + ".rp_filter=2 (with " +
                            "net.ipv4.conf.all.rp_filter at 0 or 2)"
                      : ""});
    }
}

std::string MacText(std::uint64_t mac) {
    char text[18];
    const auto part = [mac](int at) {
        return static_cast<unsigned>(mac >> (8 * at) & 0xFF);
    };
    std::snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", part(5), part(4), part(3),
                  part(2), part(1), part(0));
    return text;
}

void CheckReply(const GigeCamera& camera, std::vector<Finding>& findings) {
    const std::string object = camera.model + " " + camera.serial;
    const std::string place = "replies on " + camera.interfaceName + " (" +
                              SubnetText(camera.interfaceAddress, camera.interfaceNetmask) +
                              ") from " + IpText(camera.address) + ", hardware address " +
                              MacText(camera.mac);
    if (camera.IsInSubnet()) {
        findings.push_back({Severity::kOk, "address", object, place, ""});
    } else {
        findings.push_back({Severity::kProblem, "address", object,
                            place + ": another subnet, so that it cannot be opened",
                            "mivora doctor --fix --address ADDRESS, a free one of " +
                                SubnetText(camera.interfaceAddress, camera.interfaceNetmask)});
    }
}

} // namespace

std::vector<Finding> CheckNetwork(const NetworkFacts& network) {
    std::vector<Finding> findings;
    CheckInterfaces(network, findings);
    CheckReceiveBuffer(network, findings);
    CheckFilters(network, findings);
    for (const GigeCamera& camera : network.cameras) {
        CheckReply(camera, findings);
    }
    return findings;
}
