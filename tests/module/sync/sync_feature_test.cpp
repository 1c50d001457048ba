// sync_feature_test.cpp - copying one feature's value to another
#include "tests/module/sync/engine_fixture.h"

#include <cmath>
#include <limits>

namespace {

using scripted::BoolFeature;
using scripted::EnumFeature;
using scripted::FloatFeature;
using scripted::IntFeature;
using scripted::StringFeature;

const std::string kSyncTag = "CMivoraKVNPyxenClass::SyncFeature: ";
const std::string kSource = "/Camera/Scripted/Source";
const std::string kTarget = "/Localdevice/Scripted/Target";
const std::string kAccessCalls[] = {"PxnFeatureAccessQuery(camera0, \"Source\")",
                                    "PxnFeatureAccessQuery(localdevice0, \"Target\")"};

class SyncFeatureTest : public EngineFixture {
protected:
    void Put(scripted::Feature source, scripted::Feature target) {
        source.name = "Source";
        target.name = "Target";
        Camera().Put(std::move(source));
        Device().Put(std::move(target));
        Fill();
    }
    int Sync(bool onlyIfDifferent) {
        return engine.SyncFeature(&camera, "Source", &device, "Target", onlyIfDifferent);
    }
    void FailSource(const char* entry, PxnError code = PxnErrIO) {
        sdk.FailFeature(scripted::CameraHandle(), "Source", entry, code);
    }
    void FailTarget(const char* entry, PxnError code = PxnErrIO) {
        sdk.FailFeature(scripted::LocalDeviceHandle(), "Target", entry, code);
    }
    /// The two access queries and what follows.
    static Texts Calls(Texts further) {
        further.insert(further.begin(), std::begin(kAccessCalls), std::end(kAccessCalls));
        return further;
    }
    static std::string IoError(const std::string& context) {
        return "0 " + kSyncTag + context + ": Low level IO error in transport layer";
    }
    scripted::Feature& Target() { return Device()["Target"]; }
};

std::vector<scripted::EnumEntry> Entries(const std::vector<std::string>& names) {
    std::vector<scripted::EnumEntry> entries;
    for (const std::string& name : names) {
        entries.push_back({});
        entries.back().name = name;
    }
    return entries;
}

TEST_F(SyncFeatureTest, IsRefusedSilentlyWithoutACache) {
    Put(IntFeature("", 1, 0, 9), IntFeature("", 2, 0, 9));
    EXPECT_EQ(engine.SyncFeature(nullptr, "Source", &device, "Target", false), 0);
    EXPECT_EQ(engine.SyncFeature(&camera, "Source", nullptr, "Target", false), 0);
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(SyncFeatureTest, IsRefusedSilentlyWhenAFeatureIsNotInItsCache) {
    Put(IntFeature("", 1, 0, 9), IntFeature("", 2, 0, 9));
    EXPECT_EQ(engine.SyncFeature(&camera, "source", &device, "Target", false), 0);
    EXPECT_EQ(engine.SyncFeature(&camera, "Source", &device, "Tar", false), 0);
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(SyncFeatureTest, IsRefusedSilentlyWhenTheTypesDiffer) {
    Put(IntFeature("", 1, 0, 9), FloatFeature("", 2, 0, 9));
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(SyncFeatureTest, NeedsAReadableSourceAndAWriteableTarget) {
    const std::string line =
        "1 " + kSyncTag + kSource + " is either not readable or " + kTarget + " not writeable";
    Put(IntFeature("", 1, 0, 9), IntFeature("", 2, 0, 9));
    Camera()["Source"].readable = false;
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sink.Take(), Texts{line});
    EXPECT_EQ(sdk.TakeCalls(), Calls({}));

    Camera()["Source"].readable = true;
    Target().writeable = false;
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sink.Take(), Texts{line});
    EXPECT_EQ(sdk.TakeCalls(), Calls({}));

    // A source need not be writeable, nor a target readable.
    Camera()["Source"].writeable = false;
    Target().writeable = true;
    Target().readable = false;
    EXPECT_EQ(Sync(false), 1);
}

TEST_F(SyncFeatureTest, CountsAnAccessThatCannotBeQueriedAsNone) {
    Put(IntFeature("", 1, 0, 9), IntFeature("", 2, 0, 9));
    FailSource("PxnFeatureAccessQuery");
    EXPECT_EQ(Sync(false), 0);
    sdk.ClearFailures();
    FailTarget("PxnFeatureAccessQuery");
    EXPECT_EQ(Sync(false), 0);
    const std::string line =
        "1 " + kSyncTag + kSource + " is either not readable or " + kTarget + " not writeable";
    EXPECT_EQ(sink.Lines(), (Texts{line, line}));
}

template <bool kSourceFails>
PxnError PXN_CALL FailButGrantAccess(PxnHandle handle, const char*, PxnBool* readable,
                                     PxnBool* writeable) {
    *readable = 1;
    *writeable = 1;
    return (handle == scripted::CameraHandle()) == kSourceFails ? PxnErrIO : PxnErrSuccess;
}

TEST_F(SyncFeatureTest, AnAccessThatComesWithAFailureCountsAsNone) {
    Put(IntFeature("", 1, 0, 9), IntFeature("", 2, 0, 9));
    api.PxnFeatureAccessQuery = FailButGrantAccess<true>;
    EXPECT_EQ(Sync(false), 0);
    api.PxnFeatureAccessQuery = FailButGrantAccess<false>;
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(SyncFeatureTest, NeverSynchronisesOtherTypes) {
    for (const std::uint32_t type :
         {PxnFeatureDataUnknown, PxnFeatureDataCommand, PxnFeatureDataRaw, PxnFeatureDataNone}) {
        scripted::Feature feature = IntFeature("", 1, 0, 9);
        feature.type = type;
        Put(feature, feature);
        EXPECT_EQ(Sync(false), 0);
        EXPECT_EQ(sdk.TakeCalls(), Calls({}));
        EXPECT_EQ(sink.Take(), Texts{});
    }
}

TEST_F(SyncFeatureTest, WorksWithoutASink) {
    Put(IntFeature("", 5, 0, 9), IntFeature("", 2, 0, 9));
    EXPECT_EQ(silentEngine.SyncFeature(&camera, "Source", &device, "Target", true), 1);
    EXPECT_EQ(Target().intValue, 5);
    FailSource("PxnFeatureIntGet");
    EXPECT_EQ(silentEngine.SyncFeature(&camera, "Source", &device, "Target", true), 0);
}

// ---- integers ----

TEST_F(SyncFeatureTest, WritesAnIntegerWithoutReadingTheTarget) {
    Put(IntFeature("", 640, 0, 9999), IntFeature("", 640, 16, 640));
    EXPECT_EQ(Sync(false), 1);
    EXPECT_EQ(sdk.TakeCalls(), Calls({"PxnFeatureIntGet(camera0, \"Source\")",
                                      "PxnFeatureIntRangeQuery(localdevice0, \"Target\")",
                                      "PxnFeatureIntSet(localdevice0, \"Target\", 640)"}));
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "int64 feature can be synched to " + kTarget +
                                      " (value = 640, min = 16, max = 640)",
                                  "1 " + kSyncTag + "Synched int64 feature from " + kSource +
                                      " to " + kTarget + " (value = 640)"}));
}

