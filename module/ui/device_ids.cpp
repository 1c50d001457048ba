// device_ids.cpp - the cameras of the device finder by their number
#include "ui/device_ids.h"

#include <algorithm>
#include <utility>

namespace pyxen {

int DeviceIds::Find(std::string_view id) const {
    const auto found = std::find(ids.begin(), ids.end(), id);
    return found == ids.end() ? kNone : static_cast<int>(found - ids.begin());
}

int DeviceIds::Add(std::string id) {
    ids.push_back(std::move(id));
    return static_cast<int>(ids.size()) - 1;
}

void DeviceIds::Remove(int number) {
    if (At(number)) {
        ids.erase(ids.begin() + number);
    }
}

const std::string* DeviceIds::At(int number) const {
    const bool known = number >= 0 && static_cast<std::size_t>(number) < ids.size();
    return known ? &ids[static_cast<std::size_t>(number)] : nullptr;
}

} // namespace pyxen
