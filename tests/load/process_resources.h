// process_resources.h - what a process holds of the system
#pragma once

#include <cstdint>

/// Of the calling process, at one moment. What a platform does not count is 0.
struct ProcessResources {
    std::uint64_t bytes = 0;   ///< resident memory
    std::uint64_t handles = 0; ///< open files, or handles on Windows
    std::uint64_t threads = 0;
    std::uint64_t drawingObjects = 0; ///< Windows: GDI
    std::uint64_t userObjects = 0;    ///< Windows: windows, menus and the like

    static ProcessResources Now();
};
