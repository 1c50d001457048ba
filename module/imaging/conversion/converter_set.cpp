// converter_set.cpp - chooses the converters for this processor
#include "imaging/conversion/converter_set.h"

#include "platform/processor.h"

#include <atomic>
#include <cstddef>

namespace pyxen {

namespace {

constexpr const ConverterSet* kSets[] = {&kPlainConverters, &kSse41Converters, &kAvx2Converters,
                                         &kAvx512Converters};

std::size_t CountUsable() {
    if (!platform::HasSse41()) {
        return 1;
    }
    if (!platform::HasAvx2()) {
        return 2;
    }
    return platform::HasAvx512Vbmi() ? 4 : 3;
}

std::atomic<const ConverterSet*> active{nullptr};

} // namespace

std::span<const ConverterSet* const> UsableConverterSets() {
    static const std::size_t count = CountUsable();
    return {kSets, count};
}

const ConverterSet& ActiveConverterSet() {
    const ConverterSet* set = active.load(std::memory_order_relaxed);
    if (!set) {
        set = UsableConverterSets().back();
        active.store(set, std::memory_order_relaxed);
    }
    return *set;
}

void ForceConverterSet(const ConverterSet* set) {
    active.store(set, std::memory_order_relaxed);
}

ConvertFunction StreamingConverter(ConvertFunction convert) {
    constexpr struct {
        ConvertFunction any;
        ConvertFunction ConverterSet::*ofSet;
    } kConverters[] = {
        {&Unpack10p, &ConverterSet::unpack10p},
        {&Unpack12p, &ConverterSet::unpack12p},
        {&Unpack10Packed, &ConverterSet::unpack10Packed},
        {&Unpack12Packed, &ConverterSet::unpack12Packed},
        {&ConvertYUV422, &ConverterSet::convertYUV422},
        {&ConvertYUV444, &ConverterSet::convertYUV444},
        {&ConvertYUV411, &ConverterSet::convertYUV411},
    };
    const ConverterSet* const streaming = ActiveConverterSet().streaming;
    for (const auto& converter : kConverters) {
        if (streaming && converter.any == convert) {
            return streaming->*converter.ofSet;
        }
    }
    return nullptr;
}

void Unpack10p(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().unpack10p(source, destination, pixelCount);
}

void Unpack12p(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().unpack12p(source, destination, pixelCount);
}

void Unpack10Packed(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().unpack10Packed(source, destination, pixelCount);
}

void Unpack12Packed(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().unpack12Packed(source, destination, pixelCount);
}

void ConvertYUV422(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().convertYUV422(source, destination, pixelCount);
}

void ConvertYUV444(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().convertYUV444(source, destination, pixelCount);
}

void ConvertYUV411(const void* source, void* destination, std::uint64_t pixelCount) {
    ActiveConverterSet().convertYUV411(source, destination, pixelCount);
}

} // namespace pyxen
