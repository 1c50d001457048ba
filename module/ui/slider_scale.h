// slider_scale.h - the range and value of an integer editor and the positions of its slider
#pragma once

#include <cstdint>

namespace pyxen {

class SliderScale {
public:
    /// Keeps the range. Up to 65535 steps the slider stands for the numbers themselves, else for
    /// 65536 parts of the range. The value stays as it is.
    void SetRange(std::int64_t newMin, std::int64_t newMax);
    /// Keeps the value, which may lie outside the range.
    void SetValue(std::int64_t newValue) { value = newValue; }
    /// Keeps the value, moved into the range.
    void SetClampedValue(std::int64_t newValue);
    /// Keeps the value that the slider's position stands for.
    void SetPosition(std::int32_t position);

    std::int64_t GetValue() const { return value; }
    std::int64_t GetMin() const { return min; }
    std::int64_t GetMax() const { return max; }
    double GetScale() const { return scale; }
    std::int32_t GetSliderMin() const { return sliderMin; }
    std::int32_t GetSliderMax() const { return sliderMax; }
    /// Where the slider stands for the value. Intended: the position is not offset by the minimum,
    /// so a wide range that starts far from 0 shows its values at the slider's end.
    std::int32_t GetPosition() const;

private:
    std::int64_t min = 0;
    std::int64_t max = 0;
    std::int64_t value = 0;
    bool wide = false;
    double scale = 1.0;
    std::int32_t sliderMin = 0;
    std::int32_t sliderMax = 0;
};

} // namespace pyxen
