// synchronisation_test.cpp - feature synchronisation files
#include "tests/scenario/program_test.h"

#include <cstdio>
#include <tuple>
#include <utility>

namespace scenario {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kSync = "CMivoraKVNPyxenClass::SyncFeature: ";

std::string Feature(const std::string& module, const std::string& name) {
    return "{\"ModuleName\":\"" + module + "\",\"FeatureName\":\"" + name + "\"}";
}

/// An entry of the file: a feature and those that follow it.
std::string Entry(const std::string& module, const std::string& name,
                  const std::vector<std::pair<std::string, std::string>>& followers) {
    std::string text = Feature(module, name);
    text.pop_back();
    text += ", \"Dependencies\": [";
    for (const auto& [followerModule, follower] : followers) {
        text += (text.ends_with('[') ? "" : ", ") + Feature(followerModule, follower);
    }
    return text + "]}";
}

/// The log lines about a copied integer.
Lines IntCopied(const std::string& from, const std::string& to, int value) {
    const std::string number = std::to_string(value);
    return {std::string("1 ") + kSync + "int64 feature can be synched to " + to +
                " (value = " + number + ", min = 1, max = 4096)",
            std::string("1 ") + kSync + "Synched int64 feature from " + from + " to " + to +
                " (value = " + number + ")"};
}

class Synchronisation : public ProgramTest {
protected:
    void SetUp() override {
        UseCamera("<feature name=\"PixelFormat\" value=\"BayerRG8\"/>"
                  "<feature name=\"ReverseX\" value=\"true\"/>"
                  "<feature name=\"DeviceUserID\" value=\"north\"/>",
                  "", "serial");
        directory.Write("host.ini",
                        "[TLSpecificConfig_0]\nTLType=CL\nFeatureSyncFile=board.sync\n");
        UseFile({Entry("Camera", "Width",
                       {{"Localdevice", "InputWidth"},
                        {"Interface", "InputWidth"},
                        {"Transportlayer", "InputWidth"}}),
                 Entry("Camera", "ExposureTime", {{"Interface", "InputExposureTime"}}),
                 Entry("Camera", "PixelFormat",
                       {{"Localdevice", "InputFormat"}, {"Interface", "InputFormat"}}),
                 Entry("Camera", "DeviceUserID", {{"Transportlayer", "InputCameraName"}}),
                 Entry("Camera", "ReverseX", {{"Localdevice", "InputMirrored"}}),
                 Entry("Interface", "InputWidth", {{"Localdevice", "InputWidth"}}),
                 Entry("Localdevice", "InputExposureTime", {{"Camera", "ExposureTime"}}),
                 Entry("Transportlayer", "InputFormat", {{"Camera", "PixelFormat"}})});
    }

    void UseFile(const Lines& entries) {
        std::string text = "{ \"SyncFeatures\": [\r\n";
        for (const std::string& entry : entries) {
            text += (&entry == &entries.front() ? "    " : ",\r\n    ") + entry;
        }
        directory.Write("board.sync", text + "\r\n] }\r\n");
    }

