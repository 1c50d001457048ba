// initialisation_test.cpp - from constructed to usable and back
#include "tests/module/grabber_fixture.h"

using namespace pyxen;

namespace {

// A dialog that tells of its end.
class HeldDialog : public ICamCntrlDialog {
public:
    explicit HeldDialog(bool& flag) : destroyed(flag) {}
    ~HeldDialog() override { destroyed = true; }
    void Show() override {}
    void Hide() override {}
    bool IsVisible() const override { return true; }
    void Update(uint32_t) override {}
    void SetAcquisitionMarks(bool, bool) override {}

private:
    bool& destroyed;
};

class Initialisation : public GrabberFixture {
protected:
    // The dialog is the grabber's from then on.
    void HoldDialog(ICamCntrlDialog* dialog) {
        struct Holder : CMivoraGrabber {
            static void Give(CMivoraGrabber& grabber, ICamCntrlDialog* given) {
                (grabber.*(&Holder::SetCamCntrlDialogObject))(given);
            }
        };
        Holder::Give(Grabber(), dialog);
    }
    std::string Config() const { return directory.PathOf("PxnC.xml"); }
    // The lines of Init without those of loading the SDK.
    Texts InitLog() {
        Texts lines;
        for (const std::string& line : Log()) {
            const bool loading =
                line.find("CPyxenAPIAccess") != std::string::npos || line.find("1 Found ") == 0;
            if (!loading) {
                lines.push_back(line);
            }
        }
        return lines;
    }
    const std::string tag = "CMivoraKVNPyxenClass::Init";
    const Texts initCalls = {
        "PxnStartup(null)",
        "PxnVersionQuery(12)",
        "PxnFeaturesList(system, null, 0, 88)",
        "PxnFeaturesList(system, array, 4, 88)",
        "PxnInterfacesList(null, 0, 40)",
        "PxnInterfacesList(array, 1, 40)",
        "PxnCamerasList(array, 100, 80)",
        "PxnFeatureInvalidationRegister(system, \"EventCameraDiscovery\", cb)"};
};

TEST_F(Initialisation, AsksTheSdkInOrder) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Calls(), initCalls);
    EXPECT_TRUE(Grabber().IsInitialized());
}

TEST_F(Initialisation, SaysWhatItDoesInOrder) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    const Texts lines = Log();
    ASSERT_EQ(lines.size(), 2u + 1 + 55 + 1 + 1);
    EXPECT_EQ(lines[0], "1 " + tag);
    EXPECT_EQ(lines[1],
              "1 " + tag + ": " + Config() + " not found. Using default Pyxen config file");
    EXPECT_EQ(lines[2].substr(0, 51), "1 CPyxenAPIAccess::CPyxenAPIAccess: Trying to load ");
    EXPECT_EQ(lines[58], "1 CPyxenAPIAccess::CPyxenAPIAccess: calling PxnStartup...");
    EXPECT_EQ(lines[59], "1 " + tag + ": Using Pyxen V2.1.0");
}

TEST_F(Initialisation, HandsTheConfigurationFileToTheSdk) {
    directory.Write("PxnC.xml", "<PxnC/>");
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Log()[1], "1 " + tag + ": Using Pyxen config file: " + Config());
    EXPECT_EQ(Calls().front(), "PxnStartup(\"" + Config() + "\")");
}

TEST_F(Initialisation, ADirectoryOfThatNameIsNoConfigurationFile) {
    directory.Write("PxnC.xml/inner", "");
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Calls().front(), "PxnStartup(null)");
}

TEST_F(Initialisation, WithoutConfigurationDirectoryTheFileIsLookedForAtTheRoot) {
    WithoutIni();
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Log()[1], "1 " + tag + ": " + platform::kPathSeparator +
                            "PxnC.xml not found. Using default Pyxen config file");
}

TEST_F(Initialisation, TheSecondTimeAnswersThatItIsDone) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().Init(), MV_ALREADY_INITIALISED);
    EXPECT_EQ(Log(), Texts{"1 " + tag});
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(Initialisation, WithoutSdkItIsRefusedAndMayBeTriedAgain) {
    sdk.Fail("PxnStartup", PxnErrNoTL);
    EXPECT_EQ(Grabber().Init(), MV_REFUSED);
    EXPECT_FALSE(Grabber().IsInitialized());
    EXPECT_EQ(
        Log().back(),
        "0 CPyxenAPIAccess::CPyxenAPIAccess: PxnStartup returned error: No transport layers were found");
    EXPECT_EQ(Calls(), (Texts{"PxnStartup(null)", "PxnShutdown()"}));
    EXPECT_EQ(sdk.Registrations().size(), 0u);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Calls(), initCalls);
}

