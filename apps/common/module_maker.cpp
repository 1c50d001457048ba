// module_maker.cpp - creates grabbers from a module file
#include "apps/common/module_maker.h"

#include "apps/common/command_failure.h"

#include <new>

namespace {

// The loader's words for it.
constexpr const char* kOutOfMemory = "out of memory";

} // namespace

CMivoraGrabber* ModuleMaker::Create() {
    if (!loader.IsLoaded() && !loader.Load(modulePath.c_str())) {
        throw CommandFailure(loader.GetErrorText());
    }
    CMivoraGrabber* const grabber = loader.CreateGrabber();
    if (!grabber) {
        throw CommandFailure(loader.GetErrorText());
    }
    return grabber;
}

IMivoraModuleServices* ModuleMaker::Services(CMivoraGrabber* grabber, std::string& reason) {
    IMivoraModuleServices* const services = loader.GetServices(grabber);
    reason = loader.GetErrorText();
    if (!services && reason == kOutOfMemory) {
        throw std::bad_alloc(); // it may have services all the same
    }
    return services;
}