    /// Runs mivora with its own log.
    support::ProgramResult LoggedMivora(const Arguments& arguments, const std::string& input = {}) {
        std::remove(PathOf("log").c_str());
        Arguments all{"--log", PathOf("log")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Mivora(all, input);
    }

    /// The log lines between the one that contains `from` and the one that contains `to`.
    Lines Logged(const std::string& from, const std::string& to) {
        Lines lines;
        bool isBetween = false;
        std::string rest = directory.Read("log");
        for (std::size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
            const std::string line = rest.substr(0, end);
            rest.erase(0, end + 1);
            if (isBetween && Contains(line, to)) {
                return lines;
            }
            if (isBetween) {
                lines.push_back(line);
            }
            isBetween = isBetween || Contains(line, from);
        }
        ADD_FAILURE() << "not from " << from << " to " << to;
        return lines;
    }
    Lines LoggedAfterOpening() {
        return Logged("Using snap start strategy", "CMivoraKVNPyxenClass::CloseActCamera");
    }
};

TEST_F(Synchronisation, IsAppliedWhenTheCameraIsOpened) {
    const auto result = LoggedMivora({"features", "--filter", "/InputControl/", "--json"});
    ExpectDone(result);
    EXPECT_EQ(Logged("Loading " + PathOf("board.sync") + "...", "Successfully loaded"),
              (Lines{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                     "1   Localdevice::InputWidth", "1   Interface::InputWidth",
                     "1   Transportlayer::InputWidth",
                     "1 FeatureSyncher::Init: Camera::ExposureTime will be synched with ",
                     "1   Interface::InputExposureTime",
                     "1 FeatureSyncher::Init: Camera::PixelFormat will be synched with ",
                     "1   Localdevice::InputFormat", "1   Interface::InputFormat",
                     "1 FeatureSyncher::Init: Camera::DeviceUserID will be synched with ",
                     "1   Transportlayer::InputCameraName",
                     "1 FeatureSyncher::Init: Camera::ReverseX will be synched with ",
                     "1   Localdevice::InputMirrored",
                     "1 FeatureSyncher::Init: Interface::InputWidth will be synched with ",
                     "1   Localdevice::InputWidth",
                     "1 FeatureSyncher::Init: Localdevice::InputExposureTime will be synched with ",
                     "1   Camera::ExposureTime",
                     "1 FeatureSyncher::Init: Transportlayer::InputFormat will be synched with ",
                     "1   Camera::PixelFormat"}));

    // From here on only the camera's entries count.
    Lines expected;
    for (const char* module : {"Localdevice", "Interface", "Transportlayer"}) {
        const Lines copied = IntCopied("/Camera/ImageFormatControl/Width",
                                       std::string("/") + module + "/InputControl/InputWidth", 64);
        expected.insert(expected.end(), copied.begin(), copied.end());
    }
    const std::string sync = std::string("1 ") + kSync;
    for (const char* line :
         {"float feature can be synched to /Interface/InputControl/InputExposureTime "
          "(value = 1000.000000, min = 1.000000, max = 1000000.000000)",
          "Synched float feature from /Camera/AcquisitionControl/ExposureTime to "
          "/Interface/InputControl/InputExposureTime. value = 1000.000000,",
          "enum feature can be synched to /Localdevice/InputControl/InputFormat "
          "(value = BayerRG8)",
          "Synched enum feature from /Camera/ImageFormatControl/PixelFormat to "
          "/Localdevice/InputControl/InputFormat value = BayerRG8.",
          "enum feature can be synched to /Interface/InputControl/InputFormat (value = BayerRG8)",
          "Synched enum feature from /Camera/ImageFormatControl/PixelFormat to "
          "/Interface/InputControl/InputFormat value = BayerRG8.",
          "string feature can be synched to /Transportlayer/InputControl/InputCameraName "
          "(value = north)",
          "Synched string feature from /Camera/DeviceControl/DeviceUserID to "
          "/Transportlayer/InputControl/InputCameraName (value = north)",
          "bool feature can be synched to /Localdevice/InputControl/InputMirrored value = true",
          "Synched boolean feature from /Camera/ImageFormatControl/ReverseX to "
          "/Localdevice/InputControl/InputMirrored. value = true"}) {
        expected.push_back(sync + line);
    }
    EXPECT_EQ(Logged("Successfully loaded " + PathOf("board.sync") + ".", "Using snap start"),
              expected);

    std::vector<std::string> values;
    const Json report = Json::parse(result.output);
    for (const Json& feature : report["features"]) {
        if (feature["module"] == "Localdevice") {
            values.push_back(feature["value"].dump());
        }
    }
    EXPECT_EQ(values, (Lines{"64", "10000.0", "\"BayerRG8\"", "\"\"", "true"}));
}

TEST_F(Synchronisation, FollowsAWrite) {
    ExpectDone(LoggedMivora({"set", "Camera/PixelFormat=Mono12p"}));
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{std::string("1 ") + kSync +
                         "enum feature can be synched to /Localdevice/InputControl/InputFormat "
                         "(value = Mono12p)",
                     std::string("1 ") + kSync +
                         "Synched enum feature from /Camera/ImageFormatControl/PixelFormat to "
                         "/Localdevice/InputControl/InputFormat value = Mono12p.",
                     std::string("1 ") + kSync +
                         "enum feature can be synched to /Interface/InputControl/InputFormat "
                         "(value = Mono12p)",
                     std::string("1 ") + kSync +
                         "Synched enum feature from /Camera/ImageFormatControl/PixelFormat to "
                         "/Interface/InputControl/InputFormat value = Mono12p."}));
}

