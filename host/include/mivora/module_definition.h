// module_definition.h - the entry points of a module, for the module's author
#pragma once

#include "mivora/grabber.h"
#include "mivora/module_entry.h"

/// Marks what a module exports; everything else is hidden by mivora_add_module.
#if defined(__ELF__)
#define MIVORA_MODULE_EXPORT __attribute__((visibility("default")))
#else
#define MIVORA_MODULE_EXPORT __declspec(dllexport)
#endif

/// The module's version for its record: what is defined as MIVORA_MODULE_VERSION, a text, where
/// this header is included. mivora_add_module defines the version of the project.
#ifdef MIVORA_MODULE_VERSION
inline constexpr const char* kMvModuleVersion = MIVORA_MODULE_VERSION;
#else
inline constexpr const char* kMvModuleVersion = nullptr;
#endif

/// Defines the three functions that a host finds a module by, for a module whose grabbers are of
/// the class `GrabberClass`. Stands once in the module, at file scope. The class derives from
/// CMivoraGrabber; its constructor takes the handle of the loaded module (void*) and may throw. A
/// module with services (module_services.h) defines the functions itself, to name them.
#define MIVORA_DEFINE_MODULE(GrabberClass)                                                         \
    extern "C" MIVORA_MODULE_EXPORT CMivoraGrabber* CreateGrabberInstance(void* instance) {        \
        try {                                                                                      \
            return new GrabberClass(instance);                                                     \
        } catch (...) {                                                                            \
            return nullptr;                                                                        \
        }                                                                                          \
    }                                                                                              \
    extern "C" MIVORA_MODULE_EXPORT void DeleteGrabberInstance(CMivoraGrabber* grabber) {          \
        delete grabber;                                                                            \
    }                                                                                              \
    extern "C" MIVORA_MODULE_EXPORT const MV_MODULE_INTERFACE* MivoraModuleInterface() {           \
        static constexpr MV_MODULE_INTERFACE record = [] {                                         \
            MV_MODULE_INTERFACE filled{};                                                          \
            filled.size = sizeof filled;                                                           \
            filled.interfaceVersion = MIVORA_INTERFACE_VERSION;                                    \
            filled.compilerFamily = kMvCompilerFamily;                                             \
            filled.version = kMvModuleVersion;                                                     \
            return filled;                                                                         \
        }();                                                                                       \
        return &record;                                                                            \
    }
