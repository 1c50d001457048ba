// plain_implementation.cpp - an implementation without cameras, which records its starts
#include "tests/pxnc/skeleton/plain_implementation.h"

#include <cstring>
#include <vector>

namespace skeleton_tests {
namespace {

class PlainBackend : public skeleton::Backend {
public:
    std::vector<PxnTransportLayerInfo> ListTransportLayers() override { return {}; }
    std::vector<PxnInterfaceInfo> ListInterfaces() override { return {}; }
    std::vector<PxnCameraInfo> ListCameras() override { return {}; }
    PxnError DescribeCamera(const char*, PxnCameraInfo&) override { return PxnErrNotFound; }
    PxnError DescribeCamera(PxnHandle, PxnCameraInfo&) override { return PxnErrBadHandle; }
    PxnError OpenCamera(const char*, std::uint32_t, PxnHandle&) override { return PxnErrNotFound; }
    PxnError CloseCamera(PxnHandle) override { return PxnErrBadHandle; }
    PxnError AccessChunks(const PxnFrame&, skeleton::FunctionRef<PxnError(PxnHandle)>) override {
        return PxnErrNotFound;
    }
    void Stop() override { ++PlainImplementation::Instance().stops; }
};

} // namespace

PlainImplementation& PlainImplementation::Instance() {
    static PlainImplementation instance;
    return instance;
}

PxnError PlainImplementation::Start(const wchar_t* /*configPath*/,
                                    std::shared_ptr<skeleton::Backend>& started) {
    ++starts;
    if (startResult == PxnErrSuccess) {
        started = std::make_shared<PlainBackend>();
    }
    return startResult;
}

PxnError PlainImplementation::OnCall(const skeleton::EntryCall& call) {
    return std::strcmp(call.entry, "PxnShutdown") == 0 ? PxnErrSuccess : callResult;
}

} // namespace skeleton_tests

skeleton::Implementation& skeleton::TheImplementation() {
    return skeleton_tests::PlainImplementation::Instance();
}
