// grabber_parameters.cpp - parameters, bits, features and timer
#include "grabber_impl.h"

#include <algorithm>

namespace {

std::uint64_t SignExtended(std::int32_t value) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
}

void StoreValue(std::uint64_t* target, std::uint64_t value) {
    if (target) {
        *target = value;
    }
}

struct Limits {
    std::uint64_t min1;
    std::uint64_t max1;
    std::uint64_t min2;
    std::uint64_t max2;
};

constexpr std::uint64_t kAll32 = 0xFFFFFFFFu;
constexpr std::uint64_t kAll64 = ~std::uint64_t{0};

bool FindLimits(std::uint32_t id, Limits& limits) {
    switch (id) {
    case MVGF_FRAME_BUFFER_COUNT:
        limits = {1, kAll64, 0, 0};
        return true;
    case MVGF_TIMER_MODE:
        limits = {0, kAll32, 0, 0};
        return true;
    case MVGF_TIMER_VALUES:
        limits = {0, kAll32, 0, kAll32};
        return true;
    case MVGF_TIMER_ENABLED:
        limits = {0, 1, 0, 0};
        return true;
    case MVGF_TIME_BASE:
        limits = {SignExtended(kMinTimeBase), 0, 0, 0};
        return true;
    default:
        return false;
    }
}

// Converts a value from units of 10^from to units of 10^to seconds, limited to 32 bits.
std::uint32_t Rescaled(std::uint32_t value, std::int32_t from, std::int32_t to) {
    std::uint64_t scaled = value;
    for (; from > to; --from) {
        scaled = std::min(scaled * 10, kAll32);
    }
    for (; from < to; ++from) {
        scaled /= 10;
    }
    return static_cast<std::uint32_t>(scaled);
}

} // namespace

MV_ERRCODE CMivoraGrabber::GetGrabberParamLimits(std::uint32_t id, std::uint64_t* min1,
                                                 std::uint64_t* max1, std::uint64_t* min2,
                                                 std::uint64_t* max2) {
    Limits limits{};
    const bool served = FindLimits(id, limits);
    StoreValue(min1, limits.min1);
    StoreValue(max1, limits.max1);
    StoreValue(min2, limits.min2);
    StoreValue(max2, limits.max2);
    return served ? MV_OK : MV_NOT_SERVED;
}

MV_ERRCODE CMivoraGrabber::GetGrabberParam(std::uint32_t id, std::uint64_t* value1,
                                           std::uint64_t* value2) {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    MV_ERRCODE result = MV_OK;
    switch (id) {
    case MVGF_FRAME_BUFFER_COUNT:
        first = impl->requestedBuffers;
        break;
    case MVGF_ACQUISITION_CAPABILITIES:
        first = kMvCapHostTimer | kMvCapSingleSnap | kMvCapFieldSnap;
        break;
    case MVGF_TIMER_MODE:
        first = impl->timerMode;
        break;
    case MVGF_TIMER_VALUES:
        first = impl->exposure;
        second = impl->interval;
        break;
    case MVGF_TIMER_ENABLED:
        first = impl->timerEnabled != 0 ? 1 : 0;
        break;
    case MVGF_TIME_BASE:
        first = SignExtended(impl->timeBase);
        break;
    default:
        result = MV_NOT_SERVED;
        break;
    }
    StoreValue(value1, first);
    StoreValue(value2, second);
    return result;
}

MV_ERRCODE CMivoraGrabber::SetGrabberParam(std::uint32_t id, std::uint64_t value1,
                                           std::uint64_t value2) {
    Limits limits{};
    if (!FindLimits(id, limits)) {
        return MV_NOT_SERVED;
    }
    if (id == MVGF_TIME_BASE) {
        const std::int64_t exponent = static_cast<std::int64_t>(value1);
        if (exponent < kMinTimeBase || exponent > 0 || value2 != 0) {
            return MV_BAD_VALUE;
        }
        const std::int32_t to = static_cast<std::int32_t>(exponent);
        const std::int32_t from = impl->timeBase;
        impl->exposure = Rescaled(impl->exposure, from, to);
        impl->interval = Rescaled(impl->interval, from, to);
        const std::int32_t savedFrom = impl->savedTimeBase;
        impl->savedExposure = Rescaled(impl->savedExposure, savedFrom, to);
        impl->savedInterval = Rescaled(impl->savedInterval, savedFrom, to);
        impl->timeBase = to;
        impl->savedTimeBase = to;
        return MV_OK;
    }
    if (value1 < limits.min1 || value1 > limits.max1 || value2 < limits.min2 ||
        value2 > limits.max2) {
        return MV_BAD_VALUE;
    }
    const std::uint32_t first = static_cast<std::uint32_t>(value1);
    switch (id) {
    case MVGF_FRAME_BUFFER_COUNT:
        impl->requestedBuffers = value1;
        return MV_OK;
    case MVGF_TIMER_MODE:
        impl->timerMode = first;
        return MV_OK;
    case MVGF_TIMER_VALUES:
        impl->exposure = first;
        impl->interval = static_cast<std::uint32_t>(value2);
        return MV_OK;
    default:
        return first != 0 ? StartTimer() : StopTimer();
    }
}

