// feature_test.cpp - reading, describing and writing one feature
#include "sdk/feature.h"

#include "tests/module/sdk/loaded_api.h"

#include <optional>

using namespace pyxen;

namespace {

class FeatureTest : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        Camera().Put(scripted::IntFeature("Width", 640, 16, 2048, 4));
        Camera().Put(scripted::FloatFeature("Gain", 1.5, -1.0, 24.0));
        Camera().Put(scripted::EnumFeature(
            "Format", "Mono8",
            {{.name = "Mono8"}, {.name = "Mono10", .available = false}, {.name = "RGB8"}}));
        Camera().Put(scripted::StringFeature("Label", "left", 8));
        Camera().Put(scripted::BoolFeature("Flip", true));
        Camera().Put(scripted::CommandFeature("Start"));
        Camera().Put(scripted::RawFeature("Blob", {'\x01', '\xFF'}));
    }

    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }
    Feature At(const char* name, FeatureType type) {
        return {api, scripted::CameraHandle(), name, type};
    }
    /// The value that is read, which must succeed with the calls of `entry` alone.
    FeatureValue Read(const char* name, FeatureType type, const std::string& entry) {
        FeatureValue value;
        sdk.ClearCalls();
        EXPECT_EQ(At(name, type).Read(value), PxnErrSuccess);
        EXPECT_EQ(sdk.Calls({entry}).size(), sdk.Calls().size());
        return value;
    }
    /// The step at which reading fails.
    std::optional<FeatureStep> FailedStep(const Feature& feature, PxnError expected) {
        FeatureValue value = FeatureBytes{7};
        FeatureStep step{};
        const PxnError result = feature.Read(value, &step);
        EXPECT_EQ(result, expected);
        EXPECT_EQ(value, FeatureValue(FeatureBytes{7})) << "changed by a failure";
        return result == PxnErrSuccess ? std::nullopt : std::optional(step);
    }
};

TEST_F(FeatureTest, ReadsTheValueOfItsType) {
    EXPECT_EQ(Read("Width", FeatureType::kInteger, "PxnFeatureIntGet"),
              FeatureValue(std::int64_t{640}));
    EXPECT_EQ(Read("Gain", FeatureType::kFloat, "PxnFeatureFloatGet"), FeatureValue(1.5));
    EXPECT_STREQ(
        Read("Format", FeatureType::kEnumeration, "PxnFeatureEnumGet").Get<EnumEntry>().name,
        "Mono8");
    EXPECT_EQ(Read("Label", FeatureType::kText, "PxnFeatureStringGet"),
              FeatureValue(std::string("left")));
    EXPECT_EQ(Read("Flip", FeatureType::kBoolean, "PxnFeatureBoolGet"), FeatureValue(true));
    EXPECT_EQ(Read("Blob", FeatureType::kBytes, "PxnFeatureRaw"),
              FeatureValue(FeatureBytes{0x01, 0xFF}));
}

TEST_F(FeatureTest, KeepsTheSdksPointerOfAnEntry) {
    FeatureRange range;
    ASSERT_EQ(At("Format", FeatureType::kEnumeration).Range(range), PxnErrSuccess);
    const FeatureValue value = Read("Format", FeatureType::kEnumeration, "PxnFeatureEnumGet");
    EXPECT_EQ(value.Get<EnumEntry>().name, range.entries.at(0));
}

