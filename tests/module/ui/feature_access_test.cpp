// How the feature control dialog reads and writes features.
#include "tests/module/sync/engine_fixture.h"
#include "ui/feature_reader.h"
#include "ui/feature_writer.h"

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

    FeatureLeaf Leaf(const std::string& name) {
        FeatureLeaf leaf;
        leaf.cache = &camera;
        leaf.handle = scripted::CameraHandle();
        leaf.moduleName = "Camera";
        leaf.name = name;
        return leaf;
    }
    std::string Range(const std::string& name) {
        return reader.RangeText(Leaf(name), *camera.Find(name.c_str()));
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

    FeatureReader reader{api, &sink};
    FeatureWriter writer{api, engine, &sink};
};

TEST_F(FeatureAccess, ReadsForms) {
    const auto width = reader.IntegerToEdit(Leaf("Width"));
    ASSERT_TRUE(width);
    EXPECT_EQ(width->min, 16);
    EXPECT_EQ(width->max, 2048);
    EXPECT_EQ(width->value, 640);
    const auto gain = reader.FloatToRefresh(Leaf("Gain"));
    ASSERT_TRUE(gain);
    EXPECT_EQ(gain->max, 24.0);
    EXPECT_EQ(gain->value, 1.5);
    const auto format = reader.EnumToEdit(Leaf("Format"));
    ASSERT_TRUE(format);
    EXPECT_EQ(format->range.count, 3u);
    EXPECT_STREQ(format->range.entries[0], "Mono8");
    EXPECT_EQ(format->range.entries[1], nullptr);
    EXPECT_STREQ(format->value, "Mono8");
    EXPECT_EQ(reader.BoolToEdit(Leaf("Flip")), true);
    EXPECT_EQ(reader.StringToEdit(Leaf("Label")), "left");
    EXPECT_EQ(reader.StringToRefresh(Leaf("Label")), "left");
    EXPECT_TRUE(reader.IsWriteable(Leaf("Width")));
    Camera().Find("Width")->writeable = false;
    EXPECT_FALSE(reader.IsWriteable(Leaf("Width")));
    EXPECT_FALSE(reader.IsWriteable(Leaf("Nothing")));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureAccess, KeepsEveryEntryUnlessAskedForTheAvailableOnes) {
    EnumRange range;
    ASSERT_TRUE(reader.GetEnumRange(scripted::CameraHandle(), "Format", false, range));
    EXPECT_STREQ(range.entries[1], "Mono10");
}

TEST_F(FeatureAccess, DescribesRanges) {
    EXPECT_EQ(Range("Width"), "Min: 16, Max: 2048");
    EXPECT_EQ(Range("Gain"), "Min: 0.000000, Max: 24.000000");
    EXPECT_EQ(Range("Format"), "Possible options: Mono8, RGB8");
    EXPECT_EQ(Range("Flip"), "");
    EXPECT_EQ(Range("Label"), "");
    EXPECT_EQ(Range("Start"), "");
    PxnFeatureInfo withUnit = *camera.Find("Gain");
    withUnit.unit = "dB";
    EXPECT_EQ(reader.RangeText(Leaf("Gain"), withUnit), "Min: 0.000000dB, Max: 24.000000dB");
}

TEST_F(FeatureAccess, LeavesOutEntriesOfUnknownAvailability) {
    sdk.Fail("PxnFeatureEnumIsAvailable", PxnErrTimeout);
    EXPECT_EQ(Range("Format"), "Possible options: RGB8");
    EXPECT_EQ(Line("GetEnumRange"), "Failed to get availability of feature Format");
}

TEST_F(FeatureAccess, ReportsEnumerationsWithoutARange) {
    EnumRange range;
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout);
    EXPECT_FALSE(reader.GetEnumRange(scripted::CameraHandle(), "Format", true, range));
    EXPECT_EQ(Line("GetEnumRange"), "Failed to query number of enum entries for feature Format");
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout, 2);
    EXPECT_FALSE(reader.GetEnumRange(scripted::CameraHandle(), "Format", true, range));
    EXPECT_EQ(Line("GetEnumRange"), "Failed to enum entry range of feature Format");
    EXPECT_EQ(range.count, 0u);
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

TEST_F(FeatureAccess, WritesAndReadsBack) {
    std::int64_t width = 800;
    EXPECT_TRUE(writer.WriteInteger(Leaf("Width"), width).written);
    EXPECT_EQ(Camera().Find("Width")->intValue, 800);
    double gain = 2.5;
    sdk.OnCall("PxnFeatureFloatGet", [&] { Camera().Find("Gain")->floatValue = 2.25; });
    EXPECT_TRUE(writer.WriteFloat(Leaf("Gain"), gain).written);
    sdk.ClearHooks();
    EXPECT_EQ(gain, 2.25);
    std::string format = "RGB8";
    EXPECT_TRUE(writer.WriteEnum(Leaf("Format"), format).written);
    EXPECT_EQ(format, "RGB8");
    std::string label = "right";
    EXPECT_TRUE(writer.WriteString(Leaf("Label"), label).written);
    EXPECT_EQ(Camera().Find("Label")->text, "right");
    bool flip = false;
    EXPECT_TRUE(writer.WriteBool(Leaf("Flip"), flip).written);
    EXPECT_FALSE(Camera().Find("Flip")->boolValue);
    EXPECT_TRUE(writer.RunCommand(Leaf("Start")).written);
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureAccess, WritesNothingThatTheCheckRefuses) {
    Rules({{"Camera::Width", {"Localdevice::LineLength"}}});
    std::int64_t width = 1500;
    const WriteOutcome outcome = writer.WriteInteger(Leaf("Width"), width);
    EXPECT_FALSE(outcome.written);
    ASSERT_TRUE(outcome.refusal);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
    const BoxText box = FeatureWriter::FailureBox(Leaf("Width"), outcome);
    EXPECT_EQ(box.text, "The value you entered cannot by applied to feature\n"
                        "/Localdevice/Scripted/LineLength");
    EXPECT_EQ(box.caption, "Out of range");
}

TEST_F(FeatureAccess, SaysThatWritingFailed) {
    sdk.Fail("PxnFeatureIntSet", PxnErrTimeout);
    std::int64_t width = 800;
    const WriteOutcome outcome = writer.WriteInteger(Leaf("Width"), width);
    EXPECT_FALSE(outcome.written);
    EXPECT_FALSE(outcome.refusal);
    EXPECT_EQ(Line("OnValueChanged"), "Failed to write integer value Width");
    const BoxText box = FeatureWriter::FailureBox(Leaf("Width"), outcome);
    EXPECT_EQ(box.text, "An error occured while setting \"Width\".");
    EXPECT_EQ(box.caption, "Setting error");
}

} // namespace
