// feature_cache_test.cpp - the feature descriptions of one SDK module
#include "sync/feature_cache.h"

#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

const std::string kNoList = "CMivoraKVNPyxenClass::PrintParameters: Could not get feature list";

class FeatureCacheTest : public LoadedApi {
protected:
    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }
    bool Init(const char* name = "Camera") { return cache.Init(name, &api, camera, &sink); }
    // The lines of PrintParameters for a module with these features alone.
    Texts Print(const std::vector<scripted::Feature>& features) {
        Camera().features = features;
        EXPECT_TRUE(Init());
        sink.Take();
        sdk.ClearCalls();
        cache.PrintParameters();
        return sink.Take();
    }

    PxnHandle camera = scripted::CameraHandle();
    FeatureCache cache;
};

scripted::Feature Unreadable(scripted::Feature feature) {
    feature.readable = false;
    return feature;
}

TEST_F(FeatureCacheTest, IsEmptyBeforeItIsFilled) {
    EXPECT_EQ(cache.GetModuleName(), nullptr);
    EXPECT_EQ(cache.GetHandle(), nullptr);
    EXPECT_EQ(cache.GetFeatureCount(), 0u);
    EXPECT_EQ(cache.GetFeatureList(), nullptr);
    EXPECT_EQ(cache.Find("Width"), nullptr);
    EXPECT_EQ(cache.GetFeaturePath("Width"), "<not available>");
    cache.PrintParameters();
    cache.Clear();
}

TEST_F(FeatureCacheTest, InitListsTheFeaturesInTwoCalls) {
    ASSERT_TRUE(Init());
    const std::size_t count = Camera().features.size();
    EXPECT_EQ(sdk.TakeCalls(),
              (Texts{"PxnFeaturesList(camera0, null, 0, 88)",
                     "PxnFeaturesList(camera0, array, " + std::to_string(count) + ", 88)"}));
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_STREQ(cache.GetModuleName(), "Camera");
    EXPECT_EQ(cache.GetHandle(), camera);
    ASSERT_EQ(cache.GetFeatureCount(), count);
    for (std::uint32_t index = 0; index < count; ++index) {
        EXPECT_EQ(cache.GetFeatureList()[index].name, Camera().features[index].name);
    }
}

TEST_F(FeatureCacheTest, KeepsThePointerOfTheName) {
    const char name[] = "Camera";
    ASSERT_TRUE(Init(name));
    EXPECT_EQ(cache.GetModuleName(), name);
}

TEST_F(FeatureCacheTest, AnEmptyListIsSuccess) {
    ASSERT_TRUE(Init());
    Camera().features.clear();
    sdk.ClearCalls();
    EXPECT_TRUE(Init());
    EXPECT_EQ(cache.GetFeatureCount(), 0u);
    EXPECT_EQ(cache.GetFeatureList(), nullptr);
    EXPECT_EQ(sink.Take(), Texts{"0 FeatureCache::Init: Empty feature list"});
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnFeaturesList(camera0, null, 0, 88)"});
    cache.PrintParameters();
    EXPECT_EQ(sink.Lines(), (Texts{"1 Camera features:", "1  - No features found - "}));
}

TEST_F(FeatureCacheTest, AFailedCountLeavesTheListAsItWas) {
    ASSERT_TRUE(Init());
    const std::uint32_t count = cache.GetFeatureCount();
    sdk.Fail("PxnFeaturesList", PxnErrBadHandle);
    EXPECT_FALSE(Init("Other"));
    EXPECT_EQ(sink.Lines(), Texts{"0 " + kNoList + ": The given handle is not valid"});
    EXPECT_EQ(cache.GetFeatureCount(), count);
    EXPECT_NE(cache.Find("Width"), nullptr);
    EXPECT_STREQ(cache.GetModuleName(), "Other");
}

TEST_F(FeatureCacheTest, AFailedCountKeepsTheNewHandle) {
    ASSERT_TRUE(Init());
    sdk.Fail("PxnFeaturesList", PxnErrBadHandle);
    EXPECT_FALSE(cache.Init("Interface", &api, scripted::InterfaceHandle(), &sink));
    EXPECT_EQ(cache.GetHandle(), scripted::InterfaceHandle());
    EXPECT_STREQ(cache.GetModuleName(), "Interface");
    EXPECT_NE(cache.Find("Width"), nullptr);
}