MV_ERRCODE CMivoraGrabber::SetGrabberBit(std::uint32_t bit, std::uint32_t value) {
    if (bit >= kMvGrabberBitCount) {
        return MV_BAD_VALUE;
    }
    if (value != 0) {
        impl->grabberBits |= 1u << bit;
    } else {
        impl->grabberBits &= ~(1u << bit);
    }
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::GetGrabberBit(std::uint32_t bit, std::uint32_t* value) {
    if (bit >= kMvGrabberBitCount || !value) {
        return MV_BAD_VALUE;
    }
    *value = impl->grabberBits >> bit & 1u;
    return MV_OK;
}

EMV_FEATURE_STATUS CMivoraGrabber::GetFeatureStatus(EMV_FEATURE_ID id) {
    if (id >= EMV_FEATURE_COUNT) {
        return EMV_STATUS_UNKNOWN;
    }
    return impl->IsFeatureOn(id) ? EMV_STATUS_ON : EMV_STATUS_OFF;
}

std::uint32_t CMivoraGrabber::GetFeatureMask() {
    return impl->featureMask;
}

MV_ERRCODE CMivoraGrabber::SetFeature(EMV_FEATURE_ID id, std::uint32_t on) {
    if (id >= EMV_FEATURE_COUNT) {
        return MV_BAD_VALUE;
    }
    if (on != 0) {
        impl->featureMask |= 1u << id;
    } else {
        impl->featureMask &= ~(1u << id);
    }
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::GetFeature(EMV_FEATURE_ID id, std::uint32_t* on) {
    if (id >= EMV_FEATURE_COUNT || !on) {
        return MV_BAD_VALUE;
    }
    *on = impl->IsFeatureOn(id) ? 1 : 0;
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::StartTimer() {
    impl->timerEnabled = 1;
    UpdateCamCntrlDialogs(kMvUpdateTimer);
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::StopTimer() {
    impl->timerEnabled = 0;
    UpdateCamCntrlDialogs(kMvUpdateTimer);
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::ChangeTimerTB(std::uint32_t exposure, std::uint32_t interval,
                                         std::uint32_t timerEnabled) {
    impl->exposure = exposure;
    impl->interval = interval;
    impl->timerEnabled = timerEnabled;
    UpdateCamCntrlDialogs(kMvUpdateTimer);
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::SetDefaultIodTimerConfigToGrabber() {
    impl->timeBase = impl->savedTimeBase.load();
    impl->exposure = impl->savedExposure.load();
    impl->interval = impl->savedInterval.load();
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::GetDefaultIodTimerConfigFromGrabber() {
    impl->savedTimeBase = impl->timeBase.load();
    impl->savedExposure = impl->exposure.load();
    impl->savedInterval = impl->interval.load();
    return MV_OK;
}

std::uint32_t CMivoraGrabber::GetExposureValue() const {
    return impl->exposure;
}

void CMivoraGrabber::SetExposureValue(std::uint32_t value) {
    impl->exposure = value;
}

std::uint32_t CMivoraGrabber::GetIntervalValue() const {
    return impl->interval;
}

void CMivoraGrabber::SetIntervalValue(std::uint32_t value) {
    impl->interval = value;
}

std::int32_t CMivoraGrabber::GetTimeBase() const {
    return impl->timeBase;
}

void CMivoraGrabber::SetTimeBase(std::int32_t exponent) {
    impl->timeBase = exponent;
}

std::uint32_t CMivoraGrabber::GetSavedExposure() const {
    return impl->savedExposure;
}

void CMivoraGrabber::SetSavedExposure(std::uint32_t value) {
    impl->savedExposure = value;
}

std::uint32_t CMivoraGrabber::GetSavedInterval() const {
    return impl->savedInterval;
}

void CMivoraGrabber::SetSavedInterval(std::uint32_t value) {
    impl->savedInterval = value;
}

std::int32_t CMivoraGrabber::GetSavedTimeBase() const {
    return impl->savedTimeBase;
}

void CMivoraGrabber::SetSavedTimeBase(std::int32_t exponent) {
    impl->savedTimeBase = exponent;
}

std::uint32_t CMivoraGrabber::GetTimerMode() const {
    return impl->timerMode;
}

std::uint32_t CMivoraGrabber::GetTimerEnabled() const {
    return impl->timerEnabled;
}
