// cameras_test.cpp - listing, selecting and watching cameras
#include "tests/scenario/program_test.h"
#include "tests/scenario/running_watch.h"

namespace scenario {
namespace {

class Cameras : public ProgramTest {
protected:
    /// Two cameras of one name, the second of which somebody else has open.
    void UseTwoCameras() {
        directory.Write(
            "PxnC.xml",
            "<PxnC><camera id=\"A\" extendedId=\"Eth0|A\" model=\"Twin\" serial=\"11\"/>"
            "<camera id=\"B\" extendedId=\"Eth0|B\" model=\"Twin\" serial=\"22\" "
            "access=\"read\"/></PxnC>");
    }
    static std::string KeyOf(const std::string& id) {
        std::string key = support::RunProgram("pyxen-tool", {"camera-key", id}).output;
        std::erase(key, '\n');
        return key;
    }
};

TEST_F(Cameras, AreListedAsJson) {
    UseCamera();
    const auto result = Mivora({"cameras", "--json"});
    ExpectDone(result);
    const Json list = Json::parse(result.output);
    const auto key = support::RunProgram("pyxen-tool", {"camera-key", "Eth0|A"});
    EXPECT_EQ(list, Json::parse("[{\"index\":0,\"uniqueId\":" +
                                std::to_string(std::stoul(key.output, nullptr, 16)) +
                                ",\"name\":\"Camera A\",\"active\":false,\"vendor\":\"\","
                                "\"model\":\"Camera A\",\"serialNumber\":\"A\","
                                "\"userName\":\"\",\"interface\":\"Ethernet adapter 0\","
                                "\"transportLayer\":\"GEV\",\"access\":\"free\","
                                "\"id\":\"A\",\"extendedId\":\"Eth0|A\"}]"));
}

TEST_F(Cameras, OfTheSimulatorAreThreeWithoutAConfiguration) {
    const auto result = support::RunProgram("mivora", {"cameras", "--json"});
    ExpectDone(result);
    EXPECT_EQ(Json::parse(result.output).size(), 3u);
}

TEST_F(Cameras, CanBeNone) {
    directory.Write("PxnC.xml", "<PxnC/>");
    EXPECT_EQ(Mivora({"cameras", "--json"}).output, "[]\n");
    EXPECT_EQ(Mivora({"cameras"}).output, "There is no camera.\n");
    ExpectFailure(Mivora({"info"}), 1, {"there is no camera"});
    ExpectFailure(Mivora({"--camera", "0", "info"}), 1, {"there is no camera \"0\""});
}

TEST_F(Cameras, AreChosenByIndexIdAndName) {
    const Json all = Json::parse(support::RunProgram("mivora", {"cameras", "--json"}).output);
    const std::string id = std::to_string(all[1]["uniqueId"].get<unsigned long>());
    for (const std::string& choice : {std::string("1"), id, all[1]["name"].get<std::string>()}) {
        const auto result =
            support::RunProgram("mivora", {"--camera", choice, "cameras", "--json"});
        ExpectDone(result);
        const Json list = Json::parse(result.output);
        for (std::size_t i = 0; i < list.size(); ++i) {
            EXPECT_EQ(list[i]["active"], i == 1) << choice;
        }
    }
}

TEST_F(Cameras, RememberedInTheConfigurationAreActive) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|A\n");
    EXPECT_TRUE(Json::parse(Mivora({"cameras", "--json"}).output)[0]["active"]);
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    EXPECT_FALSE(Json::parse(Mivora({"cameras", "--json"}).output)[0]["active"]);
}

TEST_F(Cameras, AreListedAsATable) {
    UseTwoCameras();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    const auto result = Mivora({"cameras"});
    ExpectDone(result);
    const std::string adapter = "Ethernet adapter 0  ";
    const std::string common = "  Twin  Twin   ";
    EXPECT_EQ(result.output, "     unique id   name  model  serial number  interface           "
                             "access               UniqueId\n"
                             "  0  " +
                                 KeyOf("Eth0|A") + common + "11             " + adapter +
                                 "free                 Eth0|A\n"
                                 "* 1  " +
                                 KeyOf("Eth0|B") + common + "22             " + adapter +
                                 "in use, can be read  Eth0|B\n");
}

TEST_F(Cameras, AreNeverReplacedByAnother) {
    UseTwoCameras();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|C\n");
    for (const Arguments& command :
         {Arguments{"info"}, Arguments{"snap", "-o", PathOf("image.png")},
          Arguments{"grab", "--frames", "1"}, Arguments{"get", "Camera/Width"},
          Arguments{"param", "list"}, Arguments{"features"}}) {
        ExpectFailure(Mivora(command), 1,
                      {"the configured camera \"Eth0|C\" (UniqueId in " + PathOf("host.ini") +
                           ") is not there; there are",
                       "camera 0 (Twin, " + KeyOf("Eth0|A") +
                           "), serial number 11, at Ethernet adapter 0, Eth0|A",
                       "camera 1 (Twin, ", "Eth0|B, in use, can be read"});
    }
    const auto list = Mivora({"cameras"});
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(list.errors, "mivora: the configured camera \"Eth0|C\" is not there\n");
    ExpectDone(Mivora({"--camera", "0", "info"}));
}

TEST_F(Cameras, AreChosenByAnyTextThatOnlyOneHas) {
    UseTwoCameras();
    const std::string texts[] = {"Eth0|B", "B", "22", KeyOf("Eth0|B")};
    for (const std::string& text : texts) {
        const auto result = Mivora({"--camera", text, "cameras", "--json"});
        ExpectDone(result);
        const Json list = Json::parse(result.output);
        EXPECT_FALSE(list[0]["active"]) << text;
        EXPECT_TRUE(list[1]["active"]) << text;
    }
    ExpectFailure(Mivora({"--camera", "Twin", "info"}), 1,
                  {"\"Twin\" names 2 cameras", "serial number 11, at Ethernet adapter 0, Eth0|A",
                   "serial number 22, at Ethernet adapter 0, Eth0|B"});
    ExpectFailure(Mivora({"--camera", "Tw", "info"}), 1, {"there is no camera \"Tw\"; there are"});
}

TEST_F(Cameras, ThatSomebodyElseHasOpenAreNamedSo) {
    UseTwoCameras();
    ExpectFailure(
        Mivora({"--camera", "1", "info"}), 1,
        {"OpenActCamera failed with 4", "for camera 1 (Twin, ", "somebody else has it open"});
}

TEST_F(Cameras, KeepNamesThatAreNotUtf8ReadableAsJson) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" model=\"caf\xE9 \xC3\xA9\"/></PxnC>");
    const auto result = Mivora({"cameras", "--json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(Json::parse(result.output)[0]["name"], "caf\xEF\xBF\xBD \xC3\xA9");
}

TEST_F(Cameras, DescribeTheirImages) {
    UseCamera(Format("Mono12p"));
    const auto result = Mivora({"info", "--json"});
    ExpectDone(result);
    const Json info = Json::parse(result.output);
    EXPECT_EQ(info["driverDescription"],
              "Mivora grabber library for Korvane Pyxen compatible cameras");
    EXPECT_EQ(info["camera"]["name"], "Camera A");
    const Json& mode = info["mode"];
    EXPECT_EQ(mode["width"], 64);
    EXPECT_EQ(mode["height"], 48);
    EXPECT_EQ(mode["components"], 1);
    EXPECT_EQ(mode["allocatedBits"], 16);
    EXPECT_EQ(mode["bits"], 12);
    EXPECT_EQ(mode["colorCoding"], 0);
    EXPECT_EQ(mode["numPixels"], 64 * 48);
    EXPECT_EQ(mode["imageSize"], 64 * 48 * 2);
    EXPECT_PRED2(Contains, Mivora({"info"}).output, "64 x 48 pixels");
}

TEST_F(Cameras, ServeParametersWithinTheirLimits) {
    UseCamera();
    EXPECT_EQ(Mivora({"param", "get", "261"}).output, "value1=-6 value2=0\n");
    EXPECT_EQ(Mivora({"param", "limits", "261"}).output, "min=-6 max=0 min2=0 max2=0\n");
    EXPECT_EQ(Mivora({"param", "get", "257"}).output, "value1=1000 value2=5000\n");
    EXPECT_EQ(Mivora({"param", "set", "257", "2000"}).output, "value1=2000 value2=5000\n");
    EXPECT_EQ(Mivora({"param", "set", "257", "2000", "0x2710"}).output,
              "value1=2000 value2=10000\n");
    EXPECT_EQ(Mivora({"param", "set", "261", "-3"}).output, "value1=-3 value2=0\n");
    ExpectFailure(Mivora({"param", "set", "261", "1"}), 1,
                  {"SetGrabberParam failed with 14", "parameter 261"});
    ExpectFailure(Mivora({"param", "get", "262"}), 1, {"GetGrabberParam failed with 34"});
    ExpectFailure(Mivora({"param", "set", "257", "abc"}), 2, {"no number"});
    ExpectFailure(Mivora({"param", "get"}), 2, {"ID"});
    ExpectFailure(Mivora({"param"}), 2, {"subcommand"});
}

TEST_F(Cameras, HaveCommandChannels) {
    UseCamera();
    const auto result = Mivora({"channels"});
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output, "type 0  Serial Port");
    EXPECT_PRED2(Contains, result.output, "type 1  Pyxen Serial Port");
}

