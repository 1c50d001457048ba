// features_test.cpp - reading, writing and describing features with mivora
#include "tests/scenario/program_test.h"

#include <algorithm>
#include <string>

namespace scenario {
namespace {

class FeatureCommands : public ProgramTest {
protected:
    Json Features(const Arguments& options) {
        Arguments arguments{"features", "--json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const auto result = Mivora(arguments);
        ExpectDone(result);
        const Json report = Json::parse(result.output);
        EXPECT_EQ(report["schema"], 1);
        return report["features"];
    }
};

TEST_F(FeatureCommands, ListsFeaturesWithValueAndRange) {
    UseCamera();
    const Json width = Features({"camera", "--filter", "control/width"});
    ASSERT_GE(width.size(), 1u);
    const auto found = std::find_if(width.begin(), width.end(),
                                    [](const Json& one) { return one["name"] == "Width"; });
    ASSERT_NE(found, width.end());
    EXPECT_EQ((*found)["path"], "/Camera/ImageFormatControl/Width");
    EXPECT_EQ((*found)["module"], "Camera");
    EXPECT_EQ((*found)["type"], "integer");
    EXPECT_EQ((*found)["access"], "RW");
    EXPECT_EQ((*found)["value"], 64);
    EXPECT_EQ((*found)["max"], 64);
    const Json format = Features({"--filter", "/PixelFormat"});
    ASSERT_GE(format.size(), 1u);
    EXPECT_EQ(format[0]["type"], "enumeration");
    EXPECT_EQ(format[0]["value"], "Mono8");
    EXPECT_GE(format[0]["entries"].size(), 70u);
}

TEST_F(FeatureCommands, ListsLimitsInItsTableOnlyWhereThereAreSome) {
    UseCamera();
    const auto result = Mivora({"features", "Camera", "--filter", "width"});
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output, " 64 px  16..64 step 4\n");
    EXPECT_PRED2(Contains, result.output, "/SensorWidth ");
    EXPECT_EQ(result.output.find("9223372036854775807"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("e+308"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find(" \n"), std::string::npos) << result.output;
}

TEST_F(FeatureCommands, ListsEveryModule) {
    UseCamera();
    const Json all = Features({});
    EXPECT_GE(all.size(), 150u);
    for (const char* module :
         {"System", "Interface", "Transportlayer", "Localdevice", "Camera", "Stream0"}) {
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [module](const Json& one) {
            return one["module"] == module;
        })) << module;
        EXPECT_FALSE(Features({module}).empty()) << module;
    }
    ExpectFailure(Mivora({"features", "Nope"}), 1,
                  {"mivora: ListFeatures failed with 5 (there is nothing of this name) for Nope\n",
                   "no module \"Nope\"; there are System, "});
}

TEST_F(FeatureCommands, ShowsModulesAndCategoriesAsATree) {
    UseCamera();
    const auto result = Mivora({"features", "Camera", "--tree", "--filter", "width"});
    ExpectDone(result);
    EXPECT_TRUE(result.output.starts_with("Camera\n  ")) << result.output;
    EXPECT_PRED2(Contains, result.output, "\n  ImageFormatControl\n    ");
    EXPECT_PRED2(Contains, result.output,
                 "\n    Width" + std::string(39, ' ') + " integer     RW 64 px  16..64 step 4\n");
    EXPECT_EQ(result.output.find("/Width"), std::string::npos);
}

TEST_F(FeatureCommands, DescribesAFeature) {
    UseCamera();
    const auto result = Mivora({"describe", "Camera/PixelFormat"});
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output,
                 "path           /Camera/ImageFormatControl/PixelFormat\n");
    EXPECT_PRED2(Contains, result.output, "\ntype           enumeration\n");
    EXPECT_PRED2(Contains, result.output, "\nvalue          Mono8\n");
    EXPECT_PRED2(Contains, result.output, "\nvisibility     ");
    EXPECT_PRED2(Contains, result.output, "|Mono12|");
    const auto json = Mivora({"describe", "/Camera/AnalogControl/GainSelector", "--json"});
    ExpectDone(json);
    const Json selector = Json::parse(json.output);
    EXPECT_EQ(selector["schema"], 1);
    EXPECT_EQ(selector["path"], "/Camera/AnalogControl/GainSelector");
    EXPECT_NE(std::find(selector["selects"].begin(), selector["selects"].end(), "Gain"),
              selector["selects"].end())
        << selector;
    EXPECT_FALSE(selector["description"].get<std::string>().empty());
    ExpectFailure(Mivora({"describe", "Camera/Nothing"}), 1,
                  {"DescribeFeature failed with 5 ", "Camera has no feature \"Nothing\""});
}

TEST_F(FeatureCommands, ReadsFeatures) {
    UseCamera();
    EXPECT_EQ(Mivora({"get", "Camera/Width"}).output, "64\n");
    EXPECT_EQ(Mivora({"get", "CAMERA/PixelFormat"}).output, "Mono8\n");
    EXPECT_EQ(Mivora({"get", "/Camera/AcquisitionControl/ExposureTime"}).output, "1000.0\n");
    EXPECT_EQ(Mivora({"get", "Camera/Width", "Camera/ReverseX"}).output,
              "Camera/Width=64\nCamera/ReverseX=false\n");
    ExpectFailure(Mivora({"get", "Camera/width"}), 1, {"no feature \"width\""});
    ExpectFailure(Mivora({"get", "Width"}), 1, {"MODULE/FEATURE"});
    ExpectFailure(Mivora({"get", "Camera/AcquisitionStart"}), 1,
                  {"ReadFeature failed with 6 ", "Camera/AcquisitionStart: has no value"});
    ExpectFailure(Mivora({"get"}), 2, {"FEATURE"});
}

TEST_F(FeatureCommands, WritesFeaturesOfEveryType) {
    UseCamera();
    EXPECT_EQ(Mivora({"set", "Camera/Width=0x20"}).output, "32\n");
    EXPECT_EQ(Mivora({"set", "Camera/ExposureTime=2000.5"}).output, "2000.5\n");
    EXPECT_EQ(Mivora({"set", "Camera/PixelFormat=Mono12"}).output, "Mono12\n");
    EXPECT_EQ(Mivora({"set", "Camera/ReverseX=true"}).output, "true\n");
    EXPECT_EQ(Mivora({"set", "Camera/DeviceUserID=my camera"}).output, "my camera\n");
    EXPECT_EQ(Mivora({"set", "Camera/AcquisitionStop"}).output,
              "Camera/AcquisitionStop was executed\n");
}

TEST_F(FeatureCommands, WritesSeveralInOrderAndNamesWhatWasWrittenBeforeAFailure) {
    UseCamera();
    const auto result = Mivora({"set", "Camera/Width=32", "Camera/OffsetX=16"});
    ExpectDone(result);
    EXPECT_EQ(result.output, "Camera/Width=32\nCamera/OffsetX=16\n");
    const auto failed = Mivora({"set", "Camera/Height=32", "Camera/Width=48", "Camera/OffsetX=32"});
    ExpectFailure(failed, 1,
                  {"mivora: WriteFeature failed with 8 (the value is outside the limits) for "
                   "Camera/OffsetX=32\n  Camera/OffsetX takes 0 to 16 in steps of 4, not 32\n",
                   "\n  applied before: Camera/Height, Camera/Width\n"});
    EXPECT_EQ(failed.output, "Camera/Height=32\nCamera/Width=48\n");
    // Nothing is written when one cannot be.
    const auto unknown = Mivora({"set", "Camera/Height=32", "Camera/Nothing=1"});
    ExpectFailure(unknown, 1, {"Camera has no feature \"Nothing\""});
    EXPECT_EQ(unknown.output, "");
}

TEST_F(FeatureCommands, NamesWhatRefusesAValueAndWhy) {
    UseCamera();
    ExpectFailure(Mivora({"set", "Camera/Width=9999"}), 1,
                  {"mivora: WriteFeature failed with 8 (the value is outside the limits) for "
                   "Camera/Width=9999\n  Camera/Width takes 16 to 64 in steps of 4, not 9999\n"});
    ExpectFailure(Mivora({"set", "Camera/DeviceVendorName=x"}), 1,
                  {"WriteFeature failed with 7 ", "Camera/DeviceVendorName: cannot be written"});
    ExpectFailure(Mivora({"set", "Camera/PixelFormat=mono8"}), 1,
                  {"Camera/PixelFormat: there is no entry \"mono8\"; there are Mono8, "});
    ExpectFailure(Mivora({"set", "Camera/Width=wide"}), 1, {"\"wide\" is no value", "integer"});
    ExpectFailure(Mivora({"set", "Camera/Width"}), 2, {"VALUE of Camera/Width is required"});
    ExpectFailure(Mivora({"set", "Camera/AcquisitionStop=1"}), 1,
                  {"AcquisitionStop is of type command and takes no value"});
    ExpectFailure(Mivora({"set", "Width=1"}), 1, {"\"Width\" is not of the form MODULE/FEATURE"});
    for (const Arguments& command : {Arguments{"set", "/Camera/AnalogControl/Width=32"},
                                     Arguments{"get", "/Camera/AnalogControl/Width"},
                                     Arguments{"describe", "Camera/AnalogControl/Width"}}) {
        ExpectFailure(
            Mivora(command), 1,
            {"Camera has no feature \"Width\" in the category \"/AnalogControl\"; there is "
             "/Camera/ImageFormatControl/Width"});
    }
}

TEST_F(FeatureCommands, WritesTheFeaturesThatDependOnOne) {
    UseCamera();
    directory.Write("host.ini", "[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=cam.sync\n");
    directory.Write("cam.sync",
                    "{\"SyncFeatures\":[{\"ModuleName\":\"Camera\",\"FeatureName\":\"Width\","
                    "\"Dependencies\":[{\"ModuleName\":\"Camera\",\"FeatureName\":\"Height\"}]}]}");
    const auto result = Mivora({"--log", PathOf("log"), "set", "Camera/Width=48"});
    ExpectDone(result);
    EXPECT_EQ(result.output, "48\n");
    EXPECT_PRED2(Contains, directory.Read("log"),
                 "1 CMivoraKVNPyxenClass::SyncFeature: int64 feature can be synched to "
                 "/Camera/ImageFormatControl/Height (value = 48");
}

TEST_F(FeatureCommands, SetOptionChangesTheImageThatIsTaken) {
    UseCamera();
    ExpectDone(Mivora({"snap", "--set", "Camera/Width=32", "--set", "Camera/Height=16", "--set",
                       "Camera/PixelFormat=Mono16", "-o", PathOf("image.raw")}));
    EXPECT_EQ(directory.Read("image.raw").size(), 32u * 16 * 2);
    const auto grab = Mivora({"grab", "--frames", "3", "--json", "--set=Camera/Width=16"});
    ExpectDone(grab);
    EXPECT_EQ(Json::parse(grab.output)["imageSize"], 16 * 48);
    ExpectDone(Mivora({"watch", "--for", "1", "--set", "Camera/Width=32"}));
}

TEST_F(FeatureCommands, SetOptionThatIsRefusedTakesNoImage) {
    UseCamera();
    for (const Arguments& command :
         {Arguments{"snap", "-o", PathOf("none.raw")}, Arguments{"grab", "--frames", "1"},
          Arguments{"watch", "--for", "1"}}) {
        Arguments arguments = command;
        arguments.insert(arguments.end(), {"--set", "Camera/Width=9999"});
        const auto result = Mivora(arguments);
        ExpectFailure(result, 1, {"WriteFeature failed with 8 ", "Camera/Width=9999"});
        EXPECT_EQ(result.output, "");
    }
    EXPECT_FALSE(platform::PathExists(PathOf("none.raw")));
    ExpectFailure(Mivora({"grab", "--frames", "1", "--set", "Camera"}), 1,
                  {"\"Camera\" is not of the form MODULE/FEATURE"});
}

TEST_F(FeatureCommands, AreRefusedByAModuleWithoutServices) {
    UseCamera();
    const std::string other = support::BuiltFile("test_modules/good.module");
    for (const Arguments& command :
         {Arguments{"features"}, Arguments{"get", "Camera/Width"},
          Arguments{"set", "Camera/Width=1"}, Arguments{"describe", "Camera/Width"},
          Arguments{"settings", "save", PathOf("s.json")},
          Arguments{"grab", "--frames", "1", "--set", "Camera/Width=1"}}) {
        Arguments arguments{"--module", other};
        arguments.insert(arguments.end(), command.begin(), command.end());
        ExpectFailure(
            Mivora(arguments), 1,
            {"mivora: the grabber module offers no access to features\n", "offers no services"});
    }
}

} // namespace
} // namespace scenario
