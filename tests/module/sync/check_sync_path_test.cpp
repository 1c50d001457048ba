// check_sync_path_test.cpp - the checks before a write
#include "tests/module/sync/engine_fixture.h"

#include <functional>
#include <ostream>

using namespace pyxen;

namespace {

const std::string kClass = "CMivoraKVNPyxenClass::";
const std::string kOwn = "/Camera/Scripted/Own";
const std::string kFirst = "/Localdevice/Scripted/First";
const std::string kSecond = "/Interface/Scripted/Second";
const std::string kIo = ": Low level IO error in transport layer";

/// One member of the family: a feature that takes the value, one that does not, and the words
/// (%s for the path). What is about ranges is empty for booleans.
struct Member {
    const char* name;
    scripted::Feature fits;
    scripted::Feature refuses; // its range excludes the value
    std::function<SyncCheckResult(SyncEngine&, FeatureCache*, const char*)> check;
    std::string ownProtected; // with %s for the path
    std::string protectedText;
    std::string accessError;
    std::string ownOutOfRange;
    std::string outOfRange;
    std::string rangeQueryError; // with %s for "module::feature"
    const char* rangeQuery;
};

std::ostream& operator<<(std::ostream& stream, const Member& member) {
    return stream << member.name;
}

std::string With(const std::string& format, const std::string& path) {
    const std::size_t place = format.find("%s");
    return place == std::string::npos ? format
                                      : format.substr(0, place) + path + format.substr(place + 2);
}

std::vector<scripted::EnumEntry> OneEntry(const char* name) {
    std::vector<scripted::EnumEntry> entries(1);
    entries[0].name = name;
    return entries;
}

Member IntMember() {
    const std::string tag = kClass + "IntFeatureCheckSyncPath: ";
    return {"Int",
            scripted::IntFeature("", 0, -7, -7),
            scripted::IntFeature("", 0, -6, 9),
            [](SyncEngine& engine, FeatureCache* cache, const char* name) {
                return engine.IntFeatureCheckSyncPath(cache, name, -7);
            },
            tag + "%s cannot be written",
            tag + "Feature %s cannot be written",
            tag + "Cannot query the accessibility of %s",
            tag + "int64 feature (value = -7) wouldn't be applicable to %s (range error)",
            tag + "int64 feature (value = -7) wouldn't be synchable to %s (range error)",
            kClass + "SyncFeature: Cannot query range of int64 feature %s",
            "PxnFeatureIntRangeQuery"};
}

Member FloatMember() {
    const std::string tag = kClass + "FloatFeatureCheckSyncPath: ";
    return {"Float",
            scripted::FloatFeature("", 0, 1.5, 1.5),
            scripted::FloatFeature("", 0, 0, 1.25),
            [](SyncEngine& engine, FeatureCache* cache, const char* name) {
                return engine.FloatFeatureCheckSyncPath(cache, name, 1.5);
            },
            tag + "Feature % cannot be written",
            tag + "Feature %s cannot be written",
            tag + "Cannot query the accessibility of %s",
            tag + "float feature (value = 1.500000) wouldn't be applicable to %s (range error)",
            tag + "float feature (value = 1.500000) wouldn't be synchable to %s (range error)",
            kClass + "SyncFeature: Cannot query range of int64 feature %s",
            "PxnFeatureFloatRangeQuery"};
}

Member EnumMember() {
    const std::string tag = kClass + "EnumFeatureCheckSyncPath: ";
    return {"Enum",
            scripted::EnumFeature("", "On", OneEntry("On")),
            scripted::EnumFeature("", "Off", OneEntry("on")),
            [](SyncEngine& engine, FeatureCache* cache, const char* name) {
                const std::string copy = "On"; // texts count here, not pointers
                return engine.EnumFeatureCheckSyncPath(cache, name, copy.c_str());
            },
            tag + "Feature %s cannot be written",
            tag + "Feature %s cannot be written",
            tag + "Cannot query the accessibility of %s",
            tag + "enum feature (value = On) wouldn't be applicable to %s (range error)",
            tag + "enum feature (value = On) wouldn't be synchable to %s (range error)",
            kClass + "SyncFeature: Cannot query range of enum feature %s",
            "PxnFeatureEnumRangeQuery"};
}

Member StringMember() {
    const std::string tag = kClass + "StringFeatureCheckSyncPath: ";
    return {"String",
            scripted::StringFeature("", "", 5),
            scripted::StringFeature("", "", 4),
            [](SyncEngine& engine, FeatureCache* cache, const char* name) {
                return engine.StringFeatureCheckSyncPath(cache, name, "fives");
            },
            tag + "Feature %s cannot be written",
            tag + "Feature %s cannot be written",
            tag + "Cannot query the accessibility of %s",
            tag + "enum feature (value = fives) wouldn't be applicable to %s (range error)",
            tag + "string feature (value = fives) wouldn't be synchable to %s (range error)",
            kClass + "SyncFeature: Cannot query max length of string-feature %s",
            "PxnFeatureStringMaxlengthQuery"};
}

Member BoolMember() {
    const std::string tag = kClass + "FloatFeatureCheckSyncPath: ";
    return {"Bool",
            scripted::BoolFeature("", false),
            scripted::BoolFeature("", false),
            [](SyncEngine& engine, FeatureCache* cache, const char* name) {
                return engine.BoolFeatureCheckSyncPath(cache, name, true);
            },
            tag + "Feature %s cannot be written",
            tag + "Feature %s cannot be written",
            tag + "Cannot query the accessibility of %s",
            "",
            "",
            "",
            nullptr};
}

class CheckSyncPathTest : public EngineFixture, public testing::WithParamInterface<Member> {
protected:
    void SetUp() override {
        EngineFixture::SetUp();
        Put(Camera(), "Own", GetParam().fits);
        Put(Device(), "First", GetParam().fits);
        Put(Port(), "Second", GetParam().fits);
        Put(Port(), "Third", GetParam().fits);
        Rules({{"CAMERA::own", {"localdevice::First", "Interface::Second", "Interface::Third"}}});
        Fill();
    }
    void TearDown() override {
        for (const char* entry : {"PxnFeatureIntSet", "PxnFeatureFloatSet", "PxnFeatureEnumSet",
                                  "PxnFeatureStringSet", "PxnFeatureBoolSet"}) {
            EXPECT_EQ(sdk.Calls({entry}), Texts{});
        }
    }