TEST_F(SyncFeatureTest, SkipsAnIntegerThatIsEqualAlready) {
    Put(IntFeature("", -7, -9, 9), IntFeature("", -7, -7, 9));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sdk.TakeCalls(), Calls({"PxnFeatureIntGet(camera0, \"Source\")",
                                      "PxnFeatureIntRangeQuery(localdevice0, \"Target\")",
                                      "PxnFeatureIntGet(localdevice0, \"Target\")"}));
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "int64 feature can be synched to " + kTarget +
                                      " (value = -7, min = -7, max = 9)",
                                  "1 " + kSyncTag + kTarget +
                                      " already has appropriate value. Skipping update."}));
}

TEST_F(SyncFeatureTest, WritesAnIntegerThatDiffers) {
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    Put(IntFeature("", kMin, kMin, kMax), IntFeature("", 3, kMin, kMax));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(Target().intValue, kMin);
    EXPECT_EQ(sink.Take(),
              (Texts{"1 " + kSyncTag + "int64 feature can be synched to " + kTarget +
                         " (value = -9223372036854775808, min = -9223372036854775808, max = "
                         "9223372036854775807)",
                     "1 " + kSyncTag + "Synched int64 feature from " + kSource + " to " + kTarget +
                         " (value = -9223372036854775808)"}));
}

