// serial_baud_rate.cpp - choosing the serial link's speed
#include "grabber/serial_baud_rate.h"

#include "sdk/feature.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace pyxen {

namespace {

constexpr const char* kBaudRate = "DeviceSerialPortBaudRate";

/// The rates that a module offers; none when they cannot be read.
std::vector<const char*> ReadRates(const Feature& baudRate) {
    FeatureRange range;
    baudRate.Range(range);
    std::erase(range.entries, nullptr);
    return std::move(range.entries);
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
        const Feature grabberRate(api, localDevice, kBaudRate, FeatureType::kEnumeration);
        const Feature cameraRate(api, camera, kBaudRate, FeatureType::kEnumeration);
        const std::vector<const char*> grabberRates = ReadRates(grabberRate);
        const char* const optimum = FindOptimumBaudRate(grabberRates, ReadRates(cameraRate));
        if (!optimum) {
            return true;
        }
        log.Information(
            "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Found optimum common DeviceSerialPortBaudrate for grabber and camera as %s.",
            optimum);
        FeatureValue current = EnumEntry{};
        grabberRate.Read(current);
        const char* const present = current.Get<EnumEntry>().name;
        if (present && std::strcmp(present, optimum) == 0) {
            log.Information(
                "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Optimum DeviceSerialPortBaudrate of %s already set. No need to change it.",
                optimum);
        } else if (grabberRate.Write(EnumEntry{optimum}) == PxnErrSuccess) {
            log.Information(
                "CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Switched to optimum DeviceSerialPortBaudrate of %s.",
                optimum);
        }
        return true;
    });
}

} // namespace pyxen
