// grabber_maker.h - interface for creating grabbers
#pragma once

#include <string>

class CMivoraGrabber;
class IMivoraModuleServices;

/// Creates and destroys grabbers, from a module loaded at run time or from the one linked in.
class IGrabberMaker {
public:
    virtual ~IGrabberMaker() = default;
    /// Throws CommandFailure if no grabber can be created.
    virtual CMivoraGrabber* Create() = 0;
    virtual void Delete(CMivoraGrabber* grabber) = 0;
    /// What the module offers beside the grabber; null with the reason when there is nothing.
    /// Throws std::bad_alloc where that cannot be found out for lack of memory.
    virtual IMivoraModuleServices* Services(CMivoraGrabber* /*grabber*/, std::string& reason) {
        reason = "this program has none";
        return nullptr;
    }
};
