// camera_return_test.cpp - tests of waiting for a camera and setting it up as it was
#include "apps/mivora/camera_return.h"

#include "apps/common/app_options.h"
#include "apps/common/command_failure.h"
#include "apps/common/sdk_control.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

class CameraReturns : public testing::Test {
protected:
    /// Cameras A, and B which is not plugged in.
    void Start(const std::string& attributesOfA, const std::string& faults = {}) {
        directory.Write("PxnC.xml",
                        "<PxnC><camera id=\"A\" extendedId=\"Eth0|A\" model=\"Camera A\" "
                        "sensorWidth=\"64\" sensorHeight=\"64\" " +
                            attributesOfA +
                            "/><camera id=\"B\" extendedId=\"Eth0|B\" model=\"Camera B\" "
                            "plugged=\"false\"/>" +
                            (faults.empty() ? std::string()
                                            : "<faults><script>" + faults + "</script></faults>") +
                            "</PxnC>");
        options.configFile = directory.PathOf("host.ini");
        session.emplace(options, maker);
        cameraReturn.emplace(*session, assignments);
    }
    bool OpenFirst() {
        testing::internal::CaptureStderr();
        const bool isOpen = cameraReturn->OpenFirst();
        errors = testing::internal::GetCapturedStderr();
        return isOpen;
    }
    /// Takes camera A away, brings it back as it is at power-on, and waits for it.
    void LeaveAndReturn(const std::string& fault = {}) {
        EXPECT_EQ(Sdk("unplug A"), 0);
        EXPECT_EQ(Sdk("plug A"), 0);
        if (!fault.empty()) {
            EXPECT_EQ(Sdk(fault), 0);
        }
        testing::internal::CaptureStderr();
        try {
            EXPECT_TRUE(cameraReturn->Await(platform::MonotonicNanoseconds() - 2'500'000'000));
        } catch (const CommandFailure& failure) {
            refusal = failure.what();
        }
        errors = testing::internal::GetCapturedStderr();
    }
    std::int32_t Sdk(const std::string& line) {
        std::string answer;
        return control.Run(line, answer);
    }
    void Write(const char* feature, std::int64_t number, double real) {
        ServiceValue value;
        value.type = number != 0 ? MV_FEATURE_INTEGER : MV_FEATURE_FLOAT;
        value.integer = number;
        value.real = real;
        session->Services().WriteFeature("Camera", feature, value, "");
    }
    ServiceValue Read(const char* feature) {
        return session->Services().ReadFeature("Camera", feature);
    }

    const support::NoSettling noSettling;
    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    const std::vector<FeatureAssignment> assignments{};
    SdkControl control;
    LinkedMaker maker;
    AppOptions options;
    std::optional<Session> session;
    std::optional<CameraReturn> cameraReturn;
    std::string errors;
    std::string refusal;
};

TEST_F(CameraReturns, WithTheSettingsTheyHad) {
    Start("");
    ASSERT_TRUE(OpenFirst());
    EXPECT_EQ(errors, "");
    const double exposureAtPowerOn = Read("ExposureTime").real;
    Write("Width", 32, 0);
    Write("ExposureTime", 0, exposureAtPowerOn + 1000);
    cameraReturn->KeepSettings();
    LeaveAndReturn();
    EXPECT_EQ(refusal, "");
    EXPECT_EQ(errors.find("mivora: camera 0 (Camera A, "), 0u) << errors;
    EXPECT_NE(errors.find(" was away for 2."), std::string::npos) << errors;
    EXPECT_TRUE(errors.ends_with(" s and is back\n")) << errors;
    EXPECT_EQ(Read("Width").integer, 32);
    EXPECT_EQ(Read("ExposureTime").real, exposureAtPowerOn + 1000);
    EXPECT_EQ(cameraReturn->Times(), 1u);
}

TEST_F(CameraReturns, AreRefusedWithOtherImages) {
    Start("");
    ASSERT_TRUE(OpenFirst());
    Write("Width", 32, 0);
    cameraReturn->KeepSettings();
    LeaveAndReturn("fail-always PxnFeatureIntSet -13");
    EXPECT_NE(errors.find("mivora: warning: Camera/Width is not restored to 32: "),
              std::string::npos)
        << errors;
    EXPECT_NE(refusal.find(" is back with other images: 64 x 64 pixels, Mono, 8 bits instead of "
                           "32 x 64 pixels, Mono, 8 bits"),
              std::string::npos)
        << refusal;
    EXPECT_EQ(Sdk("clear"), 0);
}

TEST_F(CameraReturns, AreWaitedForFromTheirFirstAppearance) {
    Start("plugged=\"false\"", "at-call PxnCamerasList 2 plug A");
    ASSERT_TRUE(OpenFirst());
    EXPECT_EQ(errors, "mivora: there is no camera\nmivora: waiting for it\n");
    EXPECT_TRUE(session->Grabber().IsCameraOpen());
}

TEST_F(CameraReturns, AreWaitedForWhenAnotherOneIsThere) {
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    Start("", "at-call PxnCamerasList 3 plug B");
    ASSERT_TRUE(OpenFirst());
    EXPECT_EQ(errors.find("mivora: the configured camera \"Eth0|B\""), 0u) << errors;
    EXPECT_TRUE(errors.ends_with("\nmivora: waiting for it\n")) << errors;
    EXPECT_STREQ(session->Grabber().GetActCamera()->GetCameraName(), "Camera B");
}

} // namespace
