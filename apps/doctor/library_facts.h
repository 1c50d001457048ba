// library_facts.h - looks at the library of the camera SDK, as the grabber module will
#pragma once

#include "apps/doctor/facts.h"

#include <cstdint>
#include <optional>
#include <string>

struct AppOptions;

/// Sets PYXEN_HOME for the options and looks for the library and its entries; starts nothing.
SdkFacts GatherLibraryFacts(const AppOptions& options);
/// The result of starting the library with the configuration of the options; nullopt when there is
/// no library to start. Shuts it down again.
std::optional<std::int32_t> StartUpResult(const AppOptions& options, const SdkFacts& sdk);
