// acquisition.h - an acquisition without frames, for what it locks
#pragma once

#include "pxnc/conformance/session.h"

namespace conformance {

/// Capture and camera run as long as the object lives. The camera is open.
class Acquisition {
public:
    explicit Acquisition(Session& openSession) : session(openSession) {
        result = session.Sdk().PxnCaptureStart(session.Camera());
        if (result == PxnErrSuccess) {
            result = session.GetDriver().StartFrames(session.Sdk(), session.Camera());
        }
    }
    ~Acquisition() {
        if (session.Camera()) {
            session.GetDriver().StopFrames(session.Sdk(), session.Camera());
            session.Sdk().PxnCaptureEnd(session.Camera());
        }
    }
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    PxnError Result() const { return result; }

private:
    Session& session;
    PxnError result = PxnErrSuccess;
};

} // namespace conformance
