// feature_reader_test.cpp - what the feature control dialog reads of a feature
#include "ui/feature_reader.h"

#include "tests/module/sync/engine_fixture.h"
#include "ui/feature_leaf.h"

using namespace pyxen;

namespace {

class FeatureAccess : public EngineFixture {
protected:
    void SetUp() override {
        EngineFixture::SetUp();
        Camera().Put(scripted::IntFeature("Width", 640, 16, 2048));
        Camera().Put(scripted::FloatFeature("Gain", 1.5, 0.0, 24.0));
        Camera().Put(scripted::EnumFeature(
            "Format", "Mono8",
            {{.name = "Mono8"}, {.name = "Mono10", .available = false}, {.name = "RGB8"}}));
        Camera().Put(scripted::BoolFeature("Flip", true));
        Camera().Put(scripted::StringFeature("Label", "left", 8));
        Camera().Put(scripted::CommandFeature("Start"));
        Device().Put(scripted::IntFeature("LineLength", 0, 0, 1000));
        Fill();
    }

    Feature At(const char* name) { return camera.GetFeature(*camera.Find(name)); }
    std::string Range(const char* name) {
        return reader.RangeText(At(name), camera.Find(name)->unit);
    }
    /// The one log line, which must be that of `operation`, without the meaning of the SDK's code.
    std::string Line(const std::string& operation) {
        const Texts lines = sink.Take();
        const std::string tag = "0 CKVNPyxenFeatureCtrlDialog::" + operation + ": ";
        if (lines.empty() || !lines.back().starts_with(tag)) {
            return "not " + tag;
        }
        const std::string line = lines.back().substr(tag.size());
        return line.substr(0, line.find_first_of(".:(,"));
    }

    FeatureReader reader{&sink};
};

TEST_F(FeatureAccess, ReadsForms) {
    const auto width = reader.ToEdit(At("Width"));
    ASSERT_TRUE(width);
    EXPECT_EQ(width->range.integers.least, 16);
    EXPECT_EQ(width->range.integers.most, 2048);
    EXPECT_EQ(width->value, FeatureValue(std::int64_t{640}));
    const auto gain = reader.ToRefresh(At("Gain"));
    ASSERT_TRUE(gain);
    EXPECT_EQ(gain->range.floats.most, 24.0);
    EXPECT_EQ(gain->value, FeatureValue(1.5));
    const auto format = reader.ToEdit(At("Format"));
    ASSERT_TRUE(format);
    ASSERT_EQ(format->range.entries.size(), 3u);
    EXPECT_STREQ(format->range.entries[0], "Mono8");
    EXPECT_EQ(format->range.entries[1], nullptr);
    EXPECT_STREQ(format->value.Get<EnumEntry>().name, "Mono8");
    sdk.ClearCalls();
    EXPECT_EQ(reader.ToEdit(At("Flip"))->value, FeatureValue(true));
    EXPECT_EQ(reader.ToEdit(At("Label"))->value, FeatureValue(std::string("left")));
    EXPECT_EQ(reader.ToRefresh(At("Label"))->value, FeatureValue(std::string("left")));
    EXPECT_EQ(sdk.Calls({"PxnFeatureStringMaxlengthQuery"}), Texts{}) << "of no use there";
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureAccess, ReadsNoFormOfATypeWithoutAnEditorForValues) {
    sdk.ClearCalls();
    EXPECT_FALSE(reader.ToEdit(At("Start")));
    EXPECT_FALSE(reader.ToRefresh(At("Start")));
    EXPECT_EQ(sdk.Calls(), Texts{});
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureAccess, ReadsTheFeatureOfALeaf) {
    FeatureLeaf leaf;
    leaf.cache = &camera;
    leaf.handle = scripted::CameraHandle();
    leaf.name = "Width";
    const Feature feature = leaf.In(api, *camera.Find("Width"));
    EXPECT_EQ(feature.Type(), FeatureType::kInteger);
    EXPECT_TRUE(reader.ToEdit(feature));
    leaf.handle = scripted::InterfaceHandle();
    EXPECT_FALSE(reader.ToEdit(leaf.In(api, *camera.Find("Width"))));
    EXPECT_EQ(Line("AttrSelected"), "Failed to get range of integer Width");
}

TEST_F(FeatureAccess, KeepsEveryEntryUnlessAskedForTheAvailableOnes) {
    FeatureRange range;
    ASSERT_TRUE(reader.GetEnumRange(At("Format"), false, range));
    EXPECT_STREQ(range.entries.at(1), "Mono10");
}

TEST_F(FeatureAccess, DescribesRanges) {
    EXPECT_EQ(Range("Width"), "Min: 16, Max: 2048");
    EXPECT_EQ(Range("Gain"), "Min: 0.000000, Max: 24.000000");
    EXPECT_EQ(Range("Format"), "Possible options: Mono8, RGB8");
    EXPECT_EQ(Range("Flip"), "");
    EXPECT_EQ(Range("Label"), "");
    EXPECT_EQ(Range("Start"), "");
    EXPECT_EQ(reader.RangeText(At("Gain"), "dB"), "Min: 0.000000dB, Max: 24.000000dB");
    EXPECT_EQ(reader.RangeText(At("Gain"), nullptr), "Min: 0.000000, Max: 24.000000");
}

TEST_F(FeatureAccess, LeavesOutEntriesOfUnknownAvailability) {
    sdk.Fail("PxnFeatureEnumIsAvailable", PxnErrTimeout);
    EXPECT_EQ(Range("Format"), "Possible options: RGB8");
    EXPECT_EQ(Line("GetEnumRange"), "Failed to get availability of feature Format");
}

TEST_F(FeatureAccess, ReportsEnumerationsWithoutARange) {
    FeatureRange range;
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout);
    EXPECT_FALSE(reader.GetEnumRange(At("Format"), true, range));
    EXPECT_EQ(Line("GetEnumRange"), "Failed to query number of enum entries for feature Format");
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout, 2);
    EXPECT_FALSE(reader.GetEnumRange(At("Format"), true, range));
    EXPECT_EQ(Line("GetEnumRange"), "Failed to enum entry range of feature Format");
    EXPECT_TRUE(range.entries.empty());
}

TEST_F(FeatureAccess, AsksForEntriesEvenWhereThereAreNone) {
    Camera()["Format"].entries.clear();
    FeatureRange range;
    sdk.ClearCalls();
    EXPECT_TRUE(reader.GetEnumRange(At("Format"), true, range));
    EXPECT_TRUE(range.entries.empty());
    EXPECT_EQ(sdk.TakeCalls({"PxnFeatureEnumRangeQuery"}).size(), 2u);
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout, 2);
    EXPECT_FALSE(reader.GetEnumRange(At("Format"), true, range));
    EXPECT_EQ(Line("GetEnumRange"), "Failed to enum entry range of feature Format");
}

TEST_F(FeatureAccess, LeavesARangeEmptyThatCannotBeRead) {
    sdk.Fail("PxnFeatureIntRangeQuery", PxnErrTimeout);
    EXPECT_EQ(Range("Width"), "");
    EXPECT_EQ(Line("AttrSelected"), "Failed to get range of integer Width");
    sdk.Fail("PxnFeatureFloatRangeQuery", PxnErrTimeout);
    EXPECT_EQ(Range("Gain"), "");
    EXPECT_EQ(Line("AttrSelected"), "Failed to get range of float Gain");
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout);
    EXPECT_EQ(Range("Format"), "");
    EXPECT_EQ(Line("AttrSelected"), "Could not query range of enum Format");
}

} // namespace
