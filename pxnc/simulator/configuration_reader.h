// configuration_reader.h - reads PxnC.xml
#pragma once

#include "pxnc/simulator/configuration.h"

#include <string>

namespace pxsim {

/// What is wrong with a configuration file: one line with the file, the line in it and the reason.
struct ConfigurationError {
    PxnError code = PxnErrSuccess;
    std::string message;
};

/// Reads the file at `path`. PxnErrNotFound when it cannot be read, PxnErrXml when it is not
/// a configuration; docs/simulator.md has the schema. `configuration` is unchanged on failure.
ConfigurationError ReadConfigurationFile(const std::string& path, Configuration& configuration);

/// The same for a text; `name` stands for the file in messages.
ConfigurationError ParseConfiguration(const std::string& text, const std::string& name,
                                      Configuration& configuration);

} // namespace pxsim
