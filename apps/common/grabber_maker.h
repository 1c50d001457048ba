// grabber_maker.h - interface for creating grabbers
#pragma once

class CMivoraGrabber;

/// Creates and destroys grabbers, from a module loaded at run time or from the one linked in.
class IGrabberMaker {
public:
    virtual ~IGrabberMaker() = default;
    /// Throws CommandFailure if no grabber can be created.
    virtual CMivoraGrabber* Create() = 0;
    virtual void Delete(CMivoraGrabber* grabber) = 0;
};
