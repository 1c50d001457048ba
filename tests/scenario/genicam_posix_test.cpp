// genicam_posix_test.cpp - the programs with a GigE Vision camera on the loopback interface
#include "tests/scenario/genicam_programs.h"
#include "tests/scenario/running_watch.h"

namespace scenario {
namespace {

TEST_F(GenicamPrograms, GrabAHundredWholeFrames) {
    const auto result =
        support::RunProgram("mivora", GrabArguments({"--frames", "100", "--buffers", "20"}));
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 100);
    EXPECT_EQ(report["recording"]["recorded"], 100);
    EXPECT_FALSE(report["cameraLost"]);
    kPicture.ExpectGrabbed(PathOf("images"), report);
}

TEST_F(GenicamPrograms, EndWithAnErrorWhenTheCameraIsUnpluggedAndServeTheNext) {
    platform::Process process;
    Start(process, GrabArguments({"--frames", "0"}));
    EXPECT_TRUE(WaitForImage(5));
    camera.Kill();
    const support::ProgramResult result = End(process);
    ExpectFailure(result, 1, {"\"message\":\"no more frames from camera 0 (Fake"});
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["cameraLost"]);
    EXPECT_GE(report["frames"], 5);
    EXPECT_TRUE(report["account"]["closed"]) << report;

    EXPECT_EQ(ListCameras(), Json::array());
    camera.Restart();
    ASSERT_TRUE(WaitUntilListed());
    ExpectDone(Mivora({"--sdk", "genicam", "snap", "-o", PathOf("image.raw")}));
    EXPECT_EQ(kPicture.CountWrongPixels(directory.Read("image.raw")), 0u);
}

TEST_F(GenicamPrograms, GrabWithTheWidthThatIsSet) {
    const auto result = Mivora({"--sdk", "genicam", "grab", "--set", "Camera/Width=640", "--frames",
                                "100", "--buffers", "20", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 100);
    EXPECT_EQ(report["imageSize"], 640 * 512);
    EXPECT_EQ(Mivora({"--sdk", "genicam", "get", "Camera/Width"}).output, "640\n");
}

TEST_F(GenicamPrograms, SettingsOfOneCameraAreLoadedIntoAnother) {
    const auto run = [&](const std::string& action) {
        return Mivora({"--sdk", "genicam", "settings", action, PathOf("bench.json")});
    };
    ExpectDone(Mivora({"--sdk", "genicam", "set", "Camera/Width=256", "Camera/Height=128"}));
    ExpectDone(run("save"));
    camera.Kill();
    camera.Restart();
    ASSERT_TRUE(WaitUntilListed());
    EXPECT_EQ(Mivora({"--sdk", "genicam", "get", "Camera/Width"}).output, "512\n");
    EXPECT_EQ(run("diff").status, 1);
    const auto loaded = run("load");
    ExpectDone(loaded);
    EXPECT_PRED2(Contains, loaded.output, "Camera/Width: 512 -> 256\n");
    EXPECT_EQ(Mivora({"--sdk", "genicam", "get", "Camera/Width", "Camera/Height"}).output,
              "Camera/Width=256\nCamera/Height=128\n");
    ExpectDone(run("diff"));
}

TEST_F(GenicamPrograms, TheCamerasDescriptionIsWrittenAsItIs) {
    const auto printed = Mivora({"--sdk", "genicam", "features", "--xml"});
    ExpectDone(printed);
    EXPECT_PRED2(Contains, printed.output, "<RegisterDescription");
    const auto written = Mivora({"--sdk", "genicam", "features", "--xml", PathOf("camera.xml")});
    ExpectDone(written);
    EXPECT_PRED2(Contains, written.output, PathOf("camera.xml") + ": ");
    EXPECT_EQ(directory.Read("camera.xml"), printed.output);
}

TEST_F(GenicamPrograms, WatchReportsThatTheCameraGoesAndComesBack) {
    const std::string name = NameOfFirst();
    RunningWatch watch(WithConfig({"--sdk", "genicam", "watch"}));
    ASSERT_TRUE(watch.Prints("watching " + name));
    camera.Kill();
    ASSERT_TRUE(watch.Prints(" camera configuration changed"));
    ASSERT_TRUE(watch.Prints(" " + name + " is gone"));
    camera.Restart();
    ASSERT_TRUE(watch.Prints(" " + name + " is there"));
    ExpectDone(watch.Interrupt());
}

TEST_F(GenicamPrograms, WatchTakesTheFirstCameraThatComes) {
    const std::string name = NameOfFirst();
    camera.Kill();
    RunningWatch watch(WithConfig({"--sdk", "genicam", "watch"}));
    ASSERT_TRUE(watch.Prints("watching; there is no camera yet"));
    camera.Restart();
    ASSERT_TRUE(watch.Prints(" " + name + " is there"));
    // It is watched like a camera that was present from the start.
    camera.Kill();
    ASSERT_TRUE(watch.Prints(" camera configuration changed"));
    ASSERT_TRUE(watch.Prints(" " + name + " is gone"));
    ExpectDone(watch.Interrupt());
}

TEST_F(GenicamPrograms, DoctorFindsTheCameraAndThatAnotherProgramHasIt) {
    const Arguments doctor{"--sdk",  "genicam", "doctor", "--interface", "lo",
                           "--only", "network", "--only", "camera"};
    const auto sound = Mivora(doctor);
    EXPECT_EQ(sound.status, 0) << sound.output << sound.errors;
    EXPECT_PRED2(Contains, sound.output, ": replies on lo (127.0.0.1/8) from 127.0.0.1, ");
    EXPECT_PRED2(Contains, sound.output, NameOfFirst() + ": 5 of 5 were whole\n");
    platform::Process process;
    Start(process, GrabArguments({"--frames", "0"}));
    ASSERT_TRUE(WaitForImage(1));
    const auto busy = Mivora(doctor);
    EXPECT_EQ(busy.status, 1);
    EXPECT_PRED2(Contains, busy.output,
                 "problem  open            " + NameOfFirst() + ": in use by another program");
    process.Interrupt();
    ExpectDone(End(process));
}

TEST_F(GenicamPrograms, SelftestPassesAndLeavesTheSettings) {
    ExpectDone(Mivora({"--sdk", "genicam", "set", "Camera/Width=256"}));
    const auto result = Mivora({"--sdk", "genicam", "selftest", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["fail"], 0);
    for (const Json& check : report["checks"]) {
        // The fake camera's description marks no feature as streamable.
        EXPECT_EQ(check["result"], check["name"] == "features-written" ? "not applicable" : "pass")
            << check;
    }
    EXPECT_EQ(Mivora({"--sdk", "genicam", "get", "Camera/Width"}).output, "256\n");
}

} // namespace
} // namespace scenario
