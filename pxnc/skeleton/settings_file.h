// settings_file.h - the stored values of a module in an XML file
#pragma once

#include "pxnc/skeleton/module.h"

#include <string>

namespace skeleton {

/// Writes the stored values of the module. PxnErrIO when the file cannot be written.
PxnError SaveSettings(Module& module, const std::string& path);

/// Applies the values in a file. PxnErrNotFound when the file cannot be read, PxnErrXml when it is
/// not a settings file, else what Module::ApplyStoredValues returns.
PxnError LoadSettings(Module& module, const std::string& path);

} // namespace skeleton
