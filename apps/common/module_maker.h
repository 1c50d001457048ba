// module_maker.h - grabbers out of a module file
#pragma once

#include "apps/common/grabber_maker.h"
#include "mivora/module_loader.h"

#include <string>

/// Loads the module when the first grabber is wanted, and keeps it loaded.
class ModuleMaker final : public IGrabberMaker {
public:
    /// Takes the module's path; nothing is loaded yet.
    void SetPath(const std::string& path) { modulePath = path; }

    CMivoraGrabber* Create() override;
    void Delete(CMivoraGrabber* grabber) override { loader.DeleteGrabber(grabber); }

private:
    std::string modulePath;
    CModuleLoader loader;
};
