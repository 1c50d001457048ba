// device_ids.h - the cameras of the device finder by their number
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

/// The identifiers of the cameras that were added and not removed, numbered from 0 without gaps.
class DeviceIds {
public:
    static constexpr int kNone = -1;

    int Find(std::string_view id) const;
    /// The number of the new identifier.
    int Add(std::string id);
    /// The numbers above `number` go down by one.
    void Remove(int number);
    /// Null when there is none of that number.
    const std::string* At(int number) const;

private:
    std::vector<std::string> ids;
};

} // namespace pyxen
