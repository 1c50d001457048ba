// parameters_test.cpp - exposure, frame interval and time base
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class Parameters : public ProgramTest {
protected:
    static constexpr const char* kOpen = "Init\nSetActCameraIndex 0\nOpenActCamera\n";
    static constexpr const char* kOpened = "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\n";
};

TEST_F(Parameters, NeedAnInitialisedGrabberAndAnOpenCamera) {
    UseCamera();
    ExpectShell("mivora",
                "GetGrabberParam 257\nGetGrabberParamLimits 261\nSetGrabberParam 257 1 2\n"
                "Init\nGetGrabberParam 257\nGetGrabberParamLimits 267\nSetGrabberParam 261 -3 0\n",
                "GetGrabberParam = 2 value1=0 value2=0\n"
                "GetGrabberParamLimits = 2 min=0 max=0 min2=0 max2=0\nSetGrabberParam = 2\n"
                "Init = 0\nGetGrabberParam = 10 value1=0 value2=0\n"
                "GetGrabberParamLimits = 10 min=0 max=0 min2=0 max2=0\nSetGrabberParam = 10\n");
}

TEST_F(Parameters, AreReadByNumber) {
    UseCamera();
    std::string lines = kOpen;
    std::string answers = kOpened;
    for (const char* id : {"259", "260", "262", "263", "265", "267"}) {
        lines += std::string("GetGrabberParam ") + id + "\nGetGrabberParamLimits " + id +
                 "\nSetGrabberParam " + id + " 0 0\n";
        answers += "GetGrabberParam = 34 value1=0 value2=0\n"
                   "GetGrabberParamLimits = 34 min=0 max=0 min2=0 max2=0\nSetGrabberParam = 34\n";
    }
    for (const char* id : {"256", "258"}) {
        lines += std::string("GetGrabberParam ") + id + "\nGetGrabberParamLimits " + id + "\n";
        answers += "GetGrabberParam = 0 value1=0 value2=0\n"
                   "GetGrabberParamLimits = 34 min=0 max=0 min2=0 max2=0\n";
    }
    ExpectShell("mivora",
                lines + "GetGrabberParamLimits 1\nGetGrabberParam 4096\n"
                        "GetGrabberParamLimits 4096\nGetGrabberParam 261\n",
                answers + "GetGrabberParamLimits = 0 min=1 max=18446744073709551615 min2=0 max2=0\n"
                          "GetGrabberParam = 0 value1=0 value2=0\n"
                          "GetGrabberParamLimits = 0 min=0 max=18446744073709551615 min2=0 "
                          "max2=18446744073709551615\n"
                          "GetGrabberParam = 0 value1=-6 value2=0\n");
}

TEST_F(Parameters, AreListedWhereTheyAreServed) {
    UseCamera();
    const auto table = Mivora({"param", "list"});
    ExpectDone(table);
    EXPECT_EQ(
        table.output,
        "   1  frame buffers                    value1=1 value2=0 min=1 max=18446744073709551615 "
        "min2=0 max2=0\n"
        " 128  kinds of acquisition, a bit mask value1=10 value2=0\n"
        " 256  timer mode                       value1=0 value2=0\n"
        " 257  exposure and frame interval      value1=1000 value2=5000 min=10 max=10000000 "
        "min2=1000 max2=10000000\n"
        " 258  timer enabled                    value1=0 value2=0\n"
        " 261  time base                        value1=-6 value2=0 min=-6 max=0 min2=0 max2=0\n"
        "4096  frames received                  value1=0 value2=0 min=0 max=18446744073709551615 "
        "min2=0 max2=18446744073709551615\n");
    const auto result = Mivora({"param", "list", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["schema"], 1);
    const Json& list = report["parameters"];
    ASSERT_EQ(list.size(), 7u);
    EXPECT_EQ(list[5], Json::parse("{\"id\":261,\"name\":\"time base\",\"value1\":-6,"
                                   "\"value2\":0,\"min\":-6,\"max\":0,\"min2\":0,\"max2\":0}"));
    EXPECT_FALSE(list[1].contains("min"));
    const std::string help = Mivora({"param", "--help"}).output;
    for (const char* unserved : {"259", "260", "262", "263", "265", "267"}) {
        EXPECT_EQ(help.find(unserved), std::string::npos) << unserved;
    }
}

TEST_F(Parameters, OfTheConfigurationFileAreNotWrittenToTheCamera) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nExposure=2000\nInterval=8000\n");
    ExpectShell("mivora",
                "LoadGrabberConfig\nGetTimerMicroseconds\n" + std::string(kOpen) +
                    "GetGrabberParam 257\nGetTimerMicroseconds\nSaveGrabberConfig\n"
                    "CloseActCamera\nSaveGrabberConfig\n",
                "LoadGrabberConfig = 0\nGetTimerMicroseconds = ok exposure=2000 interval=8000\n" +
                    std::string(kOpened) +
                    "GetGrabberParam = 0 value1=1000 value2=5000\n"
                    "GetTimerMicroseconds = ok exposure=2000 interval=8000\n"
                    "SaveGrabberConfig = 0\nCloseActCamera = 0\nSaveGrabberConfig = 0\n");
    EXPECT_PRED2(Contains, directory.Read("host.ini"), "Exposure=1000\nInterval=5000\n");
    EXPECT_PRED2(Contains, Mivora({"param", "--help"}).output,
                 "Exposure and Interval of the configuration\nfile are not");
}