TEST_F(Initialisation, AFailedOneLeavesTheOpenCameraOfAnotherGrabberAlone) {
    Prepare(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    Forget();
    {
        CMivoraKVNPyxenClass other(nullptr);
        sdk.Fail("PxnStartup", PxnErrNoTL);
        EXPECT_EQ(other.Init(), MV_REFUSED);
        EXPECT_EQ(Calls(), (Texts{"PxnStartup(null)", "PxnShutdown()"}));
    }
    EXPECT_EQ(sdk.StartupCount(), 1);
    EXPECT_TRUE(sdk.IsCapturing());
    EXPECT_EQ(sdk.AnnouncedFrames(), (std::vector<std::uint64_t>{0, 1}));
    EXPECT_EQ(sdk.Registrations().size(), 1u);
    EXPECT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(sdk.QueuedFrames(), (std::vector<std::uint64_t>{0, 1}));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
}

TEST_F(Initialisation, WritesTheVersionText) {
    EXPECT_STREQ(Grabber().GetDriverVersion(), "");
    EXPECT_EQ(Calls(), Texts{});
    sdk.Data().version = {4000000000, 20, 3};
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_STREQ(Grabber().CMivoraGrabber::GetDriverVersion(), "Pyxen V4000000000.20.3 (2.1.0.7)");
}

TEST_F(Initialisation, TheVersionTextIsAskedForAnewInAnotherSpelling) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    Forget();
    sdk.Data().version = {9, 8, 7};
    EXPECT_STREQ(Grabber().GetDriverVersion(), "PyxenC V9.8.7 (2.1.0.7)");
    EXPECT_EQ(Calls(), Texts{"PxnVersionQuery(12)"});
    EXPECT_EQ(Log(), Texts{});
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_STREQ(Grabber().GetDriverVersion(), "PyxenC V9.8.7 (2.1.0.7)");
}

TEST_F(Initialisation, AVersionThatCannotBeReadIsZero) {
    sdk.Fail("PxnVersionQuery", PxnErrIO);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(InitLog().back(), "1 " + tag + ": Using Pyxen V0.0.0");
}

TEST_F(Initialisation, FillsTheSystemCache) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_STREQ(Grabber().SystemCache().GetModuleName(), "PxnSystem");
    EXPECT_EQ(Grabber().SystemCache().GetHandle(), PXN_SYSTEM_HANDLE);
    EXPECT_NE(Grabber().SystemCache().Find("EventCameraDiscovery"), nullptr);
}

TEST_F(Initialisation, ASystemWithoutListStillInitialises) {
    sdk.Fail("PxnFeaturesList", PxnErrFeaturesUnavailable);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().SystemCache().GetFeatureCount(), 0u);
}

TEST_F(Initialisation, AsksForNoInterfacesWhenThereAreNone) {
    sdk.Data().interfaces.clear();
    sdk.Data().cameras.clear();
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnInterfacesList"}), Texts{"PxnInterfacesList(null, 0, 40)"});
}

TEST_F(Initialisation, FillsTheInterfaceListUntilItIsAsLongAsFirstAsked) {
    sdk.Data().foundAnswers["PxnInterfacesList"] = {2, 3, 1, 2};
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnInterfacesList"}),
              (Texts{"PxnInterfacesList(null, 0, 40)", "PxnInterfacesList(array, 2, 40)",
                     "PxnInterfacesList(array, 2, 40)", "PxnInterfacesList(array, 2, 40)"}));
}

TEST_F(Initialisation, ResultsOfTheInterfaceListAreNotChecked) {
    sdk.Fail("PxnInterfacesList", PxnErrIO, 1, 2);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnInterfacesList"}), Texts{"PxnInterfacesList(null, 0, 40)"});
}

TEST_F(Initialisation, NoMemoryForTheInterfaceListIsNamed) {
    sdk.Data().foundAnswers["PxnInterfacesList"] = {0xFFFFFFFF};
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(InitLog().back(), "0 " + tag + ": Could not allocate memory for interface list");
    EXPECT_EQ(sdk.Calls({"PxnInterfacesList"}), Texts{"PxnInterfacesList(null, 0, 40)"});
}

TEST_F(Initialisation, AFailedCameraListIsAnEmptyOne) {
    sdk.Fail("PxnCamerasList", PxnErrIO);
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetNumCameras(), 0u);
    EXPECT_EQ(InitLog().back(), "1 " + tag + ": Using Pyxen V2.1.0");
}