TEST_F(SyncFeatureTest, RefusesAnIntegerOutsideTheTargetsRange) {
    Put(IntFeature("", 641, 0, 9999), IntFeature("", 100, 16, 640));
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "int64 feature can NOT be synched to " +
                                  kTarget + " (value = 641, min = 16, max = 640)"}));
    EXPECT_EQ(Target().intValue, 100);
    Camera()["Source"].intValue = 15;
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(SyncFeatureTest, ReportsEveryFailureOfAnInteger) {
    Put(IntFeature("", 5, 0, 9), IntFeature("", 2, 0, 9));
    const std::string can = "1 " + kSyncTag + "int64 feature can be synched to " + kTarget +
                            " (value = 5, min = 0, max = 9)";
    FailSource("PxnFeatureIntGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot sync int64 feature from " + kSource + " to " +
                                         kTarget + " (read error)")});
    sdk.ClearFailures();
    FailTarget("PxnFeatureIntRangeQuery");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot query range of int64 feature from " + kTarget)});
    sdk.ClearFailures();
    FailTarget("PxnFeatureIntGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot get int64 feature from " + kTarget + " (read error)")}));
    sdk.ClearFailures();
    FailTarget("PxnFeatureIntSet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot read int64 feature from " + kTarget + " (read error)")}));
}

// ---- floats ----

TEST_F(SyncFeatureTest, WritesAFloat) {
    Put(FloatFeature("", 0.5, 0, 9), FloatFeature("", 2, 0.5, 1000000));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sdk.TakeCalls(), Calls({"PxnFeatureFloatGet(camera0, \"Source\")",
                                      "PxnFeatureFloatRangeQuery(localdevice0, \"Target\")",
                                      "PxnFeatureFloatGet(localdevice0, \"Target\")",
                                      "PxnFeatureFloatSet(localdevice0, \"Target\", 0.5)"}));
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "float feature can be synched to " + kTarget +
                                      " (value = 0.500000, min = 0.500000, max = 1000000.000000)",
                                  "1 " + kSyncTag + "Synched float feature from " + kSource +
                                      " to " + kTarget + ". value = 0.500000,"}));
}

TEST_F(SyncFeatureTest, ComparesFloatsWithoutTolerance) {
    Put(FloatFeature("", 0.1, 0, 9), FloatFeature("", std::nextafter(0.1, 1.0), 0, 9));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(Target().floatValue, 0.1);
    sink.Take();
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sink.Take().back(),
              "1 " + kSyncTag + kTarget + " already has appropriate value. Skipping update.");
    EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet"}).size(), 1u);
}

TEST_F(SyncFeatureTest, RefusesAFloatOutsideTheTargetsRange) {
    Put(FloatFeature("", std::nextafter(9.0, 10.0), 0, 10), FloatFeature("", 2, 0, 9));
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{"1 " + kSyncTag + "float feature can NOT be synched to " + kTarget +
                     " (value = 9.000000, min = 0.000000, max = 9.000000)"}));
    Camera()["Source"].floatValue = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sdk.Calls({"PxnFeatureFloatSet"}), Texts{});
}

TEST_F(SyncFeatureTest, ReportsEveryFailureOfAFloat) {
    Put(FloatFeature("", 5, 0, 9), FloatFeature("", 2, 0, 9));
    const std::string can = "1 " + kSyncTag + "float feature can be synched to " + kTarget +
                            " (value = 5.000000, min = 0.000000, max = 9.000000)";
    FailSource("PxnFeatureFloatGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot sync float feature from " + kSource + " to " +
                                         kTarget + " (read error)")});
    sdk.ClearFailures();
    FailTarget("PxnFeatureFloatRangeQuery");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot query range of float feature from " + kTarget)});
    sdk.ClearFailures();
    FailTarget("PxnFeatureFloatGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot get float feature from " + kTarget + " (read error)")}));
    sdk.ClearFailures();
    FailTarget("PxnFeatureFloatSet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot sync float feature from " + kSource + " to " + kTarget +
                                  " value = 5.000000, (write error)")}));
}

