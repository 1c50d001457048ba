// feature_writer_test.cpp - writing a value to a feature
#include "sync/feature_writer.h"

#include "tests/module/sync/engine_fixture.h"

using namespace pyxen;

namespace {

class FeatureWriting : public EngineFixture {
protected:
    void SetUp() override {
        EngineFixture::SetUp();
        Camera().Put(scripted::IntFeature("Width", 640, 16, 2048));
        Camera().Put(scripted::FloatFeature("Gain", 1.5, 0.0, 24.0));
        Camera().Put(
            scripted::EnumFeature("Format", "Mono8", {{.name = "Mono8"}, {.name = "RGB8"}}));
        Camera().Put(scripted::BoolFeature("Flip", true));
        Camera().Put(scripted::StringFeature("Label", "left", 8));
        Camera().Put(scripted::RawFeature("Blob", {'\x01', '\x02'}));
        Device().Put(scripted::IntFeature("LineLength", 0, 0, 1000));
        Fill();
    }

    WriteOutcome Write(const char* name, FeatureValue& value) {
        return writer.Write(camera, camera.GetFeature(*camera.Find(name)), value);
    }
    /// The value that the feature holds after `written` was written.
    FeatureValue Written(const char* name, FeatureValue written) {
        const WriteOutcome outcome = Write(name, written);
        EXPECT_EQ(outcome.step, WriteStep::kDone);
        EXPECT_EQ(outcome.error, PxnErrSuccess);
        return written;
    }

    FeatureWriter writer{engine};
};

TEST_F(FeatureWriting, ChecksWritesAndReadsBack) {
    EXPECT_EQ(Written("Width", std::int64_t{800}), FeatureValue(std::int64_t{800}));
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureAccessQuery(camera0, \"Width\")",
                                      "PxnFeatureIntRangeQuery(camera0, \"Width\")",
                                      "PxnFeatureIntSet(camera0, \"Width\", 800)",
                                      "PxnFeatureIntGet(camera0, \"Width\")"}));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureWriting, TakesEveryType) {
    EXPECT_EQ(Written("Gain", 2.5), FeatureValue(2.5));
    EXPECT_EQ(Written("Label", std::string("right")), FeatureValue(std::string("right")));
    EXPECT_EQ(Camera().Find("Label")->text, "right");
    EXPECT_EQ(Written("Flip", false), FeatureValue(false));
    const std::string copy = "RGB8";
    const FeatureValue entry = Written("Format", EnumEntry{copy.c_str()});
    EXPECT_STREQ(entry.Get<EnumEntry>().name, "RGB8");
    EXPECT_NE(entry.Get<EnumEntry>().name, copy.c_str()) << "not the SDK's own pointer";
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureWriting, WritesBytesWithoutACheck) {
    sdk.ClearCalls();
    EXPECT_EQ(Written("Blob", FeatureBytes{7, 8}), FeatureValue(FeatureBytes{7, 8}));
    EXPECT_EQ(sdk.Calls().front(), "PxnFeatureRawSet(camera0, \"Blob\", [07 08])");
}

TEST_F(FeatureWriting, HandsBackWhatTheCameraMadeOfTheValue) {
    sdk.OnCall("PxnFeatureFloatGet", [&] { Camera().Find("Gain")->floatValue = 2.25; });
    EXPECT_EQ(Written("Gain", 2.5), FeatureValue(2.25));
    sdk.ClearHooks();
}

TEST_F(FeatureWriting, WritesNothingThatTheCheckRefuses) {
    Rules({{"Camera::Width", {"Localdevice::LineLength"}}});
    FeatureValue width = std::int64_t{1500};
    const WriteOutcome outcome = Write("Width", width);
    EXPECT_EQ(outcome.step, WriteStep::kRefused);
    EXPECT_EQ(outcome.refusal.failingFeature, "/Localdevice/Scripted/LineLength");
    EXPECT_EQ(outcome.refusal.reason, "Out of range");
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet", "PxnFeatureIntGet"}), Texts{});
    EXPECT_EQ(width, FeatureValue(std::int64_t{1500}));
}

TEST_F(FeatureWriting, SynchronisesNothing) {
    Rules({{"Camera::Width", {"Localdevice::LineLength"}}});
    Written("Width", std::int64_t{800});
    EXPECT_EQ(Device().Find("LineLength")->intValue, 0);
}

TEST_F(FeatureWriting, SaysWhichStepFailedAndLogsNothing) {
    FeatureValue width = std::int64_t{800};
    sdk.Fail("PxnFeatureIntSet", PxnErrTimeout);
    WriteOutcome outcome = Write("Width", width);
    EXPECT_EQ(outcome.step, WriteStep::kNotWritten);
    EXPECT_EQ(outcome.error, PxnErrTimeout);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntGet"}), Texts{});
    sdk.Fail("PxnFeatureIntGet", PxnErrIO);
    outcome = Write("Width", width);
    EXPECT_EQ(outcome.step, WriteStep::kNotReadBack);
    EXPECT_EQ(outcome.error, PxnErrIO);
    EXPECT_EQ(Camera().Find("Width")->intValue, 800);
    EXPECT_EQ(width, FeatureValue(std::int64_t{800}));
    EXPECT_EQ(sink.Take(), Texts{});
}

} // namespace
