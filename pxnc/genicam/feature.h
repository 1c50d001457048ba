// feature.h - what the features of all modules have in common
#pragma once

#include "pxnc/skeleton/feature.h"

#include <cstdint>

namespace genicam {

/// A feature whose description never changes.
class Feature : public skeleton::Feature {
public:
    /// A text of the pool.
    const char* Name() const { return info.name; }
    std::uint32_t DataType() const override { return info.featureDataType; }
    PxnFeatureInfo Info() const override { return info; }

protected:
    explicit Feature(const PxnFeatureInfo& featureInfo) : info(featureInfo) {}

    /// Success when the feature can be read (written) now, PxnErrInvalidAccess when not.
    PxnError RequireReadable();
    PxnError RequireWritable();

private:
    const PxnFeatureInfo info;
};

} // namespace genicam