TEST_F(FeatureCacheTest, AFailedFillEmptiesTheList) {
    ASSERT_TRUE(Init());
    sdk.Fail("PxnFeaturesList", PxnErrFeaturesUnavailable, 2);
    EXPECT_FALSE(Init());
    EXPECT_EQ(sink.Lines(),
              Texts{"0 FeatureCache::Init: Could not get feature list: The XML for the module is "
                    "currently not loaded; the module could be in the wrong state or the XML could "
                    "not be retrieved or could not be parsed properly"});
    EXPECT_EQ(cache.GetFeatureCount(), 0u);
    EXPECT_EQ(cache.GetFeatureList(), nullptr);
}

TEST_F(FeatureCacheTest, AListThatGrowsMeanwhileIsAFailure) {
    sdk.Data().foundAnswers["PxnFeaturesList"] = {2};
    EXPECT_FALSE(Init());
    EXPECT_EQ(sink.Lines(), Texts{"0 FeatureCache::Init: Could not get feature list: More data was "
                                  "returned in a string/list than space was provided"});
    EXPECT_EQ(cache.GetFeatureCount(), 0u);
}

TEST_F(FeatureCacheTest, AListThatShrinksMeanwhileKeepsTheFirstCount) {
    const auto count = static_cast<std::uint32_t>(Camera().features.size());
    sdk.Data().foundAnswers["PxnFeaturesList"] = {count + 3, count};
    ASSERT_TRUE(Init());
    ASSERT_EQ(cache.GetFeatureCount(), count + 3);
    EXPECT_STREQ(cache.GetFeatureList()[count + 2].name, "");
    EXPECT_EQ(cache.Find("Absent"), nullptr);
    EXPECT_NE(cache.Find("Width"), nullptr);
}

TEST_F(FeatureCacheTest, NoMemoryLeavesTheListAsItWas) {
    ASSERT_TRUE(Init());
    const std::uint32_t count = cache.GetFeatureCount();
    const PxnFeatureInfo* const list = cache.GetFeatureList();
    sdk.Data().foundAnswers["PxnFeaturesList"] = {0xFFFFFFFF};
    EXPECT_FALSE(Init());
    EXPECT_EQ(sink.Lines(),
              Texts{"0 FeatureCache::Init: Could not allocate memory for feature list"});
    EXPECT_EQ(cache.GetFeatureCount(), count);
    EXPECT_EQ(cache.GetFeatureList(), list);
    EXPECT_NE(cache.Find("Width"), nullptr);
}

TEST_F(FeatureCacheTest, InitReplacesWhatWasThere) {
    ASSERT_TRUE(Init());
    ASSERT_TRUE(cache.Init("Interface", &api, scripted::InterfaceHandle(), &sink));
    EXPECT_EQ(cache.GetFeatureCount(), 1u);
    EXPECT_EQ(cache.GetHandle(), scripted::InterfaceHandle());
    EXPECT_EQ(cache.Find("Width"), nullptr);
    EXPECT_NE(cache.Find("InterfaceID"), nullptr);
}

TEST_F(FeatureCacheTest, ClearForgetsListNameAndAccess) {
    ASSERT_TRUE(Init());
    sdk.ClearCalls();
    cache.Clear();
    EXPECT_EQ(cache.GetModuleName(), nullptr);
    EXPECT_EQ(cache.GetFeatureCount(), 0u);
    EXPECT_EQ(cache.GetFeatureList(), nullptr);
    EXPECT_EQ(cache.Find("Width"), nullptr);
    cache.PrintParameters();
    EXPECT_EQ(sink.Lines(),
              (Texts{"1 unnamed feature cache's features:", "1  - No features found - "}));
    EXPECT_EQ(sdk.TakeCalls(), Texts{});
}

TEST_F(FeatureCacheTest, FindComparesEveryByteAndTakesTheFirst) {
    scripted::Feature second = scripted::IntFeature("Width", 2, 0, 9);
    second.category = "/Second";
    Camera().features = {scripted::IntFeature("width", 1, 0, 9),
                         scripted::IntFeature("Width", 1, 0, 9), second};
    ASSERT_TRUE(Init());
    EXPECT_EQ(cache.Find("Width"), &cache.GetFeatureList()[1]);
    EXPECT_EQ(cache.Find("width"), &cache.GetFeatureList()[0]);
    EXPECT_EQ(cache.Find("WIDTH"), nullptr);
    EXPECT_EQ(cache.Find("Widt"), nullptr);
    EXPECT_EQ(cache.Find("Width2"), nullptr);
    EXPECT_EQ(cache.Find(""), nullptr);
    EXPECT_EQ(cache.Find(nullptr), nullptr);
}

