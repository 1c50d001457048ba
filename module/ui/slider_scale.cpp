// slider_scale.cpp - the range and value of an integer editor and the positions of its slider
#include "ui/slider_scale.h"

#include "ui/value_text.h"

#include <cmath>
#include <limits>

namespace pyxen {

namespace {

constexpr std::uint64_t kSliderSteps = 65536;
constexpr double kPart = 1.52587890625e-5; // 2^-16

std::int64_t CeilToInteger(double number) {
    // The nearest double to the largest integer is one above it.
    constexpr double kEnd = 9223372036854775808.0;
    const double whole = std::ceil(number);
    if (whole >= kEnd) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return whole < -kEnd ? std::numeric_limits<std::int64_t>::min()
                         : static_cast<std::int64_t>(whole);
}

} // namespace

void SliderScale::SetRange(std::int64_t newMin, std::int64_t newMax) {
    min = newMin;
    max = newMax;
    // Unsigned, for the whole range of 64 bits is one step too wide for a signed difference.
    const std::uint64_t span = static_cast<std::uint64_t>(max) - static_cast<std::uint64_t>(min);
    wide = max >= min && span >= kSliderSteps;
    if (!wide) {
        sliderMin = static_cast<std::int32_t>(min);
        sliderMax = static_cast<std::int32_t>(max);
        scale = 1.0;
    } else {
        sliderMin = 0;
        sliderMax = kSliderSteps - 1;
        scale = static_cast<double>(span) * kPart;
    }
}

void SliderScale::SetClampedValue(std::int64_t newValue) {
    value = ClampValue(newValue, min, max);
}

void SliderScale::SetPosition(std::int32_t position) {
    if (position == sliderMax) {
        value = max;
    } else if (position != sliderMin) {
        value = CeilToInteger(position * scale);
    } else {
        value = min;
    }
}

std::int32_t SliderScale::GetPosition() const {
    if (!wide) {
        // Cut to 32 bits as the slider's own range is, so that the two agree beyond 32 bits too.
        return static_cast<std::int32_t>(ClampValue(value, min, max));
    }
    constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t position = CeilToInteger(static_cast<double>(value) / scale);
    return static_cast<std::int32_t>(ClampValue(position, kLowest, kHighest));
}

} // namespace pyxen
