// described_feature.h - a feature with a fixed description
#pragma once

#include "pxnc/skeleton/feature.h"

#include <cstdint>

namespace skeleton {

/// A feature whose description never changes.
class DescribedFeature : public Feature {
public:
    /// A text of the pool.
    const char* Name() const { return info.name; }
    std::uint32_t DataType() const override { return info.featureDataType; }
    PxnFeatureInfo Info() const override { return info; }

protected:
    /// The texts of the description are those of the pool.
    explicit DescribedFeature(const PxnFeatureInfo& featureInfo) : info(featureInfo) {}

    ///@{
    /// Success when the feature can be read (written) now, PxnErrInvalidAccess when not.
    PxnError RequireReadable();
    PxnError RequireWritable();
    ///@}

private:
    const PxnFeatureInfo info;
};

} // namespace skeleton