    static scripted::Feature& Put(scripted::Module& module, const char* name,
                                  scripted::Feature feature) {
        feature.name = name;
        return module.Put(std::move(feature));
    }
    /// Makes a feature's range exclude the value.
    void Shrink(scripted::Module& module, const char* name) {
        Put(module, name, GetParam().refuses);
    }
    SyncCheckResult Check() { return GetParam().check(engine, &camera, "Own"); }
    void ExpectResult(bool ok, const std::string& failing, const std::string& reason) {
        const SyncCheckResult result = Check();
        EXPECT_EQ(result.ok, ok);
        EXPECT_EQ(result.failingFeature, failing);
        EXPECT_EQ(result.reason, reason);
    }
    /// The features whose access was queried, in order.
    Texts Visited() {
        Texts names;
        for (const std::string& call : sdk.TakeCalls({"PxnFeatureAccessQuery"})) {
            const std::size_t quote = call.find('"') + 1;
            names.push_back(call.substr(quote, call.find('"', quote) - quote));
        }
        return names;
    }
};

/// What needs a feature that does not take the value: there is none for booleans.
class CheckRangeTest : public CheckSyncPathTest {};

TEST_P(CheckSyncPathTest, AcceptsWhatAllFeaturesTake) {
    ExpectResult(true, "- unkown -", "General error");
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(Visited(), (Texts{"Own", "First", "Second", "Third"}));
}

TEST_P(CheckSyncPathTest, AcceptsAFeatureWithoutDependencies) {
    Rules({{"Camera::Own", {}}});
    ExpectResult(true, "- unkown -", "General error");
    Rules({});
    ExpectResult(true, "- unkown -", "General error");
    EXPECT_EQ(Visited(), (Texts{"Own", "Own"}));
}

TEST_P(CheckSyncPathTest, DoesNotFollowTheDependenciesOfADependency) {
    Rules({{"Camera::Own", {"Localdevice::First"}}, {"Localdevice::First", {"Interface::Second"}}});
    Port()["Second"].writeable = false;
    ExpectResult(true, "- unkown -", "General error");
    EXPECT_EQ(Visited(), (Texts{"Own", "First"}));
}

TEST_P(CheckSyncPathTest, EndsAtAFeatureOfUnknownAccess) {
    sdk.FailFeature(scripted::CameraHandle(), "Own", "PxnFeatureAccessQuery", PxnErrIO);
    ExpectResult(false, kOwn, "Unknown accessibility");
    EXPECT_EQ(sink.Lines(), Texts{"0 " + With(GetParam().accessError, kOwn) + kIo});
    EXPECT_EQ(Visited(), Texts{"Own"});
}

TEST_P(CheckSyncPathTest, EndsAtAProtectedFeature) {
    Camera()["Own"].writeable = false;
    ExpectResult(false, kOwn, "Write protected");
    EXPECT_EQ(sink.Lines(), Texts{"0 " + With(GetParam().ownProtected, kOwn)});
    EXPECT_EQ(Visited(), Texts{"Own"});
}

TEST_P(CheckSyncPathTest, NeedsNoReadableFeature) {
    Camera()["Own"].readable = false;
    Device()["First"].readable = false;
    ExpectResult(true, "- unkown -", "General error");
}

TEST_P(CheckRangeTest, EndsAtAFeatureThatDoesNotTakeTheValue) {
    Shrink(Camera(), "Own");
    ExpectResult(false, kOwn, "Out of range");
    EXPECT_EQ(sink.Lines(), Texts{"0 " + With(GetParam().ownOutOfRange, kOwn)});
    EXPECT_EQ(Visited(), Texts{"Own"});
}

TEST_P(CheckRangeTest, TakesARangeThatCannotBeQueriedForTooSmall) {
    sdk.FailFeature(scripted::CameraHandle(), "Own", GetParam().rangeQuery, PxnErrIO);
    ExpectResult(false, kOwn, "Out of range");
    EXPECT_EQ(sink.Take(), (Texts{"0 " + With(GetParam().rangeQueryError, "Camera::Own") + kIo,
                                  "0 " + With(GetParam().ownOutOfRange, kOwn)}));
    sdk.ClearFailures();
    sdk.FailFeature(scripted::LocalDeviceHandle(), "First", GetParam().rangeQuery, PxnErrIO);
    ExpectResult(false, kFirst, "Out of range");
    EXPECT_EQ(sink.Take(),
              (Texts{"0 " + With(GetParam().rangeQueryError, "Localdevice::First") + kIo,
                     "0 " + With(GetParam().outOfRange, kFirst)}));
}

TEST_P(CheckSyncPathTest, GoesOnBehindADependencyWithoutAccess) {
    sdk.FailFeature(scripted::LocalDeviceHandle(), "First", "PxnFeatureAccessQuery", PxnErrIO);
    Port()["Second"].writeable = false;
    ExpectResult(false, kSecond, "Write protected"); // the last one set
    EXPECT_EQ(sink.Take(), (Texts{"0 " + With(GetParam().accessError, kFirst) + kIo,
                                  "0 " + With(GetParam().protectedText, kSecond)}));
    EXPECT_EQ(Visited(), (Texts{"Own", "First", "Second", "Third"}));

    Port()["Second"].writeable = true;
    ExpectResult(false, kFirst, "Unknown accessibility");
}

TEST_P(CheckRangeTest, EndsAtADependencyThatDoesNotTakeTheValue) {
    Device()["First"].writeable = false;
    Shrink(Port(), "Second");
    ExpectResult(false, kSecond, "Out of range");
    EXPECT_EQ(sink.Lines(), (Texts{"0 " + With(GetParam().protectedText, kFirst),
                                   "0 " + With(GetParam().outOfRange, kSecond)}));
    EXPECT_EQ(Visited(), (Texts{"Own", "First", "Second"}));
}

TEST_P(CheckSyncPathTest, CountsADependencyWhoseModuleIsUnknownAsOfUnknownAccess) {
    Rules({{"Camera::Own", {"Nowhere::First", "Interface::Second"}}});
    ExpectResult(false, "<not available>", "Unknown accessibility");
    EXPECT_EQ(sink.Lines(), Texts{"0 " + With(GetParam().accessError, "<not available>") +
                                  ": The designated instance (camera, feature etc.) cannot be "
                                  "found"});
    EXPECT_EQ(Visited(), (Texts{"Own", "Second"}));
}

TEST_P(CheckSyncPathTest, CountsAFeatureThatTheModuleLacksAsOfUnknownAccess) {
    const SyncCheckResult result = GetParam().check(engine, &camera, "Absent");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.failingFeature, "<not available>");
    EXPECT_EQ(result.reason, "Unknown accessibility");
    EXPECT_FALSE(result.bufferImpact);
}

