// node_feature_test.cpp - features of descriptions that cameras should not have
#include "pxnc/genicam/node_feature.h"

#include "pxnc/genicam/feature_tree.h"
#include "tests/pxnc/genicam/memory_device.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace genicam_test {
namespace {

/// The features of a description whose root category has the feature "A".
class DescribedFeatures : public testing::Test {
protected:
    genicam::Feature& Make(const std::string& nodes) {
        device = MakeMemoryDevice("<RegisterDescription ModelName=\"M\" VendorName=\"V\">"
                                  "<Category Name=\"Root\"><pFeature>A</pFeature></Category>" +
                                      nodes + "</RegisterDescription>",
                                  "x");
        genicam::AppendDescribedFeatures(texts, arv_device_get_genicam(device.get()), features);
        EXPECT_EQ(features.size(), 1u);
        return *features.at(0);
    }

    genicam::ObjectOwner<ArvDevice> device;
    skeleton::TextPool texts;
    std::vector<std::unique_ptr<genicam::Feature>> features;
};

TEST_F(DescribedFeatures, EntriesWithoutANameAreLeftOut) {
    genicam::Feature& choice =
        Make("<Enumeration Name=\"A\"><EnumEntry><Value>1</Value></EnumEntry>"
             "<EnumEntry Name=\"Second\"><Value>2</Value></EnumEntry>"
             "<Value>1</Value></Enumeration>");
    std::vector<const char*> entries;
    EXPECT_EQ(choice.GetEnumEntries(entries), PxnErrSuccess);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_STREQ(entries[0], "Second");
    bool isAvailable = false;
    EXPECT_EQ(choice.IsEnumEntryAvailable("Second", isAvailable), PxnErrSuccess);
    EXPECT_EQ(choice.IsEnumEntryAvailable("First", isAvailable), PxnErrNotFound);
    const char* current = nullptr;
    EXPECT_EQ(choice.GetEnum(current), PxnErrInvalidValue) << "the present entry has no name";
}

TEST_F(DescribedFeatures, ATextThatCannotBeReadIsEmpty) {
    genicam::Feature& text = Make("<StringReg Name=\"A\"><Address>0x48</Address><Length>32</Length>"
                                  "<AccessMode>RW</AccessMode><pPort>Nothing</pPort></StringReg>");
    std::string value = "before";
    EXPECT_NE(text.GetString(value), PxnErrSuccess);
    EXPECT_EQ(value, "");
}

TEST_F(DescribedFeatures, ATextMayFillItsRegister) {
    genicam::Feature& text = Make("<StringReg Name=\"A\"><Address>0x48</Address><Length>32</Length>"
                                  "<AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>"
                                  "<Port Name=\"Device\"/>");
    std::string value;
    EXPECT_EQ(text.GetString(value), PxnErrSuccess);
    EXPECT_EQ(value, std::string(32, 'x'));
}

} // namespace
} // namespace genicam_test
