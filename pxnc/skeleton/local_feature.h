// local_feature.h - features that this library computes itself
#pragma once

#include "pxnc/skeleton/described_feature.h"
#include "pxnc/skeleton/text_pool.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace skeleton {

/// What a local feature's description record says; the rest of the record is fixed.
struct LocalDescription {
    const char* name;
    const char* category;
    const char* displayName;
    const char* description;
    std::uint32_t visibility = PxnVisibilityBeginner;
    const char* unit = "";
    const char* representation = "";
};

/// Makes features of the modules that no camera describes (system, transport layers, interfaces,
/// local devices, streams) from small functions. A feature without a writing function is
/// read-only. The functions run with the module's mutex held.
class LocalFeatures {
public:
    template <typename T>
    using Reader = std::function<PxnError(T& value)>;
    template <typename T>
    using Writer = std::function<PxnError(const T& value)>;
    using Action = std::function<PxnError()>;

    struct IntLimits {
        std::int64_t min = std::numeric_limits<std::int64_t>::min();
        std::int64_t max = std::numeric_limits<std::int64_t>::max();
        std::int64_t increment = 1;
    };
    struct FloatLimits {
        double min;
        double max;
    };
    /// An entry of an enumeration with the number behind it.
    struct Entry {
        const char* name;
        std::int64_t value;
    };

    LocalFeatures(TextPool& textPool, std::vector<std::unique_ptr<DescribedFeature>>& featureList)
        : texts(textPool), features(featureList) {}

    void AddText(const LocalDescription& description, Reader<std::string> read);
    /// A text that never changes.
    void AddText(const LocalDescription& description, const std::string& value);
    void AddInt(const LocalDescription& description, const IntLimits& limits,
                Reader<std::int64_t> read, Writer<std::int64_t> write = {});
    /// `limits` is called at every use.
    void AddFloat(const LocalDescription& description, Reader<FloatLimits> limits,
                  Reader<double> read, Writer<double> write = {});
    void AddBool(const LocalDescription& description, Reader<bool> read, Writer<bool> write = {});
    void AddEnum(const LocalDescription& description, std::vector<Entry> entries,
                 Reader<std::int64_t> read);
    void AddCommand(const LocalDescription& description, Action run);

private:
    PxnFeatureInfo Describe(const LocalDescription& description, std::uint32_t dataType,
                            std::uint32_t flags) const;

    TextPool& texts;
    std::vector<std::unique_ptr<DescribedFeature>>& features;
};

} // namespace skeleton
