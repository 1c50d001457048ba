// bench.h - the open camera that the checks work with
#pragma once

#include "apps/common/session.h"
#include "mivora/module_services.h"
#include "platform/file_system.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

struct SettingsOutcome;

/// Ends a check that does not apply to this camera, with the reason.
class SelftestNotApplicable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Opens the active camera and gives the checks what they need. One thread.
class SelftestBench {
public:
    /// `offered` may be null.
    SelftestBench(Session& openSession, IMivoraModuleServices* offered,
                  std::uint64_t frameTimeoutMs);
    ~SelftestBench();
    SelftestBench(const SelftestBench&) = delete;
    SelftestBench& operator=(const SelftestBench&) = delete;

    Session& Use() { return session; }
    CMivoraGrabber& Grabber() { return session.Grabber(); }
    std::uint64_t TimeoutMs() const { return timeoutMs; }
    /// Throws SelftestNotApplicable when the module offers none.
    ServiceClient& Features();
    IMivoraModuleServices& Services();
    bool Offers() const { return services != nullptr; }
    /// A file in a directory that is removed at the end.
    std::string PathOf(const std::string& name) const {
        return platform::JoinPath(directory, name);
    }

    /// Throws SelftestNotApplicable when frames do not come by themselves, or the module has no
    /// acquisition of that kind (a kMvCap bit).
    void RequireFrames(std::uint32_t capability);
    /// Prepares buffers, takes that many frames in continuous acquisition and stops. Throws
    /// CommandFailure when they do not come, are received in error, or it does not stop.
    void TakeFrames(std::uint64_t buffers, std::uint64_t frames);
    /// Writes both values of a parameter. The range of the second may depend on the first: of an
    /// interval on the exposure time.
    MV_ERRCODE SetParameter(std::uint32_t id, std::uint64_t first, std::uint64_t second);
    /// Stops, and opens the camera again when it is not open.
    void Recover();
    /// Throws CommandFailure unless the code is MV_OK and the module has logged no error since the
    /// last check: of what fails in an acquisition not everything has a code.
    void Expect(const std::string& operation, MV_ERRCODE code, const std::string& object);

    /// Keeps the camera's settings. Afterwards Restore puts them back and returns what was changed;
    /// it throws CommandFailure when some are not as they were.
    void KeepSettings();
    std::string Restore();

private:
    struct Parameter {
        std::uint32_t id;
        std::uint64_t first;
        std::uint64_t second;
    };

    Session& session;
    IMivoraModuleServices* const services;
    const std::uint64_t timeoutMs;
    const std::string directory;
    bool isKept = false;
    std::string keptProblem;
    std::vector<Parameter> parameters;
};

/// Throws CommandFailure with the text unless `condition` holds.
void Require(bool condition, const std::string& text);
/// The settings that were not saved or not taken, with the reasons.
std::vector<std::string> RefusedSettings(const SettingsOutcome& outcome);
/// Several reasons in one, cut off after a few.
std::string JoinReasons(const std::vector<std::string>& reasons);
