// parameters.cpp - exposure, frame interval and the other numbered parameters
//
// The host counts time in whole units of ten to the power of the time base, the camera in
// microseconds; everything that crosses between the two is cut to whole numbers.
#include "grabber/parameters.h"

#include "platform/text.h"
#include "sdk/camera_features.h"
#include "sdk/pyxen_api_access.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace pyxen {

namespace {

constexpr const char* kExposureTime = "ExposureTime";
constexpr const char* kFrameRate = "AcquisitionFrameRate";
constexpr double kMicrosecondsPerSecond = 1000000.0;
constexpr std::uint64_t kAllBits = std::numeric_limits<std::uint64_t>::max();

/// Repeated squaring, so that every platform gets the same bits.
double PowerOfTen(std::int64_t exponent) {
    std::uint64_t rest = exponent < 0 ? 0 - static_cast<std::uint64_t>(exponent)
                                      : static_cast<std::uint64_t>(exponent);
    double result = 1.0;
    double square = 10.0;
    while (rest != 0) {
        if ((rest & 1) != 0) {
            result *= square;
        }
        square *= square;
        rest >>= 1;
    }
    return exponent < 0 ? 1.0 / result : result;
}

/// Cuts to a whole number; what the type cannot hold becomes its nearest limit, no number is 0.
template <typename Number>
Number Truncate(double value) {
    constexpr Number kLowest = std::numeric_limits<Number>::min();
    constexpr Number kHighest = std::numeric_limits<Number>::max();
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= static_cast<double>(kHighest)) {
        return kHighest;
    }
    if (value <= static_cast<double>(kLowest)) {
        return kLowest;
    }
    return static_cast<Number>(value);
}

double HostToMicroseconds(std::uint64_t value, int timeBase) {
    return static_cast<double>(value) * PowerOfTen(std::int64_t{timeBase} + 6);
}

double MicrosecondsToHost(double microseconds, int timeBase) {
    return microseconds * PowerOfTen(-6 - std::int64_t{timeBase});
}

double RateToHost(double rate, int timeBase) {
    return PowerOfTen(-std::int64_t{timeBase}) / rate;
}

void Store(std::uint64_t* out, std::uint64_t value) {
    if (out) {
        *out = value;
    }
}

bool IsTimerParameter(std::uint32_t id) {
    return id >= MVGF_TIMER_MODE && id <= MVGF_STROBE_POLARITY;
}

/// The value in a unit that is ten to the power of `steps` smaller (negative: larger).
std::uint32_t Rescale(std::uint32_t value, std::int64_t steps) {
    std::uint64_t scaled = value;
    for (; steps > 0 && scaled != 0; --steps) {
        scaled *= 10;
        if (scaled > std::numeric_limits<std::uint32_t>::max()) {
            return std::numeric_limits<std::uint32_t>::max();
        }
    }
    for (; steps < 0 && scaled != 0; ++steps) {
        scaled /= 10;
    }
    return static_cast<std::uint32_t>(scaled);
}

} // namespace

Parameters::Parameters(ICameraFeatures& cameraToAsk, IParameterHost& parameterHost)
    : features(cameraToAsk), host(parameterHost) {}

std::uint64_t Parameters::GetCapabilities(std::uint64_t hostCapabilities) {
    constexpr std::uint64_t kNotServed = kMvCapHostTimer | kMvCapFieldSnap;
    return (hostCapabilities & ~kNotServed) | kMvCapContinuous;
}

std::optional<MV_ERRCODE> Parameters::Get(std::uint32_t id, std::uint64_t* value1,
                                          std::uint64_t* value2) {
    if (IsTimerParameter(id)) {
        if (const MV_ERRCODE state = host.CheckTimerState(); state != MV_OK) {
            return state;
        }
    }
    switch (id) {
    case MVGF_TIMER_MODE:
        Store(value1, host.GetTimerMode());
        Store(value2, 0);
        return MV_OK;
    case MVGF_TIMER_VALUES: {
        std::uint32_t exposure = 0;
        std::uint32_t interval = 0;
        if (!ReadExposure(&exposure) || !ReadInterval(&interval)) {
            return MV_NOT_SERVED;
        }
        Store(value1, exposure);
        Store(value2, interval);
        return MV_OK;
    }
    case MVGF_TIMER_ENABLED:
        Store(value1, host.GetTimerEnabled() != 0 ? 1 : 0);
        Store(value2, 0);
        return MV_OK;
    case MVGF_TRIGGER_DELAY:
    case MVGF_TRIGGER_POLARITY:
    case MVGF_GAIN:
    case MVGF_OFFSET:
    case MVGF_STROBE_VALUES:
    case MVGF_STROBE_POLARITY:
        return MV_NOT_SERVED;
    case MVGF_TIME_BASE:
        Store(value1, static_cast<std::uint64_t>(std::int64_t{host.GetTimeBase()}));
        Store(value2, 0);
        return MV_OK;
    case MVGF_FRAMES_RECEIVED: {
        const std::uint64_t count = host.GetFramesReceived();
        Store(value1, count);
        Store(value2, count);
        return MV_OK;
    }
    default:
        return std::nullopt;
    }
}