// ---- enumerations ----

TEST_F(SyncFeatureTest, WritesAnEntryThatTheTargetShares) {
    Put(EnumFeature("", "On", Entries({"Off", "On"})),
        EnumFeature("", "Auto", Entries({"Auto", "On"})));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sdk.TakeCalls(),
              Calls({"PxnFeatureEnumGet(camera0, \"Source\")",
                     "PxnFeatureEnumRangeQuery(localdevice0, \"Target\", null, 0)",
                     "PxnFeatureEnumRangeQuery(localdevice0, \"Target\", array, 2)",
                     "PxnFeatureEnumGet(localdevice0, \"Target\")",
                     "PxnFeatureEnumSet(localdevice0, \"Target\", \"On\")"}));
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "enum feature can be synched to " + kTarget +
                                      " (value = On)",
                                  "1 " + kSyncTag + "Synched enum feature from " + kSource +
                                      " to " + kTarget + " value = On."}));
}

TEST_F(SyncFeatureTest, RefusesAnEntryThatTheTargetLacks) {
    Put(EnumFeature("", "On", Entries({"Off", "On"})),
        EnumFeature("", "Auto", Entries({"Auto", "on"})));
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "enum feature can NOT be synched to " +
                                  kTarget + " (value = On)"}));
    Target().entries.clear();
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sdk.Calls({"PxnFeatureEnumSet"}), Texts{});
}

PxnError PXN_CALL ListCopiedName(PxnHandle, const char*, const char** entries, uint32_t,
                                 uint32_t* found) {
    static const char name[] = "On";
    *found = 1;
    if (entries) {
        entries[0] = name;
    }
    return PxnErrSuccess;
}

TEST_F(SyncFeatureTest, ComparesThePointersOfEntriesNotTheirTexts) {
    Put(EnumFeature("", "On", Entries({"On"})), EnumFeature("", "On", Entries({"On"})));
    api.PxnFeatureEnumRangeQuery = ListCopiedName;
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "enum feature can NOT be synched to " +
                                  kTarget + " (value = On)"}));
}

PxnError PXN_CALL ListMoreThanAsked(PxnHandle, const char*, const char** entries, uint32_t,
                                    uint32_t* found) {
    *found = entries ? 0xFFFFFFFF : 1;
    if (entries) {
        entries[0] = "On";
    }
    return PxnErrSuccess;
}

TEST_F(SyncFeatureTest, ReadsNoMoreEntriesThanItAskedFor) {
    Put(EnumFeature("", "Off", Entries({"Off"})), EnumFeature("", "On", Entries({"On"})));
    api.PxnFeatureEnumRangeQuery = ListMoreThanAsked;
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "enum feature can NOT be synched to " +
                                  kTarget + " (value = Off)"}));
}

TEST_F(SyncFeatureTest, AnEntryMayLackItsName) {
    static const char name[] = "On";
    Put(EnumFeature("", "Off", Entries({"Off"})), EnumFeature("", "Off", Entries({"Off", "On"})));
    api.PxnFeatureEnumRangeQuery = [](PxnHandle, const char*, const char** entries, uint32_t,
                                      uint32_t* found) -> PxnError {
        *found = 2;
        if (entries) {
            entries[0] = nullptr;
            entries[1] = name;
        }
        return PxnErrSuccess;
    };
    api.PxnFeatureEnumGet = [](PxnHandle handle, const char*, const char** value) -> PxnError {
        *value = handle == scripted::CameraHandle() ? name : nullptr;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(Target().text, "On");
    sink.Take();
    EXPECT_EQ(engine.SyncFeature(&device, "Target", &camera, "Source", true), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "enum feature can NOT be synched to " +
                                  kSource + " (value = (null))"}));
}

