// doctor.cpp - looks for what keeps a camera from working on this machine
#include "apps/doctor/doctor.h"

#include "apps/common/app_options.h"
#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/one_line.h"
#include "apps/common/session.h"
#include "apps/doctor/camera_visit.h"
#include "apps/doctor/checks.h"
#include "apps/doctor/gige_search.h"
#include "apps/doctor/ip_text.h"
#include "apps/doctor/library_facts.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* kAddress = "address";

bool Contains(const std::vector<std::string>& list, const std::string& text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

} // namespace

Doctor::Doctor(const DoctorOptions& doctorOptions, const AppOptions& appOptions,
               std::function<IGrabberMaker&()> makerSource, Machine machineToCheck)
    : options(doctorOptions),
      app(appOptions),
      source(std::move(makerSource)),
      machine(std::move(machineToCheck)) {}

bool Doctor::Wants(const char* area) const {
    return options.only.empty() || Contains(options.only, area);
}

void Doctor::Add(const std::vector<Finding>& findings) {
    report.findings.insert(report.findings.end(), findings.begin(), findings.end());
}

DoctorReport Doctor::Run() {
    // Cameras are to have their addresses before an SDK looks for them.
    if (Wants("network")) {
        LookAtNetwork();
        if (options.fix) {
            FixNetwork();
        }
    }
    if (Wants("sdk") || Wants("camera")) {
        LookAtSdkAndCameras();
    }
    if (Wants("network")) {
        Add(CheckNetwork(facts.network));
    }
    if (Wants("usb")) {
        facts.usb = {machine.limits.UsbMegabytes(), machine.limits.ListUsbCameras()};
        Add(CheckUsb(facts.usb));
    }
    if (Wants("camera") && facts.sdk.moduleProblem.empty() && facts.sdk.initFailure.empty()) {
        Add(CheckCameras(facts.cameras, facts.network));
    }
    return std::move(report);
}

void Doctor::LookAtNetwork() {
    NetworkFacts network;
    network.wanted = options.interfaces;
    for (const platform::NetworkInterface& one : machine.listInterfaces()) {
        if (options.interfaces.empty() || Contains(options.interfaces, one.name) ||
            Contains(options.interfaces, IpText(one.address))) {
            network.interfaces.push_back(one);
        }
    }
    for (const platform::NetworkInterface& one : network.interfaces) {
        const auto filter = machine.limits.ReversePathFilter(one.name);
        if (filter && one.isUp && !one.isLoopback) {
            network.filters[one.name] = *filter;
        }
    }
    network.receiveBuffer = machine.limits.ReceiveBuffer();
    network.cameras = GigeSearch(network.interfaces, machine.cameraPort).Run(machine.searchMs);
    facts.network = std::move(network);
}

void Doctor::FixNetwork() {
    const std::vector<Finding> findings = CheckNetwork(facts.network);
    for (const Finding& finding : findings) {
        if (finding.check == "receive-buffer" && finding.severity != Severity::kOk) {
            std::string error;
            const bool isSet = machine.limits.SetReceiveBuffer(kGoodReceiveBuffer, &error);
            report.fixes.push_back(
                {isSet, finding.check, "",
                 isSet ? std::to_string(*facts.network.receiveBuffer) + " -> " +
                             std::to_string(kGoodReceiveBuffer) +
                             " bytes until this machine starts again; a file in /etc/sysctl.d "
                             "keeps it"
                       : error + "; as root: " + finding.advice});
            facts.network.receiveBuffer = machine.limits.ReceiveBuffer();
        }
    }
    FixAddress();
}

void Doctor::FixAddress() {
    std::vector<GigeCamera> lost;
    std::copy_if(facts.network.cameras.begin(), facts.network.cameras.end(),
                 std::back_inserter(lost),
                 [](const GigeCamera& camera) { return !camera.IsInSubnet(); });
    if (!lost.empty()) {
        ForceAddress(lost);
    } else if (options.address && !options.isPersistent) {
        report.fixes.push_back({false, kAddress, "", "no camera is in another subnet"});
    }
    if (options.address && options.isPersistent) {
        KeepAddress(*options.address);
    }
}