TEST_F(FeatureCacheTest, RecordsMayLackTexts) {
    api.PxnFeaturesList = [](PxnHandle, PxnFeatureInfo* features, std::uint32_t,
                             std::uint32_t* found, std::uint32_t) -> PxnError {
        *found = 2;
        if (features) {
            features[0] = {};
            features[1] = {};
            features[1].name = "Width";
        }
        return PxnErrSuccess;
    };
    ASSERT_TRUE(Init());
    EXPECT_EQ(cache.Find("Width"), &cache.GetFeatureList()[1]);
    EXPECT_EQ(cache.Find(""), nullptr);
    EXPECT_EQ(cache.GetFeaturePath("Width"), "/Camera/Width");
}

TEST_F(FeatureCacheTest, PathIsModuleCategoryAndName) {
    ASSERT_TRUE(Init());
    EXPECT_EQ(cache.GetFeaturePath("Width"), "/Camera/ImageFormatControl/Width");
    EXPECT_EQ(cache.GetFeaturePath("width"), "<not available>");
    EXPECT_EQ(cache.GetFeaturePath(nullptr), "<not available>");
}

TEST_F(FeatureCacheTest, PrintWritesEveryFeatureWithItsValue) {
    scripted::Feature nothing;
    nothing.name = "Root";
    nothing.type = PxnFeatureDataNone;
    scripted::Feature odd;
    odd.name = "Odd";
    odd.type = 9;
    scripted::Feature unknown;
    unknown.name = "Unknown";
    unknown.type = PxnFeatureDataUnknown;
    EXPECT_EQ(Print({scripted::IntFeature("Width", 640, 0, 2048),
                     scripted::IntFeature("Lowest", INT64_MIN, 0, 0),
                     scripted::FloatFeature("Gain", 1.5, 0, 9),
                     scripted::EnumFeature("PixelFormat", "Mono8", {}),
                     scripted::StringFeature("Name", "left"), scripted::BoolFeature("Flip", true),
                     scripted::BoolFeature("Flop", false), scripted::CommandFeature("Start"),
                     scripted::RawFeature("Table", {'a'}), nothing, odd, unknown}),
              (Texts{"1 Camera features:", "1  Width (int64) = 640",
                     "1  Lowest (int64) = -9223372036854775808", "1  Gain (float) = 1.500000",
                     "1  PixelFormat (enum) = Mono8", "1  Name (string) = left",
                     "1  Flip (bool) = On", "1  Flop (bool) = Off", "1  Start is a command",
                     "1  Table has raw data type", "1  Root has no data",
                     "1 Odd has an unknown datatype", "1 Unknown has an unknown datatype"}));
}

TEST_F(FeatureCacheTest, PrintAsksForTheAccessOfEveryFeatureBeforeReadingIt) {
    Print({scripted::IntFeature("Width", 640, 0, 2048), scripted::StringFeature("Name", "left"),
           scripted::CommandFeature("Start")});
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureAccessQuery(camera0, \"Width\")",
                                      "PxnFeatureIntGet(camera0, \"Width\")",
                                      "PxnFeatureAccessQuery(camera0, \"Name\")",
                                      "PxnFeatureStringGet(camera0, \"Name\", null, 0)",
                                      "PxnFeatureStringGet(camera0, \"Name\", array, 5)",
                                      "PxnFeatureAccessQuery(camera0, \"Start\")"}));
}

TEST_F(FeatureCacheTest, PrintNamesWhatIsNotReadable) {
    const std::vector<scripted::Feature> features = {
        Unreadable(scripted::IntFeature("A", 1, 0, 9)),
        Unreadable(scripted::FloatFeature("B", 1, 0, 9)),
        Unreadable(scripted::EnumFeature("C", "x", {})),
        Unreadable(scripted::StringFeature("D", "x")),
        Unreadable(scripted::BoolFeature("E", true)),
        Unreadable(scripted::CommandFeature("F"))};
    const Texts expected = {"1 Camera features:",
                            "1  A (int64) is not readable",
                            "1  B (float) is not readable",
                            "1  C (enum) is not readable",
                            "1  D (string) is not readable",
                            "1  E (bool) is not readable",
                            "1  F is a command"};
    EXPECT_EQ(Print(features), expected);
}

TEST_F(FeatureCacheTest, AFailedAccessQueryCountsAsNotReadable) {
    sdk.FailAlways("PxnFeatureAccessQuery", PxnErrIO);
    EXPECT_EQ(Print({scripted::IntFeature("Width", 640, 0, 2048)}),
              (Texts{"1 Camera features:", "1  Width (int64) is not readable"}));
}