std::optional<MV_ERRCODE> Parameters::GetLimits(std::uint32_t id, std::uint64_t* min1,
                                                std::uint64_t* max1, std::uint64_t* min2,
                                                std::uint64_t* max2) {
    if (IsTimerParameter(id)) {
        if (const MV_ERRCODE state = host.CheckTimerState(); state != MV_OK) {
            return state;
        }
    }
    switch (id) {
    case MVGF_FRAME_BUFFER_COUNT:
        Store(min1, 1);
        Store(max1, kAllBits);
        Store(min2, 0);
        Store(max2, 0);
        return MV_OK;
    case MVGF_TIMER_VALUES: {
        ParameterLimits limits;
        if (!ReadLimits(limits)) {
            return MV_NOT_SERVED;
        }
        Store(min1, limits.min1);
        Store(max1, limits.max1);
        Store(min2, limits.min2);
        Store(max2, limits.max2);
        return MV_OK;
    }
    case MVGF_TIMER_MODE:
    case MVGF_TIMER_ENABLED:
    case MVGF_TRIGGER_DELAY:
    case MVGF_TRIGGER_POLARITY:
    case MVGF_GAIN:
    case MVGF_OFFSET:
    case MVGF_STROBE_VALUES:
    case MVGF_STROBE_POLARITY:
        return MV_NOT_SERVED;
    case MVGF_TIME_BASE:
        Store(min1, static_cast<std::uint64_t>(std::int64_t{-6}));
        Store(max1, 0);
        Store(min2, 0);
        Store(max2, 0);
        return MV_OK;
    case MVGF_FRAMES_RECEIVED:
        Store(min1, 0);
        Store(max1, kAllBits);
        Store(min2, 0);
        Store(max2, kAllBits);
        return MV_OK;
    default:
        return std::nullopt;
    }
}

Feature Parameters::CameraFeature(const char* name, FeatureType type) const {
    return {features.Api(), features.CameraHandle(), name, type};
}

Feature Parameters::ExposureTime() const {
    return CameraFeature(kExposureTime, FeatureType::kFloat);
}

Feature Parameters::FixedInterval() const {
    return CameraFeature("AcquisitionFixedIntervalTime", FeatureType::kInteger);
}

Feature Parameters::FrameRate() const {
    return CameraFeature(kFrameRate, FeatureType::kFloat);
}

bool Parameters::ReadLimits(ParameterLimits& limits) {
    const int timeBase = host.GetTimeBase();
    FeatureRange range;
    if (ExposureTime().Range(range)) {
        return false;
    }
    limits.min1 = Truncate<std::uint64_t>(MicrosecondsToHost(range.floats.least, timeBase));
    limits.max1 = Truncate<std::uint64_t>(MicrosecondsToHost(range.floats.most, timeBase));
    if (!FixedInterval().Range(range)) {
        const auto [least, most] = range.integers;
        limits.min2 =
            Truncate<std::uint64_t>(MicrosecondsToHost(static_cast<double>(least), timeBase));
        limits.max2 =
            Truncate<std::uint64_t>(MicrosecondsToHost(static_cast<double>(most), timeBase));
        return true;
    }
    if (FrameRate().Range(range)) {
        return false;
    }
    limits.min2 = Truncate<std::uint64_t>(RateToHost(range.floats.most, timeBase));
    limits.max2 = Truncate<std::uint64_t>(RateToHost(range.floats.least, timeBase));
    return true;
}

std::optional<MV_ERRCODE> Parameters::Set(std::uint32_t id, const ParameterLimits& limits,
                                          std::uint64_t value1, std::uint64_t value2) {
    switch (id) {
    case MVGF_TIMER_VALUES:
        if (value1 < limits.min1 || value1 > limits.max1 || value2 < limits.min2 ||
            value2 > limits.max2) {
            return MV_BAD_VALUE;
        }
        return Write(value1, value2);
    case MVGF_TIME_BASE: {
        const auto exponent = static_cast<std::int64_t>(value1);
        const auto second = static_cast<std::int64_t>(value2);
        if (exponent < static_cast<std::int64_t>(limits.min1) ||
            exponent > static_cast<std::int64_t>(limits.max1) ||
            second < static_cast<std::int64_t>(limits.min2) ||
            second > static_cast<std::int64_t>(limits.max2)) {
            return MV_BAD_VALUE;
        }
        ChangeTimeBase(static_cast<std::int32_t>(exponent));
        return MV_OK;
    }
    default:
        return std::nullopt;
    }
}