TEST_F(Synchronisation, FollowsAWriteToEveryModule) {
    ExpectDone(LoggedMivora({"set", "Interface/InputWidth=100"}));
    EXPECT_EQ(LoggedAfterOpening(), IntCopied("/Interface/InputControl/InputWidth",
                                              "/Localdevice/InputControl/InputWidth", 100));

    ExpectDone(LoggedMivora({"set", "localdevice/InputExposureTime=250.5"}));
    EXPECT_EQ(
        LoggedAfterOpening(),
        (Lines{std::string("1 ") + kSync +
                   "float feature can be synched to /Camera/AcquisitionControl/ExposureTime "
                   "(value = 250.500000, min = 10.000000, max = 10000000.000000)",
               std::string("1 ") + kSync +
                   "Synched float feature from /Localdevice/InputControl/InputExposureTime to "
                   "/Camera/AcquisitionControl/ExposureTime. value = 250.500000,"}));

    ExpectDone(LoggedMivora({"set", "Transportlayer/InputFormat=BayerRG8"}));
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{std::string("1 ") + kSync +
                         "enum feature can be synched to /Camera/ImageFormatControl/PixelFormat "
                         "(value = BayerRG8)",
                     std::string("1 ") + kSync +
                         "/Camera/ImageFormatControl/PixelFormat already has appropriate value. "
                         "Skipping update."}));
}

TEST_F(Synchronisation, IsRefusedBeforeAnythingIsWritten) {
    // A value that only a follower refuses.
    ExpectFailure(LoggedMivora({"set", "Camera/ExposureTime=2000000"}), 1,
                  {"WriteFeature failed with 9 ", " for Camera/ExposureTime=2000000\n",
                   "Camera/ExposureTime: 2",
                   " is refused by /Interface/InputControl/InputExposureTime, which depends on it: "
                   "Out of range"});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: float feature (value = "
                     "2000000.000000) wouldn't be synchable to "
                     "/Interface/InputControl/InputExposureTime (range error)"}));
    ExpectFailure(LoggedMivora({"set", "Camera/DeviceUserID=thirteen bits"}), 1,
                  {"/Transportlayer/InputControl/InputCameraName", "Out of range"});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: string feature (value = "
                     "thirteen bits) wouldn't be synchable to "
                     "/Transportlayer/InputControl/InputCameraName (range error)"}));
    // A value that the feature itself refuses.
    for (const char* value : {"nan", "inf", "1e300", "-1"}) {
        ExpectFailure(
            Mivora({"set", std::string("Camera/ExposureTime=") + value}), 1,
            {"WriteFeature failed with 8 ", "Camera/ExposureTime takes 10 to 1e+07, not "});
    }
    ExpectFailure(LoggedMivora({"set", "Camera/Width=65"}), 1,
                  {"WriteFeature failed with 8 ", "Camera/Width takes 16 to 64"});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::IntFeatureCheckSyncPath: int64 feature (value = 65) "
                     "wouldn't be applicable to /Camera/ImageFormatControl/Width (range error)"}));
    ExpectFailure(LoggedMivora({"set", "Camera/DeviceUserID=more than sixteen"}), 1,
                  {"WriteFeature failed with 8 ",
                   "Camera/DeviceUserID takes at most 16 bytes, not \"more than sixteen\""});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: enum feature (value = "
                     "more than sixteen) wouldn't be applicable to "
                     "/Camera/DeviceControl/DeviceUserID (range error)"}));
}