TEST_F(FeatureCacheTest, AnAccessThatComesWithAFailureCountsAsNone) {
    api.PxnFeatureAccessQuery = [](PxnHandle, const char*, PxnBool* readable,
                                   PxnBool* writeable) -> PxnError {
        *readable = 1;
        *writeable = 1;
        return PxnErrIO;
    };
    EXPECT_EQ(Print({scripted::IntFeature("Width", 640, 0, 2048)}),
              (Texts{"1 Camera features:", "1  Width (int64) is not readable"}));
}

TEST_F(FeatureCacheTest, PrintReportsWhatCannotBeRead) {
    for (const char* entry : {"PxnFeatureIntGet", "PxnFeatureFloatGet", "PxnFeatureEnumGet",
                              "PxnFeatureStringGet", "PxnFeatureBoolGet"}) {
        sdk.FailAlways(entry, PxnErrIO);
    }
    const std::string reason = ": Low level IO error in transport layer";
    EXPECT_EQ(Print({scripted::IntFeature("A", 1, 0, 9), scripted::FloatFeature("B", 1, 0, 9),
                     scripted::EnumFeature("C", "x", {}), scripted::StringFeature("D", "x"),
                     scripted::BoolFeature("E", true)}),
              (Texts{"1 Camera features:", "0  Can't retrieve attribute A (int64)" + reason,
                     "0  Can't retrieve attribute B (double)" + reason,
                     "0 Can't retrieve attribute C (enum)" + reason,
                     "0  Can't retrieve attribute D (string)" + reason,
                     "0  Can't retrieve attribute E (bool)" + reason}));
}

TEST_F(FeatureCacheTest, PrintKeepsPercentSignsOfNamesAndValues) {
    EXPECT_EQ(Print({scripted::StringFeature("100%s", "%d")}),
              (Texts{"1 Camera features:", "1  100%s (string) = %d"}));
}

TEST_F(FeatureCacheTest, ACacheWithoutNameIsPrintedAsUnnamed) {
    Camera().features = {scripted::CommandFeature("Start")};
    ASSERT_TRUE(Init(nullptr));
    cache.PrintParameters();
    EXPECT_EQ(sink.Lines(),
              (Texts{"1 unnamed feature cache's features:", "1  Start is a command"}));
    EXPECT_EQ(cache.GetFeaturePath("Start"), "//Scripted/Start");
}

TEST_F(FeatureCacheTest, WorksWithoutSink) {
    Camera().Put(Unreadable(scripted::IntFeature("Hidden", 1, 0, 9)));
    ASSERT_TRUE(cache.Init("Camera", &api, camera, nullptr));
    cache.PrintParameters();
    sdk.FailAlways("PxnFeatureIntGet", PxnErrIO);
    cache.PrintParameters();
    sdk.Fail("PxnFeaturesList", PxnErrIO);
    EXPECT_FALSE(cache.Init("Camera", &api, camera, nullptr));
    sdk.Data().foundAnswers["PxnFeaturesList"] = {0xFFFFFFFF};
    EXPECT_FALSE(cache.Init("Camera", &api, camera, nullptr));
    Camera().features.clear();
    EXPECT_TRUE(cache.Init("Camera", &api, camera, nullptr));
    cache.PrintParameters();
}

TEST_F(FeatureCacheTest, TextsThatTheSdkLeavesOutAreEmpty) {
    api.PxnFeaturesList = [](PxnHandle, PxnFeatureInfo* features, std::uint32_t,
                             std::uint32_t* found, std::uint32_t) -> PxnError {
        *found = 3;
        if (features) {
            features[0] = {};
            features[1].name = "Width";
            features[1].category = nullptr;
            *found = 2;
        }
        return PxnErrSuccess;
    };
    ASSERT_TRUE(cache.Init("Camera", &api, scripted::CameraHandle(), &sink));
    ASSERT_EQ(cache.GetFeatureCount(), 3u);
    const PxnFeatureInfo& nameless = cache.GetFeatureList()[0];
    for (const char* const text :
         {nameless.name, nameless.category, nameless.displayName, nameless.tooltip,
          nameless.description, nameless.sfncNamespace, nameless.unit, nameless.representation}) {
        EXPECT_STREQ(text, "");
    }
    EXPECT_EQ(cache.GetFeaturePath("Width"), "/Camera/Width");
    EXPECT_STREQ(cache.GetFeatureList()[2].name, "");
    cache.PrintParameters();
}

} // namespace