TEST_F(Cameras, AreWatchedForATime) {
    UseCamera();
    const auto result = Mivora({"watch", "--for", "50"});
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output, "watching camera 0 (Camera A");
    EXPECT_FALSE(Contains(result.output, "changed"));
    ExpectFailure(Mivora({"watch", "--for", "-1"}), 2, {"--for: \"-1\" is no number"});
}

TEST_F(Cameras, AreWatchedAsTheyComeAndGo) {
    // It goes during a call that opens it, and comes back during the second look for it.
    UseCamera("", Faults("at-call PxnCameraInfoQueryByHandle 1 unplug A") +
                      Faults("at-call PxnCamerasList 3 plug A"));
    std::string key = support::RunProgram("pyxen-tool", {"camera-key", "Eth0|A"}).output;
    std::erase(key, '\n');
    const std::string camera = "camera 0 (Camera A, " + key + ")";
    RunningWatch watch(WithConfig({"watch"}));
    EXPECT_TRUE(watch.Prints("watching " + camera));
    EXPECT_TRUE(watch.Prints(" camera configuration changed"));
    EXPECT_TRUE(watch.Prints(" " + camera + " is gone"));
    EXPECT_TRUE(watch.Prints(" " + camera + " is there"));
    EXPECT_EQ(watch.Errors(), "");
}