TEST_F(FeatureTest, HasNothingToReadInOtherTypes) {
    for (const FeatureType type : {FeatureType::kUnknown, FeatureType::kCommand, FeatureType::kNone,
                                   static_cast<FeatureType>(77)}) {
        EXPECT_EQ(FailedStep(At("Start", type), PxnErrWrongType), FeatureStep::kContent);
        FeatureRange range;
        EXPECT_EQ(At("Start", type).Range(range), PxnErrSuccess);
    }
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(FeatureTest, SaysAtWhichStepReadingFailed) {
    const Feature width = At("Width", FeatureType::kInteger);
    const Feature label = At("Label", FeatureType::kText);
    const Feature blob = At("Blob", FeatureType::kBytes);
    sdk.Fail("PxnFeatureIntGet", PxnErrIO);
    EXPECT_EQ(FailedStep(width, PxnErrIO), FeatureStep::kContent);
    sdk.Fail("PxnFeatureStringGet", PxnErrIO);
    EXPECT_EQ(FailedStep(label, PxnErrIO), FeatureStep::kLength);
    sdk.Fail("PxnFeatureStringGet", PxnErrIO, 2);
    EXPECT_EQ(FailedStep(label, PxnErrIO), FeatureStep::kContent);
    sdk.Fail("PxnFeatureRawLengthQuery", PxnErrIO);
    EXPECT_EQ(FailedStep(blob, PxnErrIO), FeatureStep::kLength);
    sdk.Fail("PxnFeatureRawGet", PxnErrIO);
    EXPECT_EQ(FailedStep(blob, PxnErrIO), FeatureStep::kContent);
}

TEST_F(FeatureTest, KnowsTheRangeOfItsType) {
    FeatureRange range;
    EXPECT_EQ(At("Width", FeatureType::kInteger).Range(range), PxnErrSuccess);
    EXPECT_EQ(range.LimitsOf<std::int64_t>().least, 16);
    EXPECT_EQ(range.LimitsOf<std::int64_t>().most, 2048);
    EXPECT_EQ(At("Gain", FeatureType::kFloat).Range(range), PxnErrSuccess);
    EXPECT_EQ(range.LimitsOf<double>().least, -1.0);
    EXPECT_EQ(range.LimitsOf<double>().most, 24.0);
    EXPECT_EQ(At("Label", FeatureType::kText).Range(range), PxnErrSuccess);
    EXPECT_EQ(range.longestText, 8u);
    EXPECT_EQ(At("Format", FeatureType::kEnumeration).Range(range), PxnErrSuccess);
    EXPECT_EQ(Texts(range.entries.begin(), range.entries.end()),
              (Texts{"Mono8", "Mono10", "RGB8"}));
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureIntRangeQuery(camera0, \"Width\")",
                                      "PxnFeatureFloatRangeQuery(camera0, \"Gain\")",
                                      "PxnFeatureStringMaxlengthQuery(camera0, \"Label\")",
                                      "PxnFeatureEnumRangeQuery(camera0, \"Format\", null, 0)",
                                      "PxnFeatureEnumRangeQuery(camera0, \"Format\", array, 3)"}));
    EXPECT_EQ(At("Flip", FeatureType::kBoolean).Range(range), PxnErrSuccess);
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(FeatureTest, SaysAtWhichStepTheEntriesFailedAndKeepsTheRange) {
    const Feature format = At("Format", FeatureType::kEnumeration);
    FeatureRange range;
    range.entries = {"before"};
    FeatureStep step{};
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrIO, 2);
    EXPECT_EQ(format.Range(range, &step), PxnErrIO);
    EXPECT_EQ(step, FeatureStep::kContent);
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrTimeout);
    EXPECT_EQ(format.Range(range, &step), PxnErrTimeout);
    EXPECT_EQ(step, FeatureStep::kLength);
    EXPECT_EQ(range.entries, std::vector<const char*>{"before"});
}

TEST_F(FeatureTest, ListsNoMoreEntriesThanTheSdkFilled) {
    FeatureRange range;
    sdk.Data().foundAnswers["PxnFeatureEnumRangeQuery"] = {3, 1};
    EXPECT_EQ(At("Format", FeatureType::kEnumeration).Range(range), PxnErrSuccess);
    EXPECT_EQ(Texts(range.entries.begin(), range.entries.end()), Texts{"Mono8"});
    Camera()["Format"].entries.clear();
    EXPECT_EQ(At("Format", FeatureType::kEnumeration).Range(range), PxnErrSuccess);
    EXPECT_TRUE(range.entries.empty());
}

TEST_F(FeatureTest, KnowsItsAccess) {
    bool readable = false;
    bool writable = true;
    Camera()["Width"].writeable = false;
    EXPECT_EQ(At("Width", FeatureType::kInteger).Access(readable, writable), PxnErrSuccess);
    EXPECT_TRUE(readable);
    EXPECT_FALSE(writable);
    Camera()["Gain"].readable = false;
    EXPECT_EQ(At("Gain", FeatureType::kFloat).Access(readable, writable), PxnErrSuccess);
    EXPECT_FALSE(readable);
    EXPECT_TRUE(writable);
}

