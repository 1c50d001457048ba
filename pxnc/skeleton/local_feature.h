// local_feature.h - features that are made of small functions
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

/// What a local feature's description record says; the rest of the record is fixed. The texts are
/// copied to the pool.
struct LocalDescription {
    const char* name;                                 ///< unique in its module
    const char* category;                             ///< path that begins with '/'
    const char* displayName;                          ///< for people
    const char* description;                          ///< one sentence, the tooltip as well
    std::uint32_t visibility = PxnVisibilityBeginner; ///< PxnVisibility value
    const char* unit = "";                            ///< of the value; empty for none
    const char* representation = "";                  ///< as PxnFeatureInfo has it
};

/// Makes features of the modules that no camera describes (system, transport layers, interfaces,
/// local devices, streams) from small functions. A feature without a writing function is
/// read-only. The functions run with the module's mutex held; what they return is the call's
/// result.
class LocalFeatures {
public:
    /// Stores the present value.
    template <typename T>
    using Reader = std::function<PxnError(T& value)>;
    /// Takes a value that is within the limits.
    template <typename T>
    using Writer = std::function<PxnError(const T& value)>;
    /// Runs a command, which is done when it returns.
    using Action = std::function<PxnError()>;

    /// Of an integer.
    struct IntLimits {
        std::int64_t min = std::numeric_limits<std::int64_t>::min(); ///< included
        std::int64_t max = std::numeric_limits<std::int64_t>::max(); ///< included
        std::int64_t increment = 1;                                  ///< from `min` on
    };
    /// Of a float, both included.
    struct FloatLimits {
        double min; ///< the least value
        double max; ///< the greatest
    };
    /// An entry of an enumeration with the number behind it.
    struct Entry {
        const char* name;   ///< copied to the pool
        std::int64_t value; ///< what the reading function stores for it
    };

    /// Both must outlive the features, which are appended to the list.
    LocalFeatures(TextPool& textPool, std::vector<std::unique_ptr<DescribedFeature>>& featureList)
        : texts(textPool), features(featureList) {}

    /// A text that only the SDK changes.
    void AddText(const LocalDescription& description, Reader<std::string> read);
    /// A text that never changes.
    void AddText(const LocalDescription& description, const std::string& value);
    /// An integer with fixed limits.
    void AddInt(const LocalDescription& description, const IntLimits& limits,
                Reader<std::int64_t> read, Writer<std::int64_t> write = {});
    /// A float; `limits` is called at every use.
    void AddFloat(const LocalDescription& description, Reader<FloatLimits> limits,
                  Reader<double> read, Writer<double> write = {});
    /// A boolean.
    void AddBool(const LocalDescription& description, Reader<bool> read, Writer<bool> write = {});
    /// An enumeration, all of whose entries are available; it is unreadable while `read` fails.
    void AddEnum(const LocalDescription& description, std::vector<Entry> entries,
                 Reader<std::int64_t> read);
    /// A command that can always be run.
    void AddCommand(const LocalDescription& description, Action run);

private:
    PxnFeatureInfo Describe(const LocalDescription& description, std::uint32_t dataType,
                            std::uint32_t flags) const;

    TextPool& texts;
    std::vector<std::unique_ptr<DescribedFeature>>& features;
};

} // namespace skeleton