TEST_F(Cameras, AreWatchedForOnlyWhenTheyAreTheConfiguredOne) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" extendedId=\"Eth0|A\" model=\"Camera A\"/>"
                                "<camera id=\"B\" extendedId=\"Eth0|B\" model=\"Camera B\" "
                                "plugged=\"false\"/>" +
                                    Faults("at-call PxnCamerasList 3 plug B") + "</PxnC>");
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    RunningWatch watch(WithConfig({"watch"}));
    EXPECT_TRUE(watch.Prints("watching; the configured camera \"Eth0|B\" is not there yet"));
    EXPECT_TRUE(watch.Prints(" is there"));
    EXPECT_PRED2(Contains, watch.Output(), "(Camera B, ");
    EXPECT_FALSE(Contains(watch.Output(), "(Camera A, "));
    EXPECT_EQ(watch.Errors(), "");
}

TEST_F(Cameras, AreWatchedFromTheirFirstAppearance) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" model=\"Camera A\" plugged=\"false\"/>" +
                                    Faults("at-call PxnCamerasList 2 plug A") + "</PxnC>");
    RunningWatch watch(WithConfig({"watch"}));
    EXPECT_TRUE(watch.Prints("watching; there is no camera yet"));
    EXPECT_TRUE(watch.Prints(" is there"));
    EXPECT_PRED2(Contains, watch.Output(), "camera 0 (Camera A");
    EXPECT_EQ(watch.Errors(), "");
}

} // namespace
} // namespace scenario
