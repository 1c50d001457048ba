// grabber_maker.h - where a program's grabber comes from
#pragma once

class CMivoraGrabber;

/// Makes and destroys grabbers: out of a module loaded at run time, or out of the one that is
/// linked in.
class IGrabberMaker {
public:
    virtual ~IGrabberMaker() = default;
    /// Throws CommandFailure when there is none to be had.
    virtual CMivoraGrabber* Create() = 0;
    virtual void Delete(CMivoraGrabber* grabber) = 0;
};
