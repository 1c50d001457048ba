// feature_tree_test.cpp - the categories of a description
#include "pxnc/genicam/feature_tree.h"

#include "tests/pxnc/genicam/memory_device.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace genicam_test {
namespace {

/// Categories C1 to C`depth` inside one another, each with a feature: F1 to F`depth`.
std::size_t CountNested(unsigned depth) {
    std::string text = "<RegisterDescription ModelName=\"M\" VendorName=\"V\">"
                       "<Category Name=\"Root\"><pFeature>C1</pFeature></Category>";
    for (unsigned at = 1; at <= depth; ++at) {
        const std::string own = std::to_string(at);
        text += "<Category Name=\"C" + own + "\"><pFeature>F" + own + "</pFeature><pFeature>C" +
                std::to_string(at + 1) + "</pFeature></Category><Integer Name=\"F" + own +
                "\"><Value>1</Value></Integer>";
    }
    const auto device = MakeMemoryDevice(text + "</RegisterDescription>");
    skeleton::TextPool texts;
    std::vector<std::unique_ptr<genicam::Feature>> features;
    genicam::AppendDescribedFeatures(texts, arv_device_get_genicam(device.get()), features);
    return features.size();
}

TEST(FeatureTree, EndsAtTheDeepestCategory) {
    EXPECT_EQ(CountNested(10), 10u);
    EXPECT_EQ(CountNested(64), 64u);
    EXPECT_EQ(CountNested(65), 64u);
    EXPECT_EQ(CountNested(50000), 64u);
}

} // namespace
} // namespace genicam_test
