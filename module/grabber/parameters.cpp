// parameters.cpp - exposure, frame interval and the other numbered parameters
//
// The host counts time in whole units of ten to the power of the time base, the camera in
// microseconds; everything that crosses between the two is cut to whole numbers.
#include "grabber/mivora_kvn_pyxen_class.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace {

constexpr const char* kExposureTime = "ExposureTime";
constexpr const char* kFixedInterval = "AcquisitionFixedIntervalTime";
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

struct CMivoraKVNPyxenClass::TimerLimits {
    uint64_t minExposure = 0;
    uint64_t maxExposure = 0;
    uint64_t minInterval = 0;
    uint64_t maxInterval = 0;
};

MV_ERRCODE CMivoraKVNPyxenClass::CheckTimerParameterState() const {
    if (!initialized || !api.IsValid()) {
        return MV_NOT_INITIALISED;
    }
    return cameraOpen ? MV_OK : MV_CAMERA_NOT_OPEN;
}

MV_ERRCODE CMivoraKVNPyxenClass::GetGrabberParam(uint32_t id, uint64_t* value1, uint64_t* value2) {
    if (IsTimerParameter(id)) {
        if (const MV_ERRCODE state = CheckTimerParameterState(); state != MV_OK) {
            return state;
        }
    }
    switch (id) {
    case MVGF_ACQUISITION_CAPABILITIES: {
        uint64_t capabilities = 0;
        const MV_ERRCODE result = CPyxenGrabber::GetGrabberParam(id, &capabilities, value2);
        if (result == MV_OK) {
            constexpr uint64_t kNotServed = kMvCapHostTimer | kMvCapFieldSnap;
            Store(value1, (capabilities & ~kNotServed) | kMvCapContinuous);
        }
        return result;
    }
    case MVGF_TIMER_MODE:
        Store(value1, GetTimerMode());
        Store(value2, 0);
        return MV_OK;
    case MVGF_TIMER_VALUES: {
        uint32_t exposure = 0;
        uint32_t interval = 0;
        if (!GetExposureTime(&exposure) || !GetFrameInterval(&interval)) {
            return MV_NOT_SERVED;
        }
        Store(value1, exposure);
        Store(value2, interval);
        return MV_OK;
    }
    case MVGF_TIMER_ENABLED:
        Store(value1, GetTimerEnabled() != 0 ? 1 : 0);
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
        Store(value1, static_cast<uint64_t>(int64_t{GetTimeBase()}));
        Store(value2, 0);
        return MV_OK;
    case MVGF_FRAMES_RECEIVED: {
        const uint64_t count = framesReceived;
        Store(value1, count);
        Store(value2, count);
        return MV_OK;
    }
    default:
        return CPyxenGrabber::GetGrabberParam(id, value1, value2);
    }
}