TEST_P(CheckSyncPathTest, RefusesWithoutACache) {
    const SyncCheckResult result = GetParam().check(engine, nullptr, "Own");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.failingFeature, "<not available>");
    EXPECT_EQ(result.reason, "Unknown accessibility");
    EXPECT_FALSE(result.bufferImpact);
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_P(CheckSyncPathTest, TellsOfBufferImpactOfTheFeatureAndOfEveryVisitedDependency) {
    EXPECT_FALSE(Check().bufferImpact);

    Camera()["Own"].category = "/ImageFormatControl";
    Fill();
    EXPECT_TRUE(Check().bufferImpact);
    Camera()["Own"].writeable = false;
    EXPECT_TRUE(Check().bufferImpact);
    Camera()["Own"].writeable = true;

    Camera()["Own"].category = "/Scripted";
    Port()["Third"].category = "/ImageFormatControl";
    Fill();
    EXPECT_TRUE(Check().bufferImpact);
    Port()["Third"].writeable = false;
    EXPECT_TRUE(Check().bufferImpact);
}

TEST_P(CheckRangeTest, TellsNothingOfBufferImpactBehindTheEndOfTheWalk) {
    Port()["Third"].category = "/ImageFormatControl";
    Shrink(Device(), "First");
    Fill();
    EXPECT_FALSE(Check().bufferImpact);
}

TEST_P(CheckSyncPathTest, WorksWithoutASink) {
    Camera()["Own"].writeable = false;
    EXPECT_FALSE(GetParam().check(silentEngine, &camera, "Own").ok);
    Camera()["Own"].writeable = true;
    Device()["First"].writeable = false;
    EXPECT_FALSE(GetParam().check(silentEngine, &camera, "Own").ok);
}

TEST_P(CheckRangeTest, WorksWithoutASink) {
    Shrink(Device(), "First");
    EXPECT_EQ(GetParam().check(silentEngine, &camera, "Own").reason, "Out of range");
    Shrink(Camera(), "Own");
    EXPECT_EQ(GetParam().check(silentEngine, &camera, "Own").reason, "Out of range");
}

std::string NameOf(const testing::TestParamInfo<Member>& member) {
    return member.param.name;
}

INSTANTIATE_TEST_SUITE_P(Family, CheckSyncPathTest,
                         testing::Values(IntMember(), FloatMember(), EnumMember(), StringMember(),
                                         BoolMember()),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Family, CheckRangeTest,
                         testing::Values(IntMember(), FloatMember(), EnumMember(), StringMember()),
                         NameOf);

} // namespace
