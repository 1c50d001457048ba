// implementation.cpp - the camera SDK on Aravis
#include "pxnc/genicam/backend.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <utility>

namespace genicam {
namespace {

class Implementation : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override { return {1, 0, 0}; }

    PxnError Start(const wchar_t* configPath,
                   std::shared_ptr<skeleton::Backend>& started) override {
        Configuration configuration;
        if (const PxnError failed = configuration.Load(configPath)) {
            return failed;
        }
        auto backend = std::make_shared<Backend>(configuration);
        if (!backend->Start()) {
            return PxnErrResources;
        }
        started = std::move(backend);
        return PxnErrSuccess;
    }
};

} // namespace
} // namespace genicam

skeleton::Implementation& skeleton::TheImplementation() {
    static NeverDestroyed<genicam::Implementation> implementation;
    return implementation.Get();
}