TEST_F(Synchronisation, IsRefusedWhereAFollowerIsProtectedOrUnknown) {
    UseFile({Entry("Camera", "DeviceUserID",
                   {{"Interface", "InterfaceID"}, {"Transportlayer", "InputCameraName"}}),
             Entry("Camera", "Width", {{"Interface", "Nothing"}}),
             Entry("Camera", "ReverseX", {{"Nowhere", "InputMirrored"}})});
    ExpectFailure(
        LoggedMivora({"set", "Camera/DeviceUserID=south"}), 1,
        {"\"south\" is refused by /Interface/InterfaceInformation/InterfaceID", "Write protected"});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::StringFeatureCheckSyncPath: Feature "
                     "/Interface/InterfaceInformation/InterfaceID cannot be written"}));
    // A later refusal replaces an earlier one.
    ExpectFailure(LoggedMivora({"set", "Camera/DeviceUserID=thirteen bits"}), 1,
                  {"/Transportlayer/InputControl/InputCameraName", "Out of range"});
    for (const auto& [feature, type, value] :
         {std::tuple{"Camera/Width", "Int", "32"}, std::tuple{"Camera/ReverseX", "Float", "0"}}) {
        ExpectFailure(LoggedMivora({"set", std::string(feature) + "=" + value}), 1,
                      {"is refused by <not available>", "Unknown accessibility"});
        EXPECT_EQ(LoggedAfterOpening(),
                  (Lines{std::string("0 CMivoraKVNPyxenClass::") + type +
                         "FeatureCheckSyncPath: Cannot query the accessibility of <not available>: "
                         "The designated instance (camera, feature etc.) cannot be found"}));
    }
}

TEST_F(Synchronisation, LogsTheLineWithoutConversionLetterUnchanged) {
    UseCamera("<feature name=\"ExposureAuto\" value=\"Continuous\"/>", "", "serial");
    ExpectFailure(
        LoggedMivora({"set", "Camera/ExposureTime=500"}), 1,
        {"WriteFeature failed with 7 ", "Camera/ExposureTime: cannot be written at present"});
    EXPECT_EQ(LoggedAfterOpening(),
              (Lines{"0 CMivoraKVNPyxenClass::FloatFeatureCheckSyncPath: Feature % cannot be "
                     "written"}));
}

TEST_F(Synchronisation, UsesTheEntriesBeforeAFault) {
    directory.Write("board.sync", "{\"SyncFeatures\":[" +
                                      Entry("Camera", "Width", {{"Interface", "InputWidth"}}) +
                                      ",\n" + Entry("Camera", "Stream0", {}) + "]}");
    const auto result = LoggedMivora({"get", "Interface/InputWidth"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "mivora: warning: feature synchronisation: " + PathOf("board.sync") +
                                 " is faulty; only what it declares before the fault is "
                                 "synchronised\n");
    EXPECT_EQ(result.output, "64\n");
    Lines expected{"1 FeatureSyncher::Init: Camera::Width will be synched with ",
                   "1   Interface::InputWidth"};
    const Lines copied =
        IntCopied("/Camera/ImageFormatControl/Width", "/Interface/InputControl/InputWidth", 64);
    expected.insert(expected.end(), copied.begin(), copied.end());
    EXPECT_EQ(Logged("Loading", "Using snap start"), expected);
}

TEST_F(Synchronisation, NamesTheFaultOfAFile) {
    directory.Write("board.sync", "{\"SyncFeatures\":[]} more");
    EXPECT_EQ(Mivora({"get", "Camera/Width"}).errors,
              "mivora: warning: feature synchronisation: " + PathOf("board.sync") +
                  " is faulty (extra file content after SyncFeatures definition); only what it "
                  "declares before the fault is synchronised\n");
    directory.Write("board.sync", "{\"SyncFeatures\":[]}");
    ExpectDone(Mivora({"get", "Camera/Width"}));
}

TEST_F(Synchronisation, OpensTheCameraWithoutAFileThatCanBeRead) {
    const std::string path = PathOf("board.sync");
    std::remove(path.c_str());
    for (int round = 0; round < 2; ++round) {
        const auto result = LoggedMivora({"get", "Camera/Width"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "mivora: warning: feature synchronisation: Could not open " +
                                     path + ". No feature synchronization will happen.\n");
        EXPECT_EQ(Logged("Found TL specific configuration", "Using snap start"),
                  (Lines{"0 FeatureSyncher::Init: Could not open " + path +
                         ". No feature synchronization will happen."}));
        ASSERT_TRUE(platform::CreateDirectories(path)); // on the second pass it is a directory
    }
}

} // namespace
} // namespace scenario