TEST_F(FeatureTest, AnAccessThatComesWithAFailureIsNone) {
    api.PxnFeatureAccessQuery = [](PxnHandle, const char*, PxnBool* canRead,
                                   PxnBool* canWrite) -> PxnError {
        *canRead = 1;
        *canWrite = 1;
        return PxnErrIO;
    };
    bool readable = true;
    bool writable = true;
    EXPECT_EQ(At("Width", FeatureType::kInteger).Access(readable, writable), PxnErrIO);
    EXPECT_FALSE(readable);
    EXPECT_FALSE(writable);
}

TEST_F(FeatureTest, KnowsIncrementAndAvailability) {
    std::int64_t increment = 0;
    EXPECT_EQ(At("Width", FeatureType::kInteger).Increment(increment), PxnErrSuccess);
    EXPECT_EQ(increment, 4);
    EXPECT_EQ(At("Gain", FeatureType::kFloat).Increment(increment), PxnErrWrongType);
    const Feature format = At("Format", FeatureType::kEnumeration);
    bool available = false;
    EXPECT_EQ(format.IsAvailable("Mono8", available), PxnErrSuccess);
    EXPECT_TRUE(available);
    EXPECT_EQ(format.IsAvailable("Mono10", available), PxnErrSuccess);
    EXPECT_FALSE(available);
    available = true;
    EXPECT_EQ(format.IsAvailable("Absent", available), PxnErrNotFound);
    EXPECT_FALSE(available);
}

TEST_F(FeatureTest, WritesByTheTypeOfTheValue) {
    const FeatureBytes bytes = {0x10, 0x20};
    EXPECT_EQ(At("Width", FeatureType::kInteger).Write(std::int64_t{800}), PxnErrSuccess);
    EXPECT_EQ(At("Gain", FeatureType::kFloat).Write(2.5), PxnErrSuccess);
    EXPECT_EQ(At("Format", FeatureType::kEnumeration).Write(EnumEntry{"RGB8"}), PxnErrSuccess);
    EXPECT_EQ(At("Label", FeatureType::kText).Write(std::string("right")), PxnErrSuccess);
    EXPECT_EQ(At("Flip", FeatureType::kBoolean).Write(false), PxnErrSuccess);
    EXPECT_EQ(At("Blob", FeatureType::kBytes).Write(bytes), PxnErrSuccess);
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureIntSet(camera0, \"Width\", 800)",
                                      "PxnFeatureFloatSet(camera0, \"Gain\", 2.5)",
                                      "PxnFeatureEnumSet(camera0, \"Format\", \"RGB8\")",
                                      "PxnFeatureStringSet(camera0, \"Label\", \"right\")",
                                      "PxnFeatureBoolSet(camera0, \"Flip\", 0)",
                                      "PxnFeatureRawSet(camera0, \"Blob\", [10 20])"}));
    EXPECT_EQ(At("Width", FeatureType::kInteger).Write(1.0), PxnErrWrongType);
    EXPECT_EQ(At("Width", FeatureType::kInteger).Write(std::int64_t{1}), PxnErrInvalidValue);
}

TEST_F(FeatureTest, RunsCommands) {
    const Feature start = At("Start", FeatureType::kCommand);
    Camera()["Start"].doneSequence = {false, true};
    EXPECT_EQ(start.Run(), PxnErrSuccess);
    bool done = true;
    EXPECT_EQ(start.IsDone(done), PxnErrSuccess);
    EXPECT_FALSE(done);
    EXPECT_EQ(start.IsDone(done), PxnErrSuccess);
    EXPECT_TRUE(done);
    sdk.Fail("PxnFeatureCommandRun", PxnErrIO);
    EXPECT_EQ(start.Run(), PxnErrIO);
    sdk.Fail("PxnFeatureCommandIsDone", PxnErrIO);
    EXPECT_EQ(start.IsDone(done), PxnErrIO);
    EXPECT_FALSE(done);
}

