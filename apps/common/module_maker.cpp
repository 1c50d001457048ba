// module_maker.cpp - grabbers out of a module file
#include "apps/common/module_maker.h"

#include "apps/common/command_failure.h"

CMivoraGrabber* ModuleMaker::Create() {
    if (!loader.IsLoaded() && !loader.Load(modulePath.c_str())) {
        throw CommandFailure("cannot load the grabber module " + modulePath + ": " +
                             loader.GetErrorText());
    }
    CMivoraGrabber* const grabber = loader.CreateGrabber();
    if (!grabber) {
        throw CommandFailure("the grabber module " + modulePath +
                             " made no grabber: " + loader.GetErrorText());
    }
    return grabber;
}
