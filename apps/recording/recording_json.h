// recording_json.h - the members of a recording's JSON objects
#pragma once

#include "apps/recording/recording_description.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>

/// What "schema" says.
inline constexpr std::uint64_t kRecordingSchema = 1;

/// Throws CommandFailure unless the object has this schema.
void CheckSchema(const nlohmann::json& object);

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

/// True when the member is there and true.
bool IsTrue(const nlohmann::json& object, const char* name);
/// The member of this name, an object. Throws CommandFailure when there is none.
const nlohmann::json& ObjectOf(const nlohmann::json& object, const char* name);
/// The object's "camera". Throws CommandFailure.
RecordedCamera ReadRecordedCamera(const nlohmann::json& object);
/// The object's "frames". Throws CommandFailure.
RecordedFrames ReadRecordedFrames(const nlohmann::json& object);

[[noreturn]] void ThrowMissing(const char* name);

/// A value that has to be there; throws CommandFailure with its name otherwise.
template <typename T>
T Needed(std::optional<T> value, const char* name) {
    if (!value) {
        ThrowMissing(name);
    }
    return *std::move(value);
}
