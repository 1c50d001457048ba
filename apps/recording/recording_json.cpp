// recording_json.cpp - the members of a recording's JSON objects
#include "apps/recording/recording_json.h"

#include "apps/common/command_failure.h"
#include "apps/common/layout_members.h"

#include <nlohmann/json.hpp>

#include <array>

namespace {

// So that no size in bytes overflows.
constexpr std::uint32_t kMostPixelsOnALine = 1u << 24;

bool IsPossible(const ImageLayout& layout) {
    return layout.width != 0 && layout.width <= kMostPixelsOnALine && layout.height != 0 &&
           layout.height <= kMostPixelsOnALine && layout.components != 0 &&
           layout.components <= 4 && (layout.allocatedBits == 8 || layout.allocatedBits == 16) &&
           layout.bits != 0 && layout.bits <= layout.allocatedBits;
}

[[noreturn]] void ThrowNo(const char* name, const char* what) {
    throw CommandFailure(std::string("\"") + name + "\" is no " + what);
}

const nlohmann::json* Find(const nlohmann::json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

} // namespace

std::optional<std::uint64_t> NumberOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    if (member && !member->is_number_unsigned()) {
        ThrowNo(name, "number from 0 on");
    }
    return member ? std::optional(member->get<std::uint64_t>()) : std::nullopt;
}

std::optional<std::int64_t> SignedNumberOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    if (member && !member->is_number_integer()) {
        ThrowNo(name, "whole number");
    }
    return member ? std::optional(member->get<std::int64_t>()) : std::nullopt;
}

std::optional<double> RealOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    if (member && !member->is_number()) {
        ThrowNo(name, "number");
    }
    return member ? std::optional(member->get<double>()) : std::nullopt;
}

std::optional<std::string> TextOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    if (member && !member->is_string()) {
        ThrowNo(name, "text");
    }
    return member ? std::optional(member->get<std::string>()) : std::nullopt;
}

bool IsTrue(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    return member && *member == true;
}

const nlohmann::json& ObjectOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json* const member = Find(object, name);
    if (!member || !member->is_object()) {
        ThrowMissing(name);
    }
    return *member;
}

RecordedCamera ReadRecordedCamera(const nlohmann::json& object) {
    const nlohmann::json& member = ObjectOf(object, "camera");
    RecordedCamera camera;
    camera.vendor = TextOf(member, "vendor");
    camera.model = TextOf(member, "model");
    camera.serial = TextOf(member, "serial");
    camera.userName = TextOf(member, "userName");
    camera.id = TextOf(member, "id");
    camera.extendedId = TextOf(member, "extendedId");
    camera.interfaceName = TextOf(member, "interface");
    return camera;
}

RecordedFrames ReadRecordedFrames(const nlohmann::json& object) {
    const nlohmann::json& member = ObjectOf(object, "frames");
    RecordedFrames frames;
    frames.wanted = NumberOf(member, "wanted");
    frames.recorded = Needed(NumberOf(member, "recorded"), "recorded");
    frames.missing = Needed(NumberOf(member, "missing"), "missing");
    return frames;
}

void ThrowMissing(const char* name) {
    throw CommandFailure(std::string("\"") + name + "\" is missing");
}

void CheckSchema(const nlohmann::json& object) {
    const std::uint64_t schema = Needed(NumberOf(object, "schema"), "schema");
    if (schema != kRecordingSchema) {
        throw CommandFailure("\"schema\" is " + std::to_string(schema) + ", known is " +
                             std::to_string(kRecordingSchema));
    }
}

void ReadLayout(const nlohmann::json& object, ImageLayout& layout) {
    std::array<LayoutMember, 8> members = LayoutMembers(layout);
    for (LayoutMember& member : members) {
        const std::uint64_t value = NumberOf(object, member.name).value_or(member.value);
        if (value > 0xFFFFFFFFu) {
            ThrowNo(member.name, "size");
        }
        member.value = static_cast<std::uint32_t>(value);
    }
    layout = {members[0].value, members[1].value, members[2].value,
              members[3].value, members[4].value, static_cast<MV_COLORCODING>(members[5].value),
              members[6].value, members[7].value};
    if (!IsPossible(layout)) {
        throw CommandFailure("no image has this layout");
    }
}
