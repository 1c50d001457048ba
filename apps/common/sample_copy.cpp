// sample_copy.cpp - brings samples into the order of a file
#include "apps/common/sample_copy.h"

#include "apps/common/picture.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr std::uint32_t kByteBits = 8;
constexpr bool kIsBigEndian = std::endian::native == std::endian::big;

std::uint32_t Mask(const ImageLayout& layout) {
    return (1u << layout.bits) - 1;
}

std::uint8_t InOrder(std::uint8_t sample, bool) {
    return sample;
}

std::uint16_t InOrder(std::uint16_t sample, bool isSwapped) {
    return isSwapped ? static_cast<std::uint16_t>(sample << 8 | sample >> 8) : sample;
}

// Written for compilers to vectorise.
template <typename To, typename From>
void CopyChannel(To* to, std::size_t toStep, const From* from, std::size_t fromStep,
                 std::size_t pixels, const ImageLayout& layout, const SampleOrder& order) {
    const std::uint32_t mask = Mask(layout);
    const std::uint32_t shift = order.shift;
    const auto copy = [&](bool isSwapped) {
        for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
            const auto sample = static_cast<To>((from[pixel * fromStep] & mask) << shift);
            to[pixel * toStep] = InOrder(sample, isSwapped);
        }
    };
    if (order.isBigEndian == kIsBigEndian) {
        copy(false);
    } else {
        copy(true);
    }
}

template <typename To, typename From>
void Copy(const ImageLayout& layout, const void* image, const SampleOrder& order,
          std::vector<std::uint8_t>& bytes) {
    const std::size_t pixels = std::size_t{layout.width} * layout.height;
    bytes.resize(pixels * order.channels * sizeof(To));
    auto* const to = reinterpret_cast<To*>(bytes.data());
    const auto* const from = static_cast<const From*>(image);
    if (order.channels == 1 && layout.components == 1) {
        CopyChannel(to, 1, from, 1, pixels, layout, order); // steps that compilers see
        return;
    }
    for (std::uint32_t channel = 0; channel < order.channels; ++channel) {
        CopyChannel(to + channel, order.channels, from + order.component[channel],
                    layout.components, pixels, layout, order);
    }
}

// In a file samples begin anywhere.
template <typename Sample>
Sample SampleAt(const std::uint8_t* bytes, std::size_t index) {
    Sample sample;
    std::memcpy(&sample, bytes + index * sizeof sample, sizeof sample);
    return sample;
}

template <typename To, typename From>
void RestoreChannel(To* to, std::size_t toStep, const std::uint8_t* from, std::size_t fromStep,
                    std::size_t pixels, const SampleOrder& order) {
    const std::uint32_t shift = order.shift;
    const auto copy = [&](bool isSwapped) {
        for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
            const From sample = SampleAt<From>(from, pixel * fromStep);
            to[pixel * toStep] = static_cast<To>(InOrder(sample, isSwapped) >> shift);
        }
    };
    if (order.isBigEndian == kIsBigEndian) {
        copy(false);
    } else {
        copy(true);
    }
}

template <typename To, typename From>
void Restore(const ImageLayout& layout, const std::uint8_t* bytes, const SampleOrder& order,
             void* image) {
    const std::size_t pixels = std::size_t{layout.width} * layout.height;
    auto* const to = static_cast<To*>(image);
    if (order.channels < layout.components) {
        std::fill(to, to + pixels * layout.components, static_cast<To>(Mask(layout)));
    }
    for (std::uint32_t channel = 0; channel < order.channels; ++channel) {
        RestoreChannel<To, From>(to + order.component[channel], layout.components,
                                 bytes + channel * sizeof(From), order.channels, pixels, order);
    }
}

/// True when no bit is set beside the significant ones.
template <typename Sample>
bool IsClean(const ImageLayout& layout, const void* image) {
    const std::size_t count = std::size_t{layout.width} * layout.height * layout.components;
    const auto* const samples = static_cast<const Sample*>(image);
    std::uint32_t bits = 0;
    for (std::size_t at = 0; at < count; ++at) {
        bits |= samples[at];
    }
    return (bits & ~Mask(layout)) == 0;
}

} // namespace

SampleOrder FileOrder(const ImageLayout& layout) {
    SampleOrder order;
    order.channels = layout.components;
    for (std::uint32_t channel = 0; channel < order.component.size(); ++channel) {
        // A module may report a colour coding of more components than there are.
        const std::uint32_t component = ChannelOrder(layout.colorCoding)[channel];
        order.component[channel] = component < layout.components ? component : 0;
    }
    return order;
}

bool IsInOrder(const ImageLayout& layout, const void* image, const SampleOrder& order) {
    const bool isTwoBytes = layout.allocatedBits > kByteBits;
    if (order.channels != layout.components || order.shift != 0 ||
        isTwoBytes != (layout.bits > kByteBits) ||
        (isTwoBytes && order.isBigEndian != kIsBigEndian)) {
        return false;
    }
    for (std::uint32_t channel = 0; channel < order.channels; ++channel) {
        if (order.component[channel] != channel) {
            return false;
        }
    }
    if (layout.bits == layout.allocatedBits) {
        return true;
    }
    return isTwoBytes ? IsClean<std::uint16_t>(layout, image)
                      : IsClean<std::uint8_t>(layout, image);
}

void CopySamples(const ImageLayout& layout, const void* image, const SampleOrder& order,
                 std::vector<std::uint8_t>& bytes) {
    if (layout.bits > kByteBits) {
        Copy<std::uint16_t, std::uint16_t>(layout, image, order, bytes);
    } else if (layout.allocatedBits > kByteBits) {
        Copy<std::uint8_t, std::uint16_t>(layout, image, order, bytes);
    } else {
        Copy<std::uint8_t, std::uint8_t>(layout, image, order, bytes);
    }
}

std::uint32_t FileSampleBytes(const ImageLayout& layout) {
    return layout.bits > kByteBits ? 2 : 1;
}

void RestoreSamples(const ImageLayout& layout, const std::uint8_t* bytes, const SampleOrder& order,
                    void* image) {
    if (layout.bits > kByteBits) {
        Restore<std::uint16_t, std::uint16_t>(layout, bytes, order, image);
    } else if (layout.allocatedBits > kByteBits) {
        Restore<std::uint16_t, std::uint8_t>(layout, bytes, order, image);
    } else {
        Restore<std::uint8_t, std::uint8_t>(layout, bytes, order, image);
    }
}