TEST_F(SyncFeatureTest, SkipsAnEntryThatIsEqualIgnoringCase) {
    Put(EnumFeature("", "On", Entries({"On"})), EnumFeature("", "ON", Entries({"On", "ON"})));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sink.Take().back(),
              "1 " + kSyncTag + kTarget + " already has appropriate value. Skipping update.");
    EXPECT_EQ(Sync(false), 1);
    EXPECT_EQ(Target().text, "On");
}

TEST_F(SyncFeatureTest, ReportsEveryFailureOfAnEnumeration) {
    Put(EnumFeature("", "On", Entries({"On"})), EnumFeature("", "Off", Entries({"Off", "On"})));
    const std::string can =
        "1 " + kSyncTag + "enum feature can be synched to " + kTarget + " (value = On)";
    const std::string noRange = IoError("Cannot query range of enum feature from " + kTarget);
    FailSource("PxnFeatureEnumGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot sync enum feature from " + kSource + " to " +
                                         kTarget + " (read error)")});
    sdk.ClearFailures();
    FailTarget("PxnFeatureEnumRangeQuery");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{noRange});
    sdk.ClearFailures();
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrIO, 2);
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{noRange});
    sdk.ClearFailures();
    FailTarget("PxnFeatureEnumGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot get enum feature from " + kTarget + " (read error)")}));
    sdk.ClearFailures();
    FailTarget("PxnFeatureEnumSet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{can, IoError("Cannot sync enum feature from " + kSource + " to " +
                                               kTarget + " value = On (write error)")}));
}

// ---- strings ----

TEST_F(SyncFeatureTest, WritesAStringThatIsAsLongAsAllowed) {
    Put(StringFeature("", "four"), StringFeature("", "old", 4));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sdk.TakeCalls(), Calls({"PxnFeatureStringGet(camera0, \"Source\", null, 0)",
                                      "PxnFeatureStringGet(camera0, \"Source\", array, 5)",
                                      "PxnFeatureStringMaxlengthQuery(localdevice0, \"Target\")",
                                      "PxnFeatureStringGet(localdevice0, \"Target\", null, 0)",
                                      "PxnFeatureStringGet(localdevice0, \"Target\", array, 4)",
                                      "PxnFeatureStringSet(localdevice0, \"Target\", \"four\")"}));
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "string feature can be synched to " + kTarget +
                                      " (value = four)",
                                  "1 " + kSyncTag + "Synched string feature from " + kSource +
                                      " to " + kTarget + " (value = four)"}));
}

TEST_F(SyncFeatureTest, RefusesAStringThatIsTooLong) {
    Put(StringFeature("", "fours"), StringFeature("", "old", 4));
    EXPECT_EQ(Sync(false), 0);
    EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "string feature can NOT be synched to " +
                                  kTarget + " (value = fours)"}));
    EXPECT_EQ(Target().text, "old");
}

TEST_F(SyncFeatureTest, SkipsAStringThatIsEqualAndComparesWithCase) {
    Put(StringFeature("", "left"), StringFeature("", "left"));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(sink.Take().back(),
              "1 " + kSyncTag + kTarget + " already has appropriate value. Skipping update.");
    Target().text = "Left";
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(Target().text, "left");
}

TEST_F(SyncFeatureTest, WritesPercentSignsOfNamesAndValuesAsTheyStand) {
    Camera().Put(StringFeature("100%s%n", "%d %n %s"));
    Device().Put(StringFeature("%c", "old"));
    Fill();
    EXPECT_EQ(engine.SyncFeature(&camera, "100%s%n", &device, "%c", true), 1);
    EXPECT_EQ(sink.Take(),
              (Texts{"1 " + kSyncTag + "string feature can be synched to /Localdevice/Scripted/%c" +
                         " (value = %d %n %s)",
                     "1 " + kSyncTag + "Synched string feature from /Camera/Scripted/100%s%n to " +
                         "/Localdevice/Scripted/%c (value = %d %n %s)"}));
    EXPECT_EQ(Device()["%c"].text, "%d %n %s");
    sdk.FailAlways("PxnFeatureStringGet", PxnErrIO);
    EXPECT_EQ(engine.SyncFeature(&camera, "100%s%n", &device, "%c", true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot query string-feature /Camera/Scripted/100%s%n for "
                                         "synching to /Localdevice/Scripted/%c")});
}

