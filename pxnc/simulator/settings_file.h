// settings_file.h - the stored features of a module in an XML file
#pragma once

#include "pxnc/simulator/module.h"

#include <string>

namespace pxsim {

/// Writes every stored feature of the module, for every state of its selectors. PxnErrIO when
/// the file cannot be written.
PxnError SaveSettings(Module& module, const std::string& path);

/// Reads such a file and writes the values. The order is the file's; what another value still
/// forbids is tried again after the rest. PxnErrNotFound when the file cannot be read, PxnErrXml
/// when it is no settings file, PxnErrInvalidValue when a value is refused for good: then the
/// module keeps what it had before.
PxnError LoadSettings(Module& module, const std::string& path);

} // namespace pxsim
