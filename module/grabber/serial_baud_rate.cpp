// serial_baud_rate.cpp - choosing the serial link's speed
#include "grabber/serial_baud_rate.h"

#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr const char* kBaudRate = "DeviceSerialPortBaudRate";

/// The entries of an enumeration feature; none when they cannot be read.
std::vector<const char*> ReadEntries(const CPyxenAPIAccess& api, PxnHandle handle,
                                     const char* name) {
    std::uint32_t count = 0;
    if (api.PxnFeatureEnumRangeQuery(handle, name, nullptr, 0, &count) != PxnErrSuccess) {
        return {};
    }
    std::vector<const char*> entries(count);
    std::uint32_t found = 0;
    if (count == 0 || api.PxnFeatureEnumRangeQuery(handle, name, entries.data(), count, &found) !=
                          PxnErrSuccess) {
        return {};
    }
    entries.resize(std::min(count, found));
    return entries;
}

} // namespace

std::uint64_t TrailingNumber(const char* name) {
    constexpr std::uint64_t kHighest = std::numeric_limits<std::uint64_t>::max();
    const char* digit = name + std::strlen(name);
    while (digit != name && digit[-1] >= '0' && digit[-1] <= '9') {
        --digit;
    }
    std::uint64_t number = 0;
    for (; *digit != '\0'; ++digit) {
        const auto value = static_cast<std::uint64_t>(*digit - '0');
        if (number > (kHighest - value) / 10) {
            return kHighest;
        }
        number = number * 10 + value;
    }
    return number;
}

const char* FindOptimumBaudRate(std::vector<const char*> grabber,
                                const std::vector<const char*>& camera) {
    std::stable_sort(grabber.begin(), grabber.end(), [](const char* left, const char* right) {
        return TrailingNumber(left) > TrailingNumber(right);
    });
    for (const char* candidate : grabber) {
        const std::uint64_t number = TrailingNumber(candidate);
        if (std::any_of(camera.begin(), camera.end(),
                        [&](const char* entry) { return TrailingNumber(entry) == number; })) {
            return candidate;
        }
    }
    return nullptr;
}

void SetOptimumSerialPortBaudRate(const CPyxenAPIAccess& api, PxnHandle localDevice,
                                  PxnHandle camera, Logger log) {
    NoThrow(false, [&] {
        const std::vector<const char*> grabberRates = ReadEntries(api, localDevice, kBaudRate);
        const std::vector<const char*> cameraRates = ReadEntries(api, camera, kBaudRate);
        const char* const optimum = FindOptimumBaudRate(grabberRates, cameraRates);
        if (!optimum) {
            return true;
        }
        log.Information(
            "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Found optimum common DeviceSerialPortBaudrate for grabber and camera as %s.",
            optimum);
        const char* current = nullptr;
        if (api.PxnFeatureEnumGet(localDevice, kBaudRate, &current) == PxnErrSuccess &&
            std::strcmp(current, optimum) == 0) {
            log.Information(
                "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Optimum DeviceSerialPortBaudrate of %s already set. No need to change it.",
                optimum);
        } else if (api.PxnFeatureEnumSet(localDevice, kBaudRate, optimum) == PxnErrSuccess) {
            log.Information(
                "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Switched to optimum DeviceSerialPortBaudrate of %s.",
                optimum);
        }
        return true;
    });
}
