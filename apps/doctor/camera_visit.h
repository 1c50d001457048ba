// camera_visit.h - opens a camera of the SDK, looks at it and corrects what can be corrected
#pragma once

#include "apps/doctor/facts.h"
#include "apps/doctor/finding.h"

#include <cstdint>
#include <optional>
#include <vector>

class Session;

/// What is known about the cameras of the list, by index, without opening one.
std::vector<CameraFacts> ListCameraFacts(Session& session);

/// One camera of an initialised session, which is open as long as the object if it can be opened.
class CameraVisit {
public:
    CameraVisit(Session& openingSession, std::int32_t index, CameraFacts listed);
    ~CameraVisit();
    CameraVisit(const CameraVisit&) = delete;
    CameraVisit& operator=(const CameraVisit&) = delete;

    /// Reads the features that matter, and takes some frames unless the camera waits for a trigger.
    const CameraFacts& Look();
    /// Corrects packet size and packet delay as far as `findings` ask for it; `mtu` is that of the
    /// interface, 0 if not known. Look shows what came of it.
    std::vector<FixReport> Fix(const std::vector<Finding>& findings, std::uint32_t mtu);

private:
    void ReadFeatures();
    Trial TakeFrames();
    std::optional<std::int64_t> ReadInteger(const char* module, const char* feature);
    FixReport FixPacketSize(std::uint32_t mtu);
    FixReport FixPacketDelay();
    bool WriteInteger(const char* module, const char* feature, std::int64_t value);

    Session& session;
    CameraFacts facts;
    bool isOpen = false;
};