TEST_F(Parameters, ReachCamerasWithAndWithoutAFixedInterval) {
    for (const char* kind : {"gige", "serial"}) {
        UseCamera("", "", kind);
        ExpectShell("pyxen-tool",
                    std::string(kOpen) +
                        "GetGrabberParam 257\nSetGrabberParam 257 2000 8000\nGetExposureTime\n"
                        "GetFrameInterval\nSetGrabberParam 261 -3 0\nGetGrabberParam 257\n"
                        "SetGrabberParam 257 4 16\nSetGrabberParam 261 -6 0\nGetGrabberParam 257\n",
                    std::string(kOpened) +
                        "GetGrabberParam = 0 value1=1000 value2=5000\nSetGrabberParam = 0\n"
                        "GetExposureTime = 1 value=2000\nGetFrameInterval = 1 value=8000\n"
                        "SetGrabberParam = 0\nGetGrabberParam = 0 value1=2 value2=8\n"
                        "SetGrabberParam = 0\nSetGrabberParam = 0\n"
                        "GetGrabberParam = 0 value1=4000 value2=16000\n");
    }
}

TEST_F(Parameters, OutsideTheirLimitsChangeNothing) {
    UseCamera("", "", "serial");
    std::string lines = kOpen;
    std::string answers = kOpened;
    for (const char* values : {"9 5000", "10000001 5000", "1000 0", "1000 18446744073709551615",
                               "18446744073709551615 5000", "-1 -1"}) {
        lines += std::string("SetGrabberParam 257 ") + values + "\n";
        answers += "SetGrabberParam = 14\n";
    }
    for (const char* values : {"1 0", "-7 0", "-3 1", "-3 -1"}) {
        lines += std::string("SetGrabberParam 261 ") + values + "\n";
        answers += "SetGrabberParam = 14\n";
    }
    ExpectShell("mivora", lines + "GetGrabberParam 257\nGetGrabberParam 261\n",
                answers + "GetGrabberParam = 0 value1=1000 value2=5000\n"
                          "GetGrabberParam = 0 value1=-6 value2=0\n");
    for (const char* value : {"nan", "1e3", "1000.5", "18446744073709551616", ""}) {
        ExpectFailure(Mivora({"param", "set", "257", value}), 2, {"no number"});
    }
    ExpectFailure(Mivora({"param", "set", "257", "1"}), 1,
                  {"failed with 14", "\n  parameter 257 takes 10 to 10000000, and "});
}

TEST_F(Parameters, RefuseAnExposureLongerThanTheInterval) {
    for (const char* kind : {"gige", "serial"}) {
        UseCamera("", "", kind);
        // The camera accepts the exposure and lowers its frame rate, then refuses the previous
        // rate.
        ExpectFailure(Mivora({"param", "set", "257", "20000", "5000"}), 1,
                      {"SetGrabberParam failed with 34", "parameter 257"});
        ExpectShell("mivora",
                    std::string(kOpen) +
                        "SetTimerMicroseconds 3000 7000\nEvents\nSetTimerMicroseconds 7000 7000\n"
                        "SetTimerMicroseconds 8000 7000\nEvents\nGetTimerMicroseconds\n",
                    std::string(kOpened) +
                        "SetTimerMicroseconds = ok\nEvents = ok postProcess=0 lastBuffer=-1 "
                        "camCfgChange=0 camCntrl=[] dialogs=[4294967295,2,3]\n"
                        "SetTimerMicroseconds = ok\nSetTimerMicroseconds = ok\n"
                        "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[] "
                        "dialogs=[]\nGetTimerMicroseconds = ok exposure=3000 interval=7000\n");
    }
}

TEST_F(Parameters, AreRescaledWithTheTimeBase) {
    UseCamera();
    ExpectShell("mivora",
                std::string(kOpen) +
                    "SetTimerMicroseconds 20001 40000\nSetGrabberParam 261 -3 0\n"
                    "GetTimerMicroseconds\nSetGrabberParam 261 -6 0\nGetTimerMicroseconds\n"
                    "SetGrabberParam 261 0 0\nGetTimerMicroseconds\n",
                std::string(kOpened) +
                    "SetTimerMicroseconds = ok\nSetGrabberParam = 0\n"
                    "GetTimerMicroseconds = ok exposure=20000 interval=40000\n"
                    "SetGrabberParam = 0\n"
                    "GetTimerMicroseconds = ok exposure=20000 interval=40000\n"
                    "SetGrabberParam = 0\nGetTimerMicroseconds = ok exposure=0 interval=0\n");
}

TEST_F(Parameters, AreKeptForTheConfigurationWhenTheCameraIsClosed) {
    UseCamera();
    ExpectShell("mivora",
                "LoadGrabberConfig\n" + std::string(kOpen) +
                    "SetGrabberParam 257 2000 8000\nCloseActCamera\nSaveGrabberConfig\n",
                "LoadGrabberConfig = 0\n" + std::string(kOpened) +
                    "SetGrabberParam = 0\nCloseActCamera = 0\nSaveGrabberConfig = 0\n");
    const std::string saved = directory.Read("host.ini");
    EXPECT_PRED2(Contains, saved, "Exposure=2000\n");
    EXPECT_PRED2(Contains, saved, "Interval=8000\n");
    EXPECT_PRED2(Contains, saved, "TimeBase=-6\n");
}

} // namespace
} // namespace scenario