TEST_F(SyncFeatureTest, CopiesAnEmptyString) {
    Put(StringFeature("", ""), StringFeature("", "old", 0));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(Target().text, "");
}

TEST_F(SyncFeatureTest, ReportsEveryFailureOfAString) {
    Put(StringFeature("", "new"), StringFeature("", "old"));
    const std::string can =
        "1 " + kSyncTag + "string feature can be synched to " + kTarget + " (value = new)";
    const std::string noSource =
        IoError("Cannot query string-feature " + kSource + " for synching to " + kTarget);
    FailSource("PxnFeatureStringGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{noSource});
    sdk.ClearFailures();
    sdk.Fail("PxnFeatureStringGet", PxnErrIO, 2);
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{noSource});
    sdk.ClearFailures();
    FailSource("PxnFeatureStringGet", PxnErrWrongType);
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{"0 " + kSyncTag + "Cannot query string-feature " + kSource +
                                 " for synching to " + kTarget +
                                 ": The feature type for this access function was wrong"});
    sdk.ClearFailures();
    FailTarget("PxnFeatureStringMaxlengthQuery");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot query length of string feature from " + kTarget)});
    sdk.ClearFailures();
    FailTarget("PxnFeatureStringGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot get string feature from " + kTarget + " (read error)")}));
    sdk.ClearFailures();
    FailTarget("PxnFeatureStringSet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{can, IoError("string feature from " + kSource + " to " + kTarget +
                                               " (value = new) (write error)")}));
}

// ---- booleans ----

TEST_F(SyncFeatureTest, WritesABoolean) {
    for (const bool value : {true, false}) {
        const std::string text = value ? "true" : "false";
        Put(BoolFeature("", value), BoolFeature("", !value));
        EXPECT_EQ(Sync(true), 1);
        EXPECT_EQ(sdk.TakeCalls(), Calls({"PxnFeatureBoolGet(camera0, \"Source\")",
                                          "PxnFeatureBoolGet(localdevice0, \"Target\")",
                                          std::string("PxnFeatureBoolSet(localdevice0, "
                                                      "\"Target\", ") +
                                              (value ? "1)" : "0)")}));
        EXPECT_EQ(sink.Take(), (Texts{"1 " + kSyncTag + "bool feature can be synched to " +
                                          kTarget + " value = " + text,
                                      "1 " + kSyncTag + "Synched boolean feature from " + kSource +
                                          " to " + kTarget + ". value = " + text}));
    }
}

TEST_F(SyncFeatureTest, SkipsABooleanThatIsEqual) {
    Put(BoolFeature("", true), BoolFeature("", true));
    EXPECT_EQ(Sync(true), 1);
    EXPECT_EQ(
        sink.Take(),
        (Texts{"1 " + kSyncTag + "bool feature can be synched to " + kTarget + " value = true",
               "1 " + kSyncTag + kTarget + " already has appropriate value. Skipping update."}));
    EXPECT_EQ(Sync(false), 1);
    EXPECT_EQ(sdk.Calls({"PxnFeatureBoolSet"}).size(), 1u);
}

TEST_F(SyncFeatureTest, ReportsEveryFailureOfABoolean) {
    Put(BoolFeature("", true), BoolFeature("", false));
    const std::string can =
        "1 " + kSyncTag + "bool feature can be synched to " + kTarget + " value = true";
    FailSource("PxnFeatureBoolGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), Texts{IoError("Cannot sync bool feature " + kSource + " to " + kTarget +
                                         " (read error)")});
    sdk.ClearFailures();
    FailTarget("PxnFeatureBoolGet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(),
              (Texts{can, IoError("Cannot get string feature from " + kTarget + " (read error)")}));
    sdk.ClearFailures();
    FailTarget("PxnFeatureBoolSet");
    EXPECT_EQ(Sync(true), 0);
    EXPECT_EQ(sink.Take(), (Texts{can, IoError("Cannot sync bool feature from " + kSource + " to " +
                                               kTarget + " (value = true) (write error)")}));
}

} // namespace