TEST_F(Initialisation, WorksWithoutSink) {
    WithoutSink();
    sdk.Data().foundAnswers["PxnInterfacesList"] = {0xFFFFFFFF};
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().Init(), MV_ALREADY_INITIALISED);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
}

TEST_F(Initialisation, DeInitLeavesTheSdk) {
    Init();
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Calls(),
              (Texts{"PxnFeatureInvalidationUnregister(system, \"EventCameraDiscovery\", cb)",
                     "PxnShutdown()"}));
    EXPECT_EQ(Log(), Texts{});
    EXPECT_FALSE(Grabber().IsInitialized());
    EXPECT_FALSE(Grabber().Api().IsValid());
    EXPECT_EQ(Grabber().GetNumCameras(), 0u);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1);
    EXPECT_EQ(sdk.StartupCount(), 0);
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(Initialisation, TheHostsPartIsInitialisedAndDeInitialisedToo) {
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().CMivoraGrabber::Init(), MV_ALREADY_INITIALISED);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Grabber().CMivoraGrabber::DeInit(), MV_NOT_INITIALISED);
}

TEST_F(Initialisation, DeInitDestroysTheDialogThatIsHeld) {
    bool destroyed = false;
    HoldDialog(new HeldDialog(destroyed));
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 1u);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 0u);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
}

TEST_F(Initialisation, AFrameThatComesDuringDeInitStartsNoCleanup) {
    Prepare(1);
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    sdk.OnCall("PxnCameraClose", [&] { EXPECT_TRUE(sdk.Deliver(0)); });
    Forget();
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Log().back(),
              "1 CMivoraKVNPyxenClass::FrameCallback: An asynchronous single snap has finished");
    Destroy(); // a thread would be waited for
    EXPECT_EQ(sdk.Calls({"PxnFeatureCommandRun", "PxnFrameRevokeAll"}), Texts{});
    EXPECT_EQ(sleep.Take(), std::vector<std::uint32_t>{});
}

TEST_F(Initialisation, DeInitClosesTheOpenCamera) {
    Open();
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Grabber().IsCameraOpen(), 0u);
    EXPECT_EQ(sdk.Calls({"PxnFeatureInvalidationUnregister", "PxnCameraClose", "PxnShutdown"}),
              (Texts{"PxnFeatureInvalidationUnregister(system, \"EventCameraDiscovery\", cb)",
                     "PxnCameraClose(camera0)", "PxnShutdown()"}));
    EXPECT_EQ(Log(), Texts{"1 CMivoraKVNPyxenClass::CloseActCamera"});
}

TEST_F(Initialisation, DeInitBeforeInitDoesNothing) {
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(Initialisation, MayFollowDeInit) {
    Open();
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    Forget();
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Calls(), initCalls);
    EXPECT_EQ(Grabber().GetNumCameras(), 1u);
    EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
}

TEST_F(Initialisation, AfterDeInitNothingRemainsOfAnAcquisition) {
    Prepare(2);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    EXPECT_EQ(Grabber().SystemCache().GetFeatureCount(), 0u);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_TRUE(sdk.Deliver(1));
    EXPECT_EQ(Grabber().StopSnap(), MV_OK);
}

TEST_F(Initialisation, DestructionDeInitialises) {
    Open();
    Destroy();
    EXPECT_EQ(sdk.Calls({"PxnCameraClose", "PxnShutdown"}),
              (Texts{"PxnCameraClose(camera0)", "PxnShutdown()"}));
    EXPECT_EQ(sdk.StartupCount(), 0);
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(Initialisation, DeInitWaitsForTheEndOfASingleSnap) {
    Prepare(1);
    sleep.Shut();
    ASSERT_EQ(Grabber().Snap(2), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    ASSERT_TRUE(sdk.WaitForCall("PxnFrameRevokeAll(camera0)"));
    EXPECT_EQ(Grabber().GetAcquisitionState(), 2u);
    platform::Thread opener = platform::Thread::Start(
        [](void* gate) { static_cast<ScriptedSleep*>(gate)->Open(); }, &sleep, 0);
    EXPECT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    opener.Join();
    EXPECT_EQ(sdk.Calls({"PxnFrameRevokeAll", "PxnCameraClose", "PxnShutdown"}),
              (Texts{"PxnFrameRevokeAll(camera0)", "PxnCameraClose(camera0)", "PxnShutdown()"}));
}

TEST_F(Initialisation, DestructionDuringContinuousAcquisitionIsQuiet) {
    Prepare(3);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0));
    Destroy();
    EXPECT_FALSE(sdk.IsCapturing());
    EXPECT_EQ(sdk.AnnouncedFrames().size(), 0u);
    EXPECT_EQ(sdk.StartupCount(), 0);
}

} // namespace
