// several_report_test.cpp - tests of the report on several cameras
#include "apps/mivora/several_report.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

SeveralReport ReportOfTwo() {
    SeveralReport report;
    report.startedBy = "software";
    report.cameras.resize(2);
    for (std::size_t i = 0; i < 2; ++i) {
        CameraReport& camera = report.cameras[i];
        camera.name = "camera " + std::to_string(i);
        camera.index = static_cast<std::int32_t>(i);
        FrameAccount& account = camera.grab.account;
        account.completed = account.delivered = account.taken = 10 + i;
        account.sdk.reset();
    }
    return report;
}

TEST(SeveralReport, AddsItsCamerasUp) {
    SeveralReport report = ReportOfTwo();
    EXPECT_EQ(report.Account().taken, 21u);
    EXPECT_FALSE(report.Account().sdk) << "which the SDK does not count";
    EXPECT_TRUE(report.Account().IsClosed());
    report.sdk = SdkCounts{};
    EXPECT_FALSE(report.Account().IsClosed()) << "the SDK has counted none";
    report.sdk->callbacks = 21;
    EXPECT_TRUE(report.Account().IsClosed());
    const auto json = nlohmann::json::parse(report.Json());
    EXPECT_EQ(json["frames"], 21);
    EXPECT_EQ(json["account"]["sdk"]["callbacks"], 21);
    EXPECT_EQ(json["cameras"][1]["frames"], 11);
    EXPECT_TRUE(json["cameras"][1]["folder"].is_null());
    EXPECT_TRUE(json["recording"].is_null());
}

TEST(SeveralReport, KnowsHowFarApartTheFirstFramesCame) {
    SeveralReport report = ReportOfTwo();
    report.cameras[0].grab.firstFrameNs = 5000000;
    EXPECT_FALSE(report.FirstFramesNs()) << "the other one has none";
    report.cameras[1].grab.firstFrameNs = 3500000;
    EXPECT_EQ(report.FirstFramesNs(), 1500000u);
    EXPECT_NE(report.Text().find("the first frames came within 1.500 ms\n"), std::string::npos);
}

TEST(SeveralReport, NamesTheCamerasWithAProblem) {
    SeveralReport report = ReportOfTwo();
    EXPECT_TRUE(report.Problems().empty());
    report.cameras[1].problem = "it is gone";
    EXPECT_EQ(report.Problems(), std::vector<std::string>{"camera 1: it is gone"});
    EXPECT_FALSE(report.IsFailed());
    report.cameras[1].isFailed = true;
    EXPECT_TRUE(report.IsFailed());
}

} // namespace
