// module_loader.h - how an application gets a grabber out of a module file
#pragma once

#include "mivora/export.h"
#include "mivora/grabber.h"

/// Loads a grabber module and makes its grabbers. A module is refused, with a text that says why,
/// when it does not export MivoraModuleInterface, when it was built for another version of the
/// interface or by a compiler that lays out classes otherwise, or when an entry is missing.
///
/// One thread at a time. A module stays loaded as long as this object; what is left of its
/// grabbers is deleted before it goes.
class MIVORA_API CModuleLoader {
public:
    CModuleLoader();
    ~CModuleLoader();
    CModuleLoader(const CModuleLoader&) = delete;
    CModuleLoader& operator=(const CModuleLoader&) = delete;

    /// Loads the module at `path`, a file name against the current directory. False when it is
    /// refused; GetErrorText says why. A module that was loaded before is unloaded first.
    bool Load(const char* path);
    bool IsLoaded() const;
    /// Deletes the grabbers that are left and unloads the module.
    void Unload();
    /// The absolute path of the loaded module; an empty text without one.
    const char* GetPath() const;

    /// A new grabber, owned by the caller until DeleteGrabber; null without a module, or when the
    /// module makes none.
    CMivoraGrabber* CreateGrabber();
    /// Deletes a grabber that CreateGrabber made; any other pointer is ignored.
    void DeleteGrabber(CMivoraGrabber* grabber);

    /// Why the last Load or CreateGrabber failed; an empty text after success.
    const char* GetErrorText() const;

private:
    struct Impl;
    Impl* impl;
};