void Doctor::ForceAddress(const std::vector<GigeCamera>& lost) {
    const GigeCamera& camera = lost.front();
    FixReport fix{false, kAddress, camera.model + " " + camera.serial, ""};
    const auto isTaken = [&](std::uint32_t address) {
        return std::any_of(facts.network.interfaces.begin(), facts.network.interfaces.end(),
                           [&](const auto& one) { return one.address == address; }) ||
               std::any_of(facts.network.cameras.begin(), facts.network.cameras.end(),
                           [&](const auto& other) { return other.address == address; });
    };
    const std::string subnet = SubnetText(camera.interfaceAddress, camera.interfaceNetmask);
    if (!options.address) {
        fix.text = "which addresses are free is not known here: mivora doctor --fix --address "
                   "ADDRESS, a free one of " +
                   subnet;
    } else if (lost.size() > 1) {
        fix.text = "several cameras are in other subnets: name one's interface by --interface, or "
                   "leave one plugged in at a time";
    } else if (((*options.address ^ camera.interfaceAddress) & camera.interfaceNetmask) != 0) {
        fix.text = IpText(*options.address) + " is not of " + subnet;
    } else if (isTaken(*options.address)) {
        fix.text = IpText(*options.address) + " is taken";
    } else {
        GigeSearch search(facts.network.interfaces, machine.cameraPort);
        fix.isDone = search.ForceAddress(camera, *options.address, machine.searchMs);
        fix.text = fix.isDone ? IpText(camera.address) + " -> " + IpText(*options.address) +
                                    (options.isPersistent
                                         ? ""
                                         : " until the camera's power is switched off; with "
                                           "--persistent it keeps the address")
                              : "the camera does not reply from " + IpText(*options.address);
        facts.network.cameras = search.Run(machine.searchMs);
    }
    report.fixes.push_back(fix);
}

/// A camera that has not taken the address has been reported.
void Doctor::KeepAddress(std::uint32_t address) {
    const std::vector<GigeCamera>& cameras = facts.network.cameras;
    const auto camera = std::find_if(cameras.begin(), cameras.end(), [&](const GigeCamera& one) {
        return one.address == address && one.IsInSubnet();
    });
    if (camera != cameras.end()) {
        const std::string problem =
            GigeSearch(facts.network.interfaces, machine.cameraPort).KeepAddress(*camera);
        report.fixes.push_back(
            {problem.empty(), kAddress, camera->model + " " + camera->serial,
             IpText(address) + (problem.empty() ? " is kept when its power is switched off"
                                                : " is not kept at power-off: " + problem)});
    } else if (report.fixes.empty() || report.fixes.back().check != kAddress) {
        report.fixes.push_back(
            {false, kAddress, "", "no camera is in another subnet or has " + IpText(address)});
    }
}

void Doctor::LookAtSdkAndCameras() {
    facts.sdk = GatherLibraryFacts(app);
    IGrabberMaker& maker = source();
    try {
        maker.Delete(maker.Create());
    } catch (const CommandFailure& failure) {
        facts.sdk.moduleProblem = OneLine(failure.what());
    }
    if (facts.sdk.moduleProblem.empty()) {
        Session session(app, maker);
        try {
            session.Init();
        } catch (const CommandFailure& failure) {
            facts.sdk.initFailure = OneLine(failure.what());
            facts.sdk.startUp = StartUpResult(app, facts.sdk);
        }
        if (facts.sdk.initFailure.empty() && Wants("camera")) {
            if (!app.Camera().empty()) {
                session.SelectCamera(app.Camera());
            }
            LookAtCameras(session);
        }
    }
    if (Wants("sdk") || HasProblem(CheckSdk(facts.sdk))) {
        Add(CheckSdk(facts.sdk));
    }
}

void Doctor::LookAtCameras(Session& session) {
    const std::vector<CameraFacts> listed = ListCameraFacts(session);
    const std::int32_t wanted = app.Camera().empty() ? -1 : session.Grabber().GetActCameraIndex();
    for (std::size_t i = 0; i < listed.size(); ++i) {
        const auto index = static_cast<std::int32_t>(i);
        if (wanted >= 0 && index != wanted) {
            continue;
        }
        CameraVisit visit(session, index, listed[i]);
        CameraFacts camera = visit.Look();
        if (options.fix) {
            const std::vector<FixReport> fixes =
                visit.Fix(CheckCameras({camera}, facts.network), MtuFor(camera, facts.network));
            report.fixes.insert(report.fixes.end(), fixes.begin(), fixes.end());
            camera = fixes.empty() ? camera : visit.Look();
        }
        facts.cameras.push_back(camera);
    }
}
