// settings_file.h - a module's settings in a file
#pragma once

#include "pxnc/genicam/module.h"
#include "pxnc/include/pxnc.h"

#include <string>

namespace genicam {

/// Writes every value of the module that can be written back: those that the description marks as
/// streamable, or all when it marks none. Of a feature behind a selector only the selected value is
/// saved. PxnErrIO when the file cannot be written.
PxnError SaveSettings(const Module& module, const std::string& path);

/// Sets what the file holds, in its order and as often as that gets any further, since one value
/// may make room for another. PxnErrIO when the file cannot be read, PxnErrXml when it is no
/// settings file; else the answer of the first feature that could not be set, after all others are.
PxnError LoadSettings(const Module& module, const std::string& path);

} // namespace genicam
