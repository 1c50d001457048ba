// layout_members.cpp - the members of an image's layout in JSON
#include "apps/common/layout_members.h"

#include <vector>

std::array<LayoutMember, 8> LayoutMembers(const ImageLayout& layout) {
    return {{{"width", layout.width},
             {"height", layout.height},
             {"components", layout.components},
             {"allocatedBits", layout.allocatedBits},
             {"bits", layout.bits},
             {"colorCoding", static_cast<std::uint32_t>(layout.colorCoding)},
             {"cfaX", layout.cfaX},
             {"cfaY", layout.cfaY}}};
}

JsonValue LayoutJson(const ImageLayout& layout) {
    std::vector<JsonMember> members;
    for (const LayoutMember& member : LayoutMembers(layout)) {
        members.push_back({member.name, member.value});
    }
    return JsonObject(members);
}
