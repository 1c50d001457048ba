// linked_maker.h - creates grabbers of the module that is linked in
#pragma once

#include "apps/common/grabber_maker.h"

#include <memory>
#include <string>

class CMivoraKVNPyxenClass;

/// Creates one grabber at a time and gives access to its concrete type.
class LinkedMaker final : public IGrabberMaker {
public:
    LinkedMaker();
    ~LinkedMaker() override;

    CMivoraGrabber* Create() override;
    void Delete(CMivoraGrabber* grabber) override;
    IMivoraModuleServices* Services(CMivoraGrabber* grabber, std::string& reason) override;

    /// The current grabber: created, not yet deleted.
    CMivoraKVNPyxenClass& Grabber() { return *made; }

private:
    std::unique_ptr<CMivoraKVNPyxenClass> made;
};
