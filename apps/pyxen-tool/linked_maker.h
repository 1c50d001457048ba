// linked_maker.h - grabbers of the module that is linked in
#pragma once

#include "apps/common/grabber_maker.h"

#include <memory>

class CMivoraKVNPyxenClass;

/// Makes one grabber at a time and keeps its own type at hand.
class LinkedMaker final : public IGrabberMaker {
public:
    LinkedMaker();
    ~LinkedMaker() override;

    CMivoraGrabber* Create() override;
    void Delete(CMivoraGrabber* grabber) override;

    /// The grabber that Create made and Delete has not destroyed yet.
    CMivoraKVNPyxenClass& Grabber() { return *made; }

private:
    std::unique_ptr<CMivoraKVNPyxenClass> made;
};
