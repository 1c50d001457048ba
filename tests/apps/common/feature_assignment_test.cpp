// feature_assignment_test.cpp - MODULE/FEATURE=VALUE, as the command line has it
#include "apps/common/feature_assignment.h"

#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "tests/apps/common/fake_services.h"

#include <gtest/gtest.h>

namespace {

class Assignments : public testing::Test {
protected:
    Assignments() {
        services.Add("Camera", "Width", MV_FEATURE_INTEGER);
        services.Add("Camera", "Name", MV_FEATURE_STRING);
        services.Add("Camera", "Reset", MV_FEATURE_COMMAND);
    }
    void Apply(const std::vector<std::string>& texts) {
        ApplyFeatureAssignments(
            client, ParseFeatureAssignments(texts),
            [this](const FeatureAssignment& done, const std::optional<ServiceValue>& value) {
                applied.push_back(
                    done.name.Text() +
                    (value ? " " + std::to_string(value->integer) + value->text : ""));
            });
    }

    FakeServices services;
    ServiceClient client{services};
    std::vector<std::string> applied;
};

TEST_F(Assignments, AreParsedFromPathsToo) {
    const FeatureAssignment plain = ParseFeatureAssignment("Camera/Width=a=b");
    EXPECT_EQ(plain.name.Text(), "Camera/Width");
    EXPECT_EQ(plain.value, "a=b");
    EXPECT_EQ(ParseFeatureName("/Camera/Image/Size/Width").Text(), "Camera/Width");
    EXPECT_EQ(ParseFeatureName("/Camera/Image/Size/Width").category, "/Image/Size");
    EXPECT_EQ(ParseFeatureName("Camera/Width").category, "");
    EXPECT_EQ(ParseFeatureAssignment("Camera/Reset").value, std::nullopt);
    EXPECT_EQ(ParseFeatureAssignment("Camera/Name=").value, "");
    for (const char* wrong :
         {"Width", "", "/Camera", "Camera/", "//Width", "=1", "Width=Camera/1"}) {
        EXPECT_THROW(ParseFeatureAssignment(wrong), CommandFailure) << wrong;
    }
}

TEST_F(Assignments, RefuseAnotherCategory) {
    services.Add("Camera", "Height", MV_FEATURE_INTEGER).description.category = "/Image";
    EXPECT_NO_THROW(Apply({"/Camera/Image/Height=1", "Camera/Height=2"}));
    EXPECT_THROW(Apply({"/Camera/Height=1", "/Camera/Analog/Height=1"}), CommandFailure);
    EXPECT_THROW(Apply({"/Camera/Image/Size/Height=1"}), CommandFailure);
    EXPECT_NO_THROW(ParseFeatureName("/Camera/Root/Width").CheckCategory("/Root/"));
}

TEST_F(Assignments, AreAppliedInOrder) {
    Apply({"Camera/Width=0x40", "Camera/Reset", "Camera/Name=new=1"});
    EXPECT_EQ(services.calls,
              (std::vector<std::string>{"write Camera/Width", "run Camera/Reset 5000",
                                        "write Camera/Name"}));
    EXPECT_EQ(applied,
              (std::vector<std::string>{"Camera/Width 64", "Camera/Reset", "Camera/Name 0new=1"}));
}

TEST_F(Assignments, AreCheckedBeforeTheFirstIsApplied) {
    EXPECT_THROW(Apply({"Camera/Width=1", "Camera/None=1"}), CommandFailure);
    EXPECT_THROW(Apply({"Camera/Width=1", "Camera/Width=wide"}), CommandFailure);
    EXPECT_THROW(Apply({"Camera/Width=1", "Camera/Reset=1"}), CommandFailure);
    EXPECT_THROW(Apply({"Camera/Width=1", "Camera/Name"}), MissingArgument);
    EXPECT_TRUE(services.calls.empty());
}

TEST_F(Assignments, SayWhatWasAppliedBeforeAFailure) {
    services.features[{"Camera", "Name"}].writing = MV_SERVICE_NO_ACCESS;
    try {
        Apply({"Camera/Width=1", "Camera/Reset", "Camera/Name=x", "Camera/Width=2"});
        FAIL() << "it did not fail";
    } catch (const CommandFailure& failure) {
        EXPECT_STREQ(failure.what(),
                     "WriteFeature failed with 7 (there is no access at present) for "
                     "Camera/Name=x\n  it does not want to\n"
                     "  applied before: Camera/Width, Camera/Reset");
    }
    EXPECT_EQ(services.features[std::pair("Camera", "Width")].value.integer, 1);
    services.running = MV_SERVICE_TIMED_OUT;
    try {
        Apply({"Camera/Reset"});
        FAIL() << "it did not fail";
    } catch (const CommandFailure& failure) {
        EXPECT_STREQ(failure.what(),
                     "RunCommand failed with 12 (it did not end in time) for Camera/Reset");
    }
}

} // namespace