MV_ERRCODE CMivoraKVNPyxenClass::GetGrabberParamLimits(uint32_t id, uint64_t* min1, uint64_t* max1,
                                                       uint64_t* min2, uint64_t* max2) {
    if (IsTimerParameter(id)) {
        if (const MV_ERRCODE state = CheckTimerParameterState(); state != MV_OK) {
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
        TimerLimits limits;
        if (!ReadTimerLimits(limits)) {
            return MV_NOT_SERVED;
        }
        Store(min1, limits.minExposure);
        Store(max1, limits.maxExposure);
        Store(min2, limits.minInterval);
        Store(max2, limits.maxInterval);
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
        Store(min1, static_cast<uint64_t>(int64_t{-6}));
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
        return CPyxenGrabber::GetGrabberParamLimits(id, min1, max1, min2, max2);
    }
}

bool CMivoraKVNPyxenClass::ReadTimerLimits(TimerLimits& limits) {
    const PxnHandle camera = CameraHandle();
    const int timeBase = GetTimeBase();

    double minExposure = 0;
    double maxExposure = 0;
    if (api.PxnFeatureFloatRangeQuery(camera, kExposureTime, &minExposure, &maxExposure) != 0) {
        return false;
    }
    limits.minExposure = Truncate<uint64_t>(MicrosecondsToHost(minExposure, timeBase));
    limits.maxExposure = Truncate<uint64_t>(MicrosecondsToHost(maxExposure, timeBase));

    int64_t minTime = 0;
    int64_t maxTime = 0;
    if (api.PxnFeatureIntRangeQuery(camera, kFixedInterval, &minTime, &maxTime) == 0) {
        limits.minInterval =
            Truncate<uint64_t>(MicrosecondsToHost(static_cast<double>(minTime), timeBase));
        limits.maxInterval =
            Truncate<uint64_t>(MicrosecondsToHost(static_cast<double>(maxTime), timeBase));
        return true;
    }
    double minRate = 0;
    double maxRate = 0;
    if (api.PxnFeatureFloatRangeQuery(camera, kFrameRate, &minRate, &maxRate) != 0) {
        return false;
    }
    limits.minInterval = Truncate<uint64_t>(RateToHost(maxRate, timeBase));
    limits.maxInterval = Truncate<uint64_t>(RateToHost(minRate, timeBase));
    return true;
}

MV_ERRCODE CMivoraKVNPyxenClass::SetGrabberParam(uint32_t id, uint64_t value1, uint64_t value2) {
    uint64_t min1 = 0;
    uint64_t max1 = 0;
    uint64_t min2 = 0;
    uint64_t max2 = 0;
    const MV_ERRCODE result = GetGrabberParamLimits(id, &min1, &max1, &min2, &max2);
    if (result != MV_OK) {
        return result;
    }
    switch (id) {
    case MVGF_TIMER_VALUES:
        if (value1 < min1 || value1 > max1 || value2 < min2 || value2 > max2) {
            return MV_BAD_VALUE;
        }
        return WriteTimerValues(value1, value2);
    case MVGF_TIME_BASE: {
        const auto exponent = static_cast<int64_t>(value1);
        const auto second = static_cast<int64_t>(value2);
        if (exponent < static_cast<int64_t>(min1) || exponent > static_cast<int64_t>(max1) ||
            second < static_cast<int64_t>(min2) || second > static_cast<int64_t>(max2)) {
            return MV_BAD_VALUE;
        }
        ChangeTimeBase(static_cast<int32_t>(exponent));
        return MV_OK;
    }
    default:
        return CPyxenGrabber::SetGrabberParam(id, value1, value2);
    }
}

MV_ERRCODE CMivoraKVNPyxenClass::WriteTimerValues(uint64_t exposure, uint64_t interval) {
    const PxnHandle camera = CameraHandle();
    const int timeBase = GetTimeBase();
    if (api.PxnFeatureFloatSet(camera, kExposureTime, HostToMicroseconds(exposure, timeBase)) !=
        0) {
        return MV_NOT_SERVED;
    }
    const double microseconds = HostToMicroseconds(interval, timeBase);
    if (api.PxnFeatureIntSet(camera, kFixedInterval, Truncate<int64_t>(microseconds)) == 0) {
        return MV_OK;
    }
    const double rate = kMicrosecondsPerSecond / microseconds;
    return api.PxnFeatureFloatSet(camera, kFrameRate, rate) == 0 ? MV_OK : MV_NOT_SERVED;
}

void CMivoraKVNPyxenClass::ChangeTimeBase(int32_t exponent) {
    const int64_t steps = int64_t{GetTimeBase()} - exponent;
    SetExposureValue(Rescale(GetExposureValue(), steps));
    SetIntervalValue(Rescale(GetIntervalValue(), steps));
    SetSavedExposure(Rescale(GetSavedExposure(), steps));
    SetSavedInterval(Rescale(GetSavedInterval(), steps));
    SetTimeBase(exponent);
    SetSavedTimeBase(exponent);
}

bool CMivoraKVNPyxenClass::GetExposureTime(uint32_t* value) {
    const PxnHandle camera = CameraHandle();
    double microseconds = 0;
    if (!camera || api.PxnFeatureFloatGet(camera, kExposureTime, &microseconds) != 0) {
        return false;
    }
    *value = Truncate<uint32_t>(MicrosecondsToHost(microseconds, GetTimeBase()));
    return true;
}

bool CMivoraKVNPyxenClass::GetFrameInterval(uint32_t* value) {
    const PxnHandle camera = CameraHandle();
    if (!camera) {
        return false;
    }
    int64_t microseconds = 0;
    if (api.PxnFeatureIntGet(camera, kFixedInterval, &microseconds) == 0) {
        *value = Truncate<uint32_t>(
            MicrosecondsToHost(static_cast<double>(microseconds), GetTimeBase()));
        return true;
    }
    double rate = 0;
    if (api.PxnFeatureFloatGet(camera, kFrameRate, &rate) != 0) {
        return false;
    }
    *value = Truncate<uint32_t>(RateToHost(rate, GetTimeBase()));
    return true;
}

void CMivoraKVNPyxenClass::GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) {
    const int timeBase = GetTimeBase();
    Store(exposure, Truncate<uint64_t>(HostToMicroseconds(GetExposureValue(), timeBase)));
    Store(interval, Truncate<uint64_t>(HostToMicroseconds(GetIntervalValue(), timeBase)));
}

void CMivoraKVNPyxenClass::SetTimerMicroseconds(uint64_t exposure, uint64_t interval) {
    if (exposure >= interval) {
        return; // an exposure as long as the interval is refused on purpose
    }
    const int timeBase = GetTimeBase();
    const auto newExposure =
        Truncate<uint32_t>(MicrosecondsToHost(static_cast<double>(exposure), timeBase));
    const auto newInterval =
        Truncate<uint32_t>(MicrosecondsToHost(static_cast<double>(interval), timeBase));
    SetSavedExposure(newExposure);
    SetSavedInterval(newInterval);
    SetSavedTimeBase(timeBase);
    ChangeTimerTB(newExposure, newInterval, GetTimerEnabled());
    UpdateCamCntrlDialogs(kMvUpdateParameters | kMvUpdateTimer);
}
