// local_feature.h - features that this library computes itself
#pragma once

#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/text_pool.h"

#include <functional>
#include <limits>
#include <memory>

namespace genicam {

/// What a local feature's description record says; the rest of the record is fixed.
struct LocalDescription {
    const char* name;
    const char* category;
    const char* displayName;
    const char* description;
    uint32_t visibility = PxnVisibilityBeginner;
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
        int64_t min = std::numeric_limits<int64_t>::min();
        int64_t max = std::numeric_limits<int64_t>::max();
        int64_t increment = 1;
    };
    struct FloatLimits {
        double min;
        double max;
    };
    /// An entry of an enumeration with the number behind it.
    struct Entry {
        const char* name;
        int64_t value;
    };

    LocalFeatures(TextPool& textPool, std::vector<std::unique_ptr<Feature>>& featureList)
        : texts(textPool), features(featureList) {}

    void AddText(const LocalDescription& description, Reader<std::string> read);
    /// A text that never changes.
    void AddText(const LocalDescription& description, const std::string& value);
    void AddInt(const LocalDescription& description, const IntLimits& limits, Reader<int64_t> read,
                Writer<int64_t> write = {});
    /// `limits` is asked again at every use.
    void AddFloat(const LocalDescription& description, Reader<FloatLimits> limits,
                  Reader<double> read, Writer<double> write = {});
    void AddBool(const LocalDescription& description, Reader<bool> read, Writer<bool> write = {});
    void AddEnum(const LocalDescription& description, std::vector<Entry> entries,
                 Reader<int64_t> read);
    void AddCommand(const LocalDescription& description, Action run);

private:
    PxnFeatureInfo Describe(const LocalDescription& description, uint32_t dataType,
                            uint32_t flags) const;

    TextPool& texts;
    std::vector<std::unique_ptr<Feature>>& features;
};

} // namespace genicam
