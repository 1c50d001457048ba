// recording_json.h - the members of a recording's JSON objects
#pragma once

#include "apps/common/host_image.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>

/// Sets those members that the object has. Throws CommandFailure for values that no image has.
void ReadLayout(const nlohmann::json& object, ImageLayout& layout);

///@{
/// The member of this name; nullopt when it is missing or null. Throws CommandFailure when it has
/// another type.
std::optional<std::uint64_t> NumberOf(const nlohmann::json& object, const char* name);
std::optional<std::int64_t> SignedNumberOf(const nlohmann::json& object, const char* name);
std::optional<double> RealOf(const nlohmann::json& object, const char* name);
std::optional<std::string> TextOf(const nlohmann::json& object, const char* name);
///@}

[[noreturn]] void ThrowMissing(const char* name);

/// A value that has to be there; throws CommandFailure with its name otherwise.
template <typename T>
T Needed(std::optional<T> value, const char* name) {
    if (!value) {
        ThrowMissing(name);
    }
    return *std::move(value);
}