MV_ERRCODE Parameters::Write(std::uint64_t exposure, std::uint64_t interval) {
    const int timeBase = host.GetTimeBase();
    if (ExposureTime().Write(HostToMicroseconds(exposure, timeBase))) {
        return MV_NOT_SERVED;
    }
    const double microseconds = HostToMicroseconds(interval, timeBase);
    if (!FixedInterval().Write(Truncate<std::int64_t>(microseconds))) {
        return MV_OK;
    }
    return FrameRate().Write(kMicrosecondsPerSecond / microseconds) ? MV_NOT_SERVED : MV_OK;
}

void Parameters::ChangeTimeBase(std::int32_t exponent) {
    const std::int64_t steps = std::int64_t{host.GetTimeBase()} - exponent;
    host.SetExposure(Rescale(host.GetExposure(), steps));
    host.SetInterval(Rescale(host.GetInterval(), steps));
    host.SetSavedExposure(Rescale(host.GetSavedExposure(), steps));
    host.SetSavedInterval(Rescale(host.GetSavedInterval(), steps));
    host.SetTimeBase(exponent);
    host.SetSavedTimeBase(exponent);
}

bool Parameters::CanAsk() const {
    return features.CameraHandle() && features.Api().IsValid();
}

bool Parameters::ReadExposure(std::uint32_t* value) {
    FeatureValue microseconds;
    if (!CanAsk() || ExposureTime().Read(microseconds)) {
        return false;
    }
    *value =
        Truncate<std::uint32_t>(MicrosecondsToHost(microseconds.Get<double>(), host.GetTimeBase()));
    return true;
}

bool Parameters::ReadInterval(std::uint32_t* value) {
    if (!CanAsk()) {
        return false;
    }
    FeatureValue read;
    if (!FixedInterval().Read(read)) {
        *value = Truncate<std::uint32_t>(
            MicrosecondsToHost(static_cast<double>(read.Get<std::int64_t>()), host.GetTimeBase()));
        return true;
    }
    if (FrameRate().Read(read)) {
        return false;
    }
    *value = Truncate<std::uint32_t>(RateToHost(read.Get<double>(), host.GetTimeBase()));
    return true;
}

void Parameters::KeepForSaving() {
    std::uint32_t value = 0;
    if (ReadExposure(&value)) {
        host.SetSavedExposure(value);
    }
    if (ReadInterval(&value)) {
        host.SetSavedInterval(value);
    }
}

bool Parameters::StoreIfChanged(const char* featureName) {
    std::uint32_t value = 0;
    if (featureName && platform::CompareNoCase(featureName, kExposureTime) == 0) {
        if (!ReadExposure(&value) || value == host.GetExposure()) {
            return false;
        }
        host.SetExposure(value);
        host.SetSavedExposure(value);
        return true;
    }
    if (featureName && platform::CompareNoCase(featureName, kFrameRate) == 0) {
        if (!ReadInterval(&value) || value == host.GetInterval()) {
            return false;
        }
        host.SetInterval(value);
        host.SetSavedInterval(value);
        return true;
    }
    return false;
}

void Parameters::GetMicroseconds(std::uint64_t* exposure, std::uint64_t* interval) const {
    const int timeBase = host.GetTimeBase();
    Store(exposure, Truncate<std::uint64_t>(HostToMicroseconds(host.GetExposure(), timeBase)));
    Store(interval, Truncate<std::uint64_t>(HostToMicroseconds(host.GetInterval(), timeBase)));
}

bool Parameters::SaveMicroseconds(std::uint64_t exposureTime, std::uint64_t intervalTime,
                                  std::uint32_t& exposure, std::uint32_t& interval) {
    // Compatibility: an exposure as long as the interval changes nothing.
    if (exposureTime >= intervalTime) {
        return false;
    }
    const int timeBase = host.GetTimeBase();
    exposure =
        Truncate<std::uint32_t>(MicrosecondsToHost(static_cast<double>(exposureTime), timeBase));
    interval =
        Truncate<std::uint32_t>(MicrosecondsToHost(static_cast<double>(intervalTime), timeBase));
    host.SetSavedExposure(exposure);
    host.SetSavedInterval(interval);
    host.SetSavedTimeBase(timeBase);
    return true;
}

} // namespace pyxen
