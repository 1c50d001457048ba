// settings_file_test.cpp - the content of a settings file, without a camera
#include "apps/common/settings_file.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

namespace {

TEST(SettingsFile, IsParsedWithSelectorsAndValuesOfAnyType) {
    const SettingsFile file = ParseSettingsFile(
        "a.json",
        "{\"format\":\"Mivora settings\",\"version\":1,\"camera\":{\"vendor\":\"V\",\"model\":"
        "\"M\"},\"settings\":[{\"module\":\"Camera\",\"feature\":\"Width\",\"type\":\"integer\","
        "\"value\":64},{\"module\":\"Camera\",\"feature\":\"Gain\",\"selectors\":{\"GainSelector\":"
        "\"Red\",\"Line\":1},\"type\":\"float\",\"value\":2.5},{\"module\":\"Camera\",\"feature\":"
        "\"Name\",\"selectors\":{},\"type\":\"string\",\"value\":\"a b\"},{\"module\":\"Camera\","
        "\"feature\":\"ReverseX\",\"type\":\"boolean\",\"value\":true}]}");
    EXPECT_EQ(file.camera, "vendor V, model M");
    ASSERT_EQ(file.settings.size(), 4u);
    EXPECT_EQ(file.settings[0].name + "=" + file.settings[0].value, "Camera/Width=64");
    EXPECT_EQ(file.settings[1].name, "Camera/Gain[GainSelector=Red, Line=1]");
    EXPECT_EQ(file.settings[1].value, "2.5");
    EXPECT_EQ(file.settings[2].value, "a b");
    EXPECT_EQ(file.settings[3].value, "true");
}

TEST(SettingsFile, IsRefusedWhenItIsSomethingElse) {
    for (const char* wrong :
         {"", "{", "[]", "1", "{}", "{\"format\":1}", "{\"format\":\"Other\",\"settings\":[]}",
          "{\"format\":\"Mivora settings\"}", "{\"format\":\"Mivora settings\",\"settings\":[1]}",
          "{\"format\":\"Mivora settings\",\"settings\":[{\"module\":\"A\",\"feature\":\"B\"}]}",
          "{\"format\":\"Mivora settings\",\"settings\":[{\"module\":1,\"feature\":\"B\","
          "\"value\":1}]}"}) {
        try {
            ParseSettingsFile("a.json", wrong);
            ADD_FAILURE() << wrong;
        } catch (const CommandFailure& failure) {
            EXPECT_TRUE(std::string(failure.what()).starts_with("a.json is no settings file"))
                << failure.what();
        }
    }
}

} // namespace
