// module_loader.h - loads grabber modules for an application
#pragma once

#include "mivora/export.h"
#include "mivora/grabber.h"

class IMivoraModuleServices;

/// Loads a grabber module and creates its grabbers. A module is refused, with an error text, if an
/// exported function is missing, if it was built for another version of the interface, or if its
/// compiler family uses another C++ ABI.
///
/// One thread at a time. Unloading and destruction delete the remaining grabbers first. The
/// constructor may throw std::bad_alloc; no operation throws.
class MIVORA_API CModuleLoader {
public:
    CModuleLoader();
    ~CModuleLoader();
    CModuleLoader(const CModuleLoader&) = delete;
    CModuleLoader& operator=(const CModuleLoader&) = delete;

    /// Unloads the current module, then loads the one at `path`, which may be relative to the
    /// current directory. Returns false on failure; see GetErrorText.
    bool Load(const char* path);
    /// True between a successful Load and Unload.
    bool IsLoaded() const;
    /// Deletes the remaining grabbers and unloads the module.
    void Unload();
    /// The absolute path of the loaded module, or an empty text.
    const char* GetPath() const;
    /// The version that the loaded module says it has; an empty text if it does not say.
    const char* GetModuleVersion() const;

    /// Creates a grabber for use until DeleteGrabber or Unload. Returns null if no module is loaded
    /// or the module fails to create one; see GetErrorText.
    CMivoraGrabber* CreateGrabber();
    /// Deletes a grabber created by CreateGrabber; any other pointer is ignored.
    void DeleteGrabber(CMivoraGrabber* grabber);

    /// What the module offers beside `grabber`, for use until that is deleted. Returns null if
    /// `grabber` is not one that CreateGrabber returned, or if the module has no services or those
    /// of another version; see GetErrorText.
    IMivoraModuleServices* GetServices(CMivoraGrabber* grabber);

    /// The reason why the last Load, CreateGrabber or GetServices failed; empty after success.
    const char* GetErrorText() const;

private:
    struct Impl;
    Impl* impl;
};
