// module_test.cpp - stored values of a module without selectors of its own
#include "pxnc/skeleton/module.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace skeleton_tests {
namespace {

using skeleton::StoredValue;

/// An integer with a limit that the test sets.
class PlainInt : public skeleton::Feature {
public:
    explicit PlainInt(const char* featureName) {
        info.name = featureName;
        info.featureDataType = PxnFeatureDataInt;
        info.featureFlags = PxnFeatureFlagRead | PxnFeatureFlagWrite;
        info.isStreamable = 1;
    }

    std::uint32_t DataType() const override { return PxnFeatureDataInt; }
    PxnFeatureInfo Info() const override { return info; }
    PxnError GetAccess(bool& readable, bool& writable) override {
        readable = true;
        writable = isWritable;
        return PxnErrSuccess;
    }
    PxnError GetInt(std::int64_t& present) override {
        present = value;
        return PxnErrSuccess;
    }
    PxnError SetInt(std::int64_t wanted) override {
        if (wanted > *limit) {
            return PxnErrInvalidValue;
        }
        value = wanted;
        return PxnErrSuccess;
    }

    PxnFeatureInfo info{};
    bool isWritable = true;
    std::int64_t value = 1;
    const std::int64_t unlimited = 1000;
    const std::int64_t* limit = &unlimited;
};

class PlainModule : public skeleton::Module {
public:
    std::vector<PxnFeatureInfo> ListFeatures() override {
        return {width.Info(), offset.Info(), serial.Info()};
    }
    PxnError With(const char* name,
                  skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) override {
        for (PlainInt* one : {&width, &offset, &serial}) {
            if (std::string(one->info.name) == name) {
                return use(*one);
            }
        }
        return PxnErrNotFound;
    }
    void OnWritten(const char* name) override { written.emplace_back(name); }

    PlainInt width{"Width"};
    PlainInt offset{"Offset"};
    PlainInt serial{"Serial"};
    std::vector<std::string> written;
};

std::map<std::string, std::string> AsMap(const std::vector<StoredValue>& values) {
    std::map<std::string, std::string> map;
    for (const StoredValue& one : values) {
        map[one.feature] = one.value;
    }
    return map;
}

TEST(StoredValues, AreThoseOfFeaturesThatCanBeReadAndWritten) {
    PlainModule module;
    module.serial.isWritable = false;
    module.offset.value = 7;
    EXPECT_EQ(AsMap(module.GetStoredValues()),
              (std::map<std::string, std::string>{{"Width", "1"}, {"Offset", "7"}}));
}

TEST(StoredValues, AreThoseOfStreamableFeaturesWhereThereAreAny) {
    PlainModule module;
    module.offset.info.isStreamable = 0;
    module.serial.info.isStreamable = 0;
    EXPECT_EQ(AsMap(module.GetStoredValues()),
              (std::map<std::string, std::string>{{"Width", "1"}}));
}

TEST(StoredValues, AreAppliedAgainWhenAnotherOneForbadeThem) {
    PlainModule module;
    module.offset.limit = &module.width.value; // the offset may be as large as the width
    EXPECT_EQ(module.ApplyStoredValues({{"Offset", {}, "50"}, {"Width", {}, "60"}}), 0);
    EXPECT_EQ(module.offset.value, 50);
    EXPECT_EQ(module.width.value, 60);
    EXPECT_EQ(module.written, (std::vector<std::string>{"Width", "Offset"}));
}

TEST(StoredValues, ChangeNothingWhenOneIsRefused) {
    PlainModule module;
    EXPECT_EQ(module.ApplyStoredValues({{"Width", {}, "60"}, {"Offset", {}, "5000"}}),
              PxnErrInvalidValue);
    EXPECT_EQ(module.width.value, 1);
    EXPECT_EQ(module.offset.value, 1);
    EXPECT_EQ(module.ApplyStoredValues({{"Width", {}, "60"}, {"Depth", {}, "1"}}),
              PxnErrInvalidValue);
    EXPECT_EQ(module.width.value, 1);
    EXPECT_EQ(module.ApplyStoredValues({{"Width", {}, "wide"}}), PxnErrInvalidValue);
}

} // namespace
} // namespace skeleton_tests
