// module_maker.h - creates grabbers from a module file
#pragma once

#include "apps/common/grabber_maker.h"
#include "mivora/module_loader.h"

#include <string>

/// Loads the module for the first grabber and keeps it loaded.
class ModuleMaker final : public IGrabberMaker {
public:
    /// Sets the module's path; loads nothing yet.
    void SetPath(const std::string& path) { modulePath = path; }

    CMivoraGrabber* Create() override;
    void Delete(CMivoraGrabber* grabber) override { loader.DeleteGrabber(grabber); }
    IMivoraModuleServices* Services(CMivoraGrabber* grabber, std::string& reason) override;

private:
    std::string modulePath;
    CModuleLoader loader;
};
