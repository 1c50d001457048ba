// converter_set.h - the same converters for several kinds of processor
#pragma once

#include "imaging/pixel_format.h"

#include <span>

namespace pyxen {

/// One complete set of converters, all for the same instruction set.
struct ConverterSet {
    const char* name; ///< of the instruction set
    ConvertFunction unpack10p;
    ConvertFunction unpack12p;
    ConvertFunction unpack10Packed;
    ConvertFunction unpack12Packed;
    ConvertFunction convertYUV422;
    ConvertFunction convertYUV444;
    ConvertFunction convertYUV411;
    /// The same for images that are too large for the cache: those of these converters that gain by
    /// it write past the cache. Null when none does.
    const ConverterSet* streaming = nullptr;
};

// All sets produce the same bytes. All but the first require a processor with the instructions that
// they are named after.
extern const ConverterSet kPlainConverters;
extern const ConverterSet kSse41Converters;
extern const ConverterSet kAvx2Converters;
extern const ConverterSet kAvx512Converters;

/// The sets that this processor can run, the fastest last. Any thread.
std::span<const ConverterSet* const> UsableConverterSets();
/// The set that Unpack10p and the like use: the fastest usable one unless another was forced.
const ConverterSet& ActiveConverterSet();
/// What the active set has for images that are too large for the cache in the place of Unpack10p or
/// the like; null where it has nothing else.
ConvertFunction StreamingConverter(ConvertFunction convert);
/// Forces another usable set; null restores the fastest. For tests and measurements.
void ForceConverterSet(const ConverterSet* set);

} // namespace pyxen
