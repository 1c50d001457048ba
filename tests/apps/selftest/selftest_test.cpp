// selftest_test.cpp - tests of the selftest, in this process on the simulator
#include "apps/selftest/selftest.h"

#include "apps/common/app_options.h"
#include "apps/common/command_failure.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/test_services.h"

#include <gtest/gtest.h>

namespace {

/// A module without services.
class BareMaker final : public IGrabberMaker {
public:
    CMivoraGrabber* Create() override { return maker.Create(); }
    void Delete(CMivoraGrabber* grabber) override { maker.Delete(grabber); }

private:
    LinkedMaker maker;
};

/// Services whose dry run of settings writes them.
class WritingServices final : public TestServices {
public:
    IMivoraModuleServices* inner = nullptr;

    MV_SERVICE_RESULT DescribeFeature(const char* module, const char* feature,
                                      MV_FEATURE_RECEIVER receiver, void* context,
                                      MV_SERVICE_REASON* reason) override {
        return inner->DescribeFeature(module, feature, receiver, context, reason);
    }
    MV_SERVICE_RESULT ReadFeature(const char* module, const char* feature,
                                  MV_VALUE_RECEIVER receiver, void* context,
                                  MV_SERVICE_REASON* reason) override {
        return inner->ReadFeature(module, feature, receiver, context, reason);
    }
    MV_SERVICE_RESULT SaveSettings(const char* path, MV_SETTING_RECEIVER receiver, void* context,
                                   MV_SERVICE_REASON* reason) override {
        return inner->SaveSettings(path, receiver, context, reason);
    }
    MV_SERVICE_RESULT LoadSettings(const char* path, std::uint32_t, MV_SETTING_RECEIVER receiver,
                                   void* context, MV_SERVICE_REASON* reason) override {
        return inner->LoadSettings(path, 0, receiver, context, reason);
    }
};

class WritingMaker final : public IGrabberMaker {
public:
    CMivoraGrabber* Create() override { return maker.Create(); }
    void Delete(CMivoraGrabber* grabber) override { maker.Delete(grabber); }
    IMivoraModuleServices* Services(CMivoraGrabber* grabber, std::string& reason) override {
        services.inner = maker.Services(grabber, reason);
        return &services;
    }

private:
    LinkedMaker maker;
    WritingServices services;
};

class SelftestOnSimulator : public testing::Test {
protected:
    SelftestOnSimulator() {
        UseCamera("");
        app.configFile = directory.PathOf("host.ini");
        options.timeoutMs = 60000;
    }
    /// A camera that waits for buffers, so that a slow machine loses no frame, with these faults.
    void UseCamera(const std::string& script, const std::string& inside = {}) {
        directory.Write(
            "PxnC.xml",
            "<PxnC><camera id=\"A\" model=\"Camera A\" sensorWidth=\"64\" "
            "sensorHeight=\"64\" freeRunning=\"true\">"
            "<feature name=\"ExposureTime\" value=\"1000\"/>" +
                inside + "</camera>" +
                (script.empty() ? "" : "<faults><script>\n" + script + "</script></faults>") +
                "</PxnC>");
    }
    SelftestReport Run(IGrabberMaker& maker) {
        return RunSelftest(
            options, app, maker, [](const std::string&) {}, [](const SelftestResult&) {});
    }
    /// "pass: DETAIL" of one check, which is run alone.
    std::string Run(const std::string& check) {
        options.only = {check};
        LinkedMaker maker;
        report = Run(maker);
        return Of(check);
    }
    std::string Of(const std::string& check) const {
        for (const SelftestResult& result : report.results) {
            if (result.name == check) {
                return std::string(OutcomeText(result.outcome)) + ": " + result.detail;
            }
        }
        return "not run";
    }
    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    const support::NoSettling noSettling;
    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    SelftestOptions options;
    AppOptions app;
    SelftestReport report;
};

TEST_F(SelftestOnSimulator, EverythingPassesWithASoundCamera) {
    LinkedMaker maker;
    std::vector<std::string> begun;
    report = RunSelftest(
        options, app, maker, [&](const std::string& name) { begun.push_back(name); },
        [](const SelftestResult&) {});
    EXPECT_EQ(report.Count(SelftestOutcome::kPass), report.results.size()) << report.Json().Text();
    EXPECT_EQ(report.results.size(), AllSelftestChecks().size() + 1);
    EXPECT_EQ(begun.size(), report.results.size());
    EXPECT_EQ(begun.back(), "restored");
    EXPECT_TRUE(Has(report.camera, "camera 0 (Camera A, "));
    EXPECT_EQ(Of("parameters"), "pass: parameters 257");
    EXPECT_EQ(Of("smallest-image"), "pass: 16 x 16 pixels");
}

TEST_F(SelftestOnSimulator, AnOpeningThatIsRefusedFails) {
    UseCamera("fail PxnCameraOpen 2 -6\n");
    EXPECT_TRUE(Has(Run("open-close"), "fail: OpenActCamera failed with 4")) << Of("open-close");
    EXPECT_TRUE(Has(Of("restored"), "pass: ")) << "it was opened again: " << Of("restored");
}

TEST_F(SelftestOnSimulator, AFrameWithGapsFails) {
    UseCamera("frame incomplete 2\n");
    EXPECT_EQ(Run("snap-1"), "fail: 1 received in error, with status -1 (parts are missing)");
}

TEST_F(SelftestOnSimulator, FramesThatDoNotComeFail) {
    options.timeoutMs = 200;
    UseCamera("frame-random 1 100 drop\n",
              "<feature name=\"SimulatorFreeRunning\" value=\"false\"/>");
    EXPECT_TRUE(Has(Run("snap-1"), "fail: 0 of 6 frames came with 8 buffers")) << Of("snap-1");
    EXPECT_TRUE(Has(Run("snap-2"), "fail: no frame came")) << Of("snap-2");
}

TEST_F(SelftestOnSimulator, ASingleFrameThatFailsFails) {
    UseCamera("frame-random 1 100 incomplete\n");
    EXPECT_EQ(Run("snap-3"), "fail: the frame was received with status -1");
}

TEST_F(SelftestOnSimulator, BuffersThatAreRefusedFailWithTheirNumber) {
    UseCamera("fail PxnFrameAnnounce 20 -14\n"); // 2, 3 and 10 come before
    EXPECT_TRUE(Has(Run("buffers"), "fail: PrepareFrameBuffers failed with 4") ||
                Has(Of("buffers"), "fail: Snap failed with"))
        << Of("buffers");
    EXPECT_TRUE(Has(Of("buffers"), "50 buffers")) << Of("buffers");
}

TEST_F(SelftestOnSimulator, AStopThatIsRefusedFails) {
    UseCamera("fail PxnCaptureEnd 1 -13\n");
    EXPECT_TRUE(Has(Run("stop-queued"),
                    "fail: StopSnap for an acquisition that just began returns 0 and logs: "))
        << Of("stop-queued");
    EXPECT_TRUE(Has(Of("stop-queued"), "PxnCaptureEnd failed")) << Of("stop-queued");
}

TEST_F(SelftestOnSimulator, FramesThatRepeatFail) {
    UseCamera("frame duplicate 2\n");
    EXPECT_EQ(Run("frame-information"), "fail: frame 2 comes after frame 2");
}

TEST_F(SelftestOnSimulator, AParameterThatTheCameraRefusesFails) {
    UseCamera("fail-always PxnFeatureFloatSet -6\n");
    EXPECT_TRUE(Has(Run("parameters"), "fail: SetGrabberParam failed with 34")) << Of("parameters");
    EXPECT_TRUE(Has(Of("parameters"), "parameter 257 = 1000 and ")) << Of("parameters");
}

TEST_F(SelftestOnSimulator, AFeatureThatCannotBeReadFailsWithItsName) {
    UseCamera("fail-always PxnFeatureBoolGet -13\n");
    EXPECT_TRUE(Has(Run("features-read"), "fail: ReadFeature failed with 11"))
        << Of("features-read");
    EXPECT_TRUE(Has(Of("features-read"), "Camera/")) << Of("features-read");
    EXPECT_TRUE(Has(Of("features-read"), " more")) << "there are many: " << Of("features-read");
}

TEST_F(SelftestOnSimulator, AFeatureThatRefusesItsOwnValueFailsWithItsName) {
    UseCamera("fail-always PxnFeatureEnumSet -6\n");
    EXPECT_TRUE(Has(Run("features-written"), "fail: WriteFeature failed with "))
        << Of("features-written");
}

TEST_F(SelftestOnSimulator, SmallImagesThatDoNotStartFailAndTheSizeIsPutBack) {
    UseCamera("fail PxnCaptureStart 1 -13\n");
    EXPECT_TRUE(
        Has(Run("smallest-image"), "fail: Snap for mode 1 with 4 buffers returns 0 and logs: "))
        << Of("smallest-image");
    EXPECT_TRUE(Has(Of("restored"), "pass: ")) << Of("restored");
}

TEST_F(SelftestOnSimulator, SettingsThatCannotBePutBackFail) {
    // From the first frame on, when the image is small, no number can be written.
    UseCamera("at-call PxnFrameAnnounce 1 fail-always PxnFeatureIntSet -6\n");
    EXPECT_TRUE(Has(Run("smallest-image"), "fail: ")) << Of("smallest-image");
    EXPECT_TRUE(Has(Of("restored"), "fail: not all settings could be put back: Camera/"))
        << Of("restored");
}

TEST_F(SelftestOnSimulator, OtherValuesAreCheckedWithoutWriting) {
    const std::string result = Run("synchronisation");
    EXPECT_TRUE(Has(result, "pass: ") && Has(result, " changes, ")) << result;
    options.only = {"synchronisation"};
    WritingMaker maker;
    report = Run(maker);
    EXPECT_TRUE(Has(Of("synchronisation"), "fail: ") &&
                Has(Of("synchronisation"), " after checking "))
        << Of("synchronisation");
}

TEST_F(SelftestOnSimulator, ACameraThatWaitsForATriggerSendsNoFramesAndTheRestIsChecked) {
    UseCamera("", "<feature name=\"TriggerMode\" value=\"On\"/>");
    for (const char* check : {"snap-1", "snap-2", "snap-5", "buffers", "restarts", "stop-queued",
                              "frame-information", "smallest-image"}) {
        EXPECT_TRUE(Has(Run(check), "not applicable: the camera waits for a trigger")) << check;
    }
    EXPECT_TRUE(Has(Run("features-read"), "pass: "));
}

TEST_F(SelftestOnSimulator, WithoutServicesFeaturesDoNotApply) {
    BareMaker maker;
    report = Run(maker);
    EXPECT_EQ(report.Count(SelftestOutcome::kFail), 0u) << report.Json().Text();
    for (const char* check :
         {"features-read", "features-written", "smallest-image", "settings-dry-run",
          "synchronisation", "frame-information", "restored"}) {
        EXPECT_TRUE(Has(Of(check), "not applicable: ")) << check << " " << Of(check);
    }
    EXPECT_TRUE(Has(Of("snap-1"), "pass: "));
}

TEST_F(SelftestOnSimulator, ACameraThatCannotBeOpenedIsNoReport) {
    UseCamera("access A none\n");
    LinkedMaker maker;
    EXPECT_THROW(Run(maker), CommandFailure);
}

TEST_F(SelftestOnSimulator, IsJson) {
    report.camera = "camera 0";
    report.results = {{SelftestOutcome::kPass, "mode", "64 x 64"},
                      {SelftestOutcome::kNotApplicable, "snap-1", "trigger"}};
    EXPECT_EQ(report.Json().Text(),
              R"({"schema":1,"camera":"camera 0","checks":[)"
              R"({"name":"mode","result":"pass","detail":"64 x 64"},)"
              R"({"name":"snap-1","result":"not applicable","detail":"trigger"}],)"
              R"("pass":1,"fail":0,"notApplicable":1})");
}

} // namespace
