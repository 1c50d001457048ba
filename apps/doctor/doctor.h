// doctor.h - looks for what keeps a camera from working on this machine
#pragma once

#include "apps/doctor/facts.h"
#include "apps/doctor/finding.h"
#include "apps/doctor/gvcp.h"
#include "platform/host_limits.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class IGrabberMaker;
struct AppOptions;

struct DoctorOptions {
    bool fix = false;
    std::optional<std::uint32_t> address; ///< for the one camera that is in another subnet
    bool isPersistent = false;            ///< that address, also after power-off
    std::vector<std::string> interfaces;  ///< names or addresses; empty: all
    std::vector<std::string> only;        ///< "sdk", "network", "usb", "camera"; empty: all
    bool json = false;
};

struct DoctorReport {
    std::vector<Finding> findings;
    std::vector<FixReport> fixes;
};

/// The machine that is looked at. Tests replace it.
struct Machine {
    platform::HostLimits limits = platform::HostLimits();
    std::function<std::vector<platform::NetworkInterface>()> listInterfaces =
        &platform::ListNetworkInterfaces;
    std::uint16_t cameraPort = gvcp::kPort;
    std::uint32_t searchMs = 1000;
};

/// One thread.
class Doctor {
public:
    /// `makerSource` returns the grabber maker; it is called once the SDK has been looked at.
    Doctor(const DoctorOptions& doctorOptions, const AppOptions& appOptions,
           std::function<IGrabberMaker&()> makerSource, Machine machineToCheck = Machine());

    /// Looks at everything, and with `fix` corrects what can be corrected from here. Findings are
    /// what is so afterwards.
    DoctorReport Run();

private:
    bool Wants(const char* area) const;
    void LookAtNetwork();
    void FixNetwork();
    void FixAddress();
    void ForceAddress(const std::vector<GigeCamera>& lost);
    void KeepAddress(std::uint32_t address);
    void LookAtSdkAndCameras();
    void LookAtCameras(class Session& session);
    void Add(const std::vector<Finding>& findings);

    const DoctorOptions& options;
    const AppOptions& app;
    const std::function<IGrabberMaker&()> source;
    const Machine machine;
    Facts facts;
    DoctorReport report;
};
