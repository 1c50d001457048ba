// program_version.h - what --version prints
#pragma once

#include <optional>
#include <string>

/// The grabber module of a program.
struct ModuleVersion {
    std::string file;                   ///< empty for one that is linked in
    std::optional<std::string> version; ///< none when the file does not say
    std::string problem;                ///< why it cannot be used; empty if it can
};

/// Loads the module to see whether it can be used, and reads the version of its file.
ModuleVersion VersionOfModule(const std::string& file);
/// A module that is part of the program and has its version.
ModuleVersion VersionOfLinkedModule();

/// Versions of the program, of the host library that it runs with, and of the module: a line each,
/// without the last line end, or a JSON object.
std::string VersionText(const std::string& program, const ModuleVersion& module, bool isJson);
