// model_lookup.h - what handles and identifiers mean in the model
#pragma once

#include "tests/scripted_sdk/scripted_model.h"

#include <cstddef>
#include <optional>
#include <string>

namespace scripted {

/// What a handle refers to.
struct Place {
    Module* module = nullptr; ///< null for a handle that refers to nothing
    std::string name = {};    ///< "camera0"
    /// Index of the camera whose frames the handle offers: handles of cameras and streams.
    std::optional<std::size_t> camera = std::nullopt;
};
Place FindPlace(Model& model, PxnHandle handle);

/// "camera0", "null", or the number of a handle that refers to nothing.
std::string NameOf(Model& model, PxnHandle handle);

/// The index of the camera with that plain or extended identifier.
std::optional<std::size_t> FindCamera(const Model& model, const std::string& id);

} // namespace scripted
