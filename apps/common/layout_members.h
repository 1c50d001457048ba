// layout_members.h - the members of an image's layout in JSON
#pragma once

#include "apps/common/host_image.h"
#include "apps/common/json_text.h"

#include <array>
#include <cstdint>

/// A member of a layout with its name in JSON.
struct LayoutMember {
    const char* name;
    std::uint32_t value;
};

/// All members, in the order in which they are written.
std::array<LayoutMember, 8> LayoutMembers(const ImageLayout& layout);

/// The object of all members.
JsonValue LayoutJson(const ImageLayout& layout);