TEST(FeatureValues, KnowTheirType) {
    EXPECT_EQ(FeatureValue().Type(), FeatureType::kInteger);
    EXPECT_EQ(FeatureValue(std::int64_t{1}).Type(), FeatureType::kInteger);
    EXPECT_EQ(FeatureValue(1.0).Type(), FeatureType::kFloat);
    EXPECT_EQ(FeatureValue(EnumEntry{"On"}).Type(), FeatureType::kEnumeration);
    EXPECT_EQ(FeatureValue(std::string("On")).Type(), FeatureType::kText);
    EXPECT_EQ(FeatureValue(true).Type(), FeatureType::kBoolean);
    EXPECT_EQ(FeatureValue(FeatureBytes{}).Type(), FeatureType::kBytes);
    EXPECT_NE(FeatureValue(true).GetIf<bool>(), nullptr);
    EXPECT_EQ(FeatureValue(true).GetIf<double>(), nullptr);
    // A text that turned into a boolean would be written as one.
    static_assert(!std::is_constructible_v<FeatureValue, const char*>);
    static_assert(!std::is_constructible_v<FeatureValue, int>);
}

/// A value as a log line takes it.
std::string Shown(const FeatureValue& value) {
    std::string text = "nothing";
    value.Show("No", "Yes", [&](auto shown) {
        if constexpr (std::is_arithmetic_v<decltype(shown)>) {
            text = (std::is_same_v<decltype(shown), double> ? "f" : "i") + std::to_string(shown);
        } else {
            text = shown;
        }
    });
    return text;
}

TEST(FeatureValues, AreShownAsNumbersAndTexts) {
    EXPECT_EQ(Shown(std::int64_t{-3}), "i-3");
    EXPECT_EQ(Shown(0.5), "f0.500000");
    EXPECT_EQ(Shown(EnumEntry{"On"}), "On");
    EXPECT_EQ(Shown(std::string("a text")), "a text");
    EXPECT_EQ(Shown(true), "Yes");
    EXPECT_EQ(Shown(false), "No");
    EXPECT_EQ(Shown(FeatureBytes{1}), "nothing");
}

TEST(FeatureRanges, ContainByTheTypeOfTheValue) {
    const std::string copy = "On";
    FeatureRange range;
    range.integers = {-2, 3};
    range.floats = {0.5, 1.5};
    range.longestText = 2;
    range.entries = {nullptr, "Off", "On"};
    EXPECT_TRUE(range.Contains(std::int64_t{-2}));
    EXPECT_TRUE(range.Contains(std::int64_t{3}));
    EXPECT_FALSE(range.Contains(std::int64_t{4}));
    EXPECT_TRUE(range.Contains(0.5));
    EXPECT_FALSE(range.Contains(1.6));
    EXPECT_TRUE(range.Contains(EnumEntry{copy.c_str()}));
    EXPECT_FALSE(range.Contains(EnumEntry{"on"}));
    EXPECT_FALSE(range.Contains(EnumEntry{}));
    EXPECT_TRUE(range.Contains(std::string("ab")));
    EXPECT_FALSE(range.Contains(std::string("abc")));
    EXPECT_TRUE(range.Contains(true));
    EXPECT_TRUE(range.Contains(FeatureBytes{1, 2, 3}));
}

TEST(TypeTables, HaveARowForEachOfTheFirstTypes) {
    constexpr TypeTable<int> kAll = {{1, 2, 3, 4, 5}};
    EXPECT_EQ(*kAll.Find(FeatureType::kInteger), 1);
    EXPECT_EQ(*kAll.Find(FeatureType::kBoolean), 5);
    EXPECT_EQ(kAll.Find(FeatureType::kUnknown), nullptr);
    EXPECT_EQ(kAll.Find(FeatureType::kCommand), nullptr);
    constexpr TypeTable<int, 4> kWithRange = {{1, 2, 3, 4}};
    EXPECT_EQ(*kWithRange.Find(FeatureType::kText), 4);
    EXPECT_EQ(kWithRange.Find(FeatureType::kBoolean), nullptr);
}

} // namespace
