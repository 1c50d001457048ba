// msvc_layout.cpp - makes Clang lay out the interface's tables for the Microsoft ABI
#include "grabber/pyxen_grabber.h"

class __declspec(dllexport) GrabberProbe : public CPyxenGrabber {
public:
    GrabberProbe() : CPyxenGrabber(nullptr) {}
};

class __declspec(dllexport) CameraProbe : public CMivoraCamera {};
class __declspec(dllexport) GfxModeProbe : public CMivoraGfxMode {};
class __declspec(dllexport) ChannelProbe : public CCmdChannel {};
