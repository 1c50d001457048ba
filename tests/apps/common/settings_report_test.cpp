// settings_report_test.cpp - what has become of settings
#include "apps/common/settings_report.h"

#include <gtest/gtest.h>

namespace {

std::vector<SettingReport> SomeReports() {
    return {{MV_SERVICE_OK, "Camera", "Width", "", "64", "32", ""},
            {MV_SERVICE_OK, "Camera", "Gain", "GainSelector=Red", "1.50", "1.5", ""},
            {MV_SERVICE_OK, "Camera", "Gain", "GainSelector=Blue", "2", "", ""},
            {MV_SERVICE_OUT_OF_RANGE, "Camera", "Height", "", "7", "48", "too small"},
            {MV_SERVICE_NOT_FOUND, "Camera", "Girth", "", "1", "", ""}};
}

TEST(SettingsReport, NamesWhatWasNotTaken) {
    EXPECT_EQ(SettingRefusals(SomeReports()),
              (std::vector<std::string>{"Camera/Height=7: too small",
                                        "Camera/Girth=1: there is nothing of this name"}));
    EXPECT_EQ(SettingRefusalsJson({SomeReports()[3]}).Text(),
              "[{\"setting\":\"Camera/Height\",\"value\":\"7\",\"reason\":\"too small\"}]");
}

TEST(SettingsReport, SortsWhatWasTaken) {
    EXPECT_EQ(JsonObject(LoadedMembers(SomeReports(), true)).Text(),
              "{\"changed\":[{\"setting\":\"Camera/Width\",\"from\":\"32\",\"to\":\"64\"}],"
              "\"same\":1,\"unknown\":1,\"refused\":" +
                  SettingRefusalsJson(SomeReports()).Text() + "}");
    EXPECT_EQ(SortLoadedSettings(SomeReports(), false).changed.size(), 2u)
        << "only a dry run leaves selectors where they are";
}

TEST(SettingsReport, FindsDifferences) {
    const SettingsFile wanted{"", {{"A/Same", "1.0"}, {"A/Other", "x"}, {"A/New", "2"}}};
    const SettingsFile present{"", {{"A/Other", "y"}, {"A/Same", "1"}, {"A/Old", "3"}}};
    EXPECT_EQ(DifferencesJson(FindDifferences(wanted, present)).Text(),
              "[{\"setting\":\"A/Other\",\"camera\":\"y\",\"file\":\"x\"},"
              "{\"setting\":\"A/New\",\"camera\":null,\"file\":\"2\"},"
              "{\"setting\":\"A/Old\",\"camera\":\"3\",\"file\":null}]");
}

} // namespace
