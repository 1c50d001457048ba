// settings_file_test.cpp - what a file with the settings of a camera contains
#include "services/settings_file.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <string>

using namespace pyxen;

namespace {

StoredSetting MakeSetting(const char* feature, const FeatureValue& value) {
    return {"Camera", feature, {}, StoredValue::Of(value)};
}

SettingsFile MakeSettingsFile() {
    SettingsFile file;
    file.camera = {"Korvane", "G-130", "42", "DEV_\"1\""};
    file.settings = {MakeSetting("Width", std::int64_t{640}),
                     MakeSetting("Gain", -1.5),
                     MakeSetting("PixelFormat", EnumEntry{"Mono8"}),
                     MakeSetting("DeviceUserID", std::string("caf\xC3\xA9\n")),
                     MakeSetting("ReverseX", true),
                     MakeSetting("LUTValueAll", FeatureBytes{0x00, 0xFF, 0xA0})};
    file.settings[1].selectors = {{"GainSelector", StoredValue::Of(EnumEntry{"Red"})},
                                  {"Index", StoredValue::Of(std::int64_t{2})},
                                  {"On", StoredValue::Of(false)}};
    return file;
}

const char* const kText = R"({
  "format": "Mivora settings",
  "version": 1,
  "camera": {"vendor": "Korvane", "model": "G-130", "serial": "42", "id": "DEV_\"1\""},
  "settings": [
    {"module": "Camera", "feature": "Width", "type": "integer", "value": 640},
    {"module": "Camera", "feature": "Gain", "selectors": {"GainSelector": "Red", "Index": 2, "On": false}, "type": "float", "value": -1.5},
    {"module": "Camera", "feature": "PixelFormat", "type": "enumeration", "value": "Mono8"},
    {"module": "Camera", "feature": "DeviceUserID", "type": "string", "value": "café\n"},
    {"module": "Camera", "feature": "ReverseX", "type": "boolean", "value": true},
    {"module": "Camera", "feature": "LUTValueAll", "type": "register", "value": "00FFA0"}
  ]
}
)";

/// A whole file with that text in place of its settings.
std::string WithSettings(const std::string& settings) {
    return "{\"format\": \"Mivora settings\", \"version\": 1, \"camera\": {\"vendor\": \"\", "
           "\"model\": \"\", \"serial\": \"\", \"id\": \"\"},\n\"settings\": " +
           settings + "}";
}

std::string WithSetting(const std::string& setting) {
    return WithSettings("[" + setting + "]");
}

std::string RefusalOf(const std::string& text) {
    SettingsFile file;
    std::string error;
    EXPECT_FALSE(ReadSettingsText(text, file, error)) << text;
    EXPECT_EQ(file, SettingsFile());
    return error;
}

TEST(SettingsFileText, IsWrittenInOneFormAndReadAgain) {
    EXPECT_EQ(WriteSettingsText(MakeSettingsFile()), kText);
    SettingsFile read;
    std::string error;
    ASSERT_TRUE(ReadSettingsText(kText, read, error)) << error;
    EXPECT_EQ(read, MakeSettingsFile());
    EXPECT_EQ(read.settings[1].ShownSelectors(), "GainSelector=Red, Index=2, On=false");
    EXPECT_EQ(read.settings[0].ShownSelectors(), "");
}

TEST(SettingsFileText, MayHaveNoSettings) {
    SettingsFile read;
    std::string error;
    EXPECT_TRUE(ReadSettingsText(WriteSettingsText({}), read, error)) << error;
    EXPECT_TRUE(read.settings.empty());
}

TEST(SettingsFileText, GivesValuesThatAFeatureTakes) {
    for (const StoredSetting& setting : MakeSettingsFile().settings) {
        EXPECT_TRUE(setting.value.CanBeWritten());
        EXPECT_EQ(StoredValue::Of(setting.value.Get()), setting.value);
        EXPECT_EQ(setting.value.Get().Type(), setting.value.type);
    }
    EXPECT_FALSE(StoredValue::Of(std::numeric_limits<double>::quiet_NaN()).CanBeWritten());
    EXPECT_FALSE(StoredValue::Of(std::numeric_limits<double>::infinity()).CanBeWritten());
    EXPECT_FALSE(StoredValue::Of(std::string("\xFF")).CanBeWritten());
    EXPECT_FALSE(StoredValue::Of(std::string("a\0b", 3)).CanBeWritten());
    EXPECT_FALSE(StoredValue().CanBeWritten());
    EXPECT_EQ(StoredValue::Of(EnumEntry{nullptr}).Shown(), "");
}

TEST(SettingsFileText, IsRefusedWhereItIsNotWhole) {
    EXPECT_EQ(RefusalOf("{"), "line 1, column 2: a name in quotes is expected");
    EXPECT_EQ(RefusalOf("[]"), "line 1, column 1: an object is expected");
    EXPECT_EQ(RefusalOf("{}"), "line 1, column 1: the member \"format\" is missing");
    EXPECT_EQ(RefusalOf("{\"format\": \"Other\"}"), "line 1, column 12: not a file of settings");
    EXPECT_EQ(RefusalOf("{\"format\": \"Mivora settings\", \"version\": 2}"),
              "line 1, column 42: version 2 is not known");
    EXPECT_EQ(RefusalOf("{\"format\": \"Mivora settings\", \"version\": 1, \"extra\": 0}"),
              "line 1, column 54: unknown member \"extra\"");
    EXPECT_EQ(RefusalOf(WithSettings("{}")), "line 2, column 13: an array is expected");
    EXPECT_EQ(RefusalOf(std::string(kMostSettingsBytes + 1, ' ')), "more than 4194304 bytes");
}

TEST(SettingsFileText, IsRefusedWithoutAnyOfItsMembers) {
    const std::string members[] = {
        "\"format\": \"Mivora settings\"", "\"version\": 1",
        "\"camera\": {\"vendor\": \"\", \"model\": \"\", \"serial\": \"\", \"id\": \"\"}",
        "\"settings\": []"};
    const char* const names[] = {"format", "version", "camera", "settings"};
    for (std::size_t missing = 0; missing < std::size(members); ++missing) {
        std::string whole;
        std::string wrong;
        for (std::size_t index = 0; index < std::size(members); ++index) {
            if (index != missing) {
                whole += (whole.empty() ? "" : ", ") + members[index];
            }
            wrong +=
                (index == 0 ? "" : ", ") +
                (index == missing ? std::string("\"") + names[index] + "\": null" : members[index]);
        }
        EXPECT_EQ(RefusalOf("{" + whole + "}"), std::string("line 1, column 1: the member \"") +
                                                    names[missing] + "\" is missing");
        EXPECT_NE(RefusalOf("{" + wrong + "}").find(" is expected"), std::string::npos);
    }
}

TEST(SettingsFileText, IsRefusedWithACameraThatIsNotDescribed) {
    const auto camera = [](const std::string& object) {
        return "{\"format\": \"Mivora settings\", \"version\": 1, \"settings\": [],\n\"camera\": " +
               object + "}";
    };
    const std::string names[] = {"vendor", "model", "serial", "id"};
    for (const std::string& missing : names) {
        std::string object;
        for (const std::string& name : names) {
            if (name != missing) {
                object += (object.empty() ? "\"" : ", \"") + name + "\": \"x\"";
            }
        }
        EXPECT_EQ(RefusalOf(camera("{" + object + "}")),
                  "line 2, column 11: the member \"" + missing + "\" is missing");
        EXPECT_NE(RefusalOf(camera("{" + object + ", \"" + missing + "\": 1}"))
                      .find("a text is expected"),
                  std::string::npos);
        EXPECT_NE(RefusalOf(camera("{" + object + ", \"" + missing + "\": \"\\u0000\"}"))
                      .find("a text with a zero byte"),
                  std::string::npos);
    }
    EXPECT_NE(RefusalOf(camera("{\"owner\": \"x\"}")).find("unknown member \"owner\""),
              std::string::npos);
}

TEST(SettingsFileText, IsRefusedWithASettingThatIsNotWhole) {
    const std::string names[] = {"module", "feature", "type", "value"};
    for (const std::string& missing : names) {
        std::string object;
        for (const std::string& name : names) {
            if (name != missing) {
                object += (object.empty() ? "\"" : ", \"") + name + "\": \"string\"";
            }
        }
        EXPECT_NE(RefusalOf(WithSetting("{" + object + "}"))
                      .find("the member \"" + missing + "\" is missing"),
                  std::string::npos);
    }
    EXPECT_NE(RefusalOf(WithSetting("{\"unit\": \"x\"}")).find("unknown member \"unit\""),
              std::string::npos);
}

TEST(SettingsFileText, IsRefusedWithASelectorThatMakesNoSense) {
    const auto selectors = [](const char* object) {
        return WithSetting(std::string("{\"module\": \"Camera\", \"feature\": \"A\", \"type\": "
                                       "\"float\", \"value\": 1, \"selectors\": ") +
                           object + "}");
    };
    EXPECT_NE(RefusalOf(selectors("[]")).find("an object is expected"), std::string::npos);
    EXPECT_NE(RefusalOf(selectors(R"({"A\u0000": 1})")).find("a name with a zero byte"),
              std::string::npos);
    EXPECT_NE(RefusalOf(selectors(R"({"A": "\u0000"})")).find("a text with a zero byte"),
              std::string::npos);
    EXPECT_NE(RefusalOf(selectors("{\"A\": null}")).find("a selector has"), std::string::npos);
}

TEST(SettingsFileText, IsRefusedWithASettingThatMakesNoSense) {
    const auto setting = [](const char* type, const char* value) {
        return WithSetting(
            std::string("{\"module\": \"Camera\", \"feature\": \"A\", \"type\": \"") + type +
            "\", \"value\": " + value + "}");
    };
    EXPECT_NE(RefusalOf(WithSetting("1")).find("an object is expected"), std::string::npos);
    EXPECT_NE(
        RefusalOf(WithSetting("{\"module\": \"Camera\", \"feature\": \"A\", \"type\": \"float\"}"))
            .find("\"value\" is missing"),
        std::string::npos);
    EXPECT_NE(RefusalOf(setting("number", "1")).find("unknown type \"number\""), std::string::npos);
    EXPECT_NE(RefusalOf(setting("integer", "1.5")).find("an integer is expected"),
              std::string::npos);
    EXPECT_NE(RefusalOf(setting("float", "\"1\"")).find("a number is expected"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("boolean", "1")).find("true or false"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("string", "null")).find("a text is expected"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("string", R"("\u0000")")).find("zero byte"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("register", "\"0\"")).find("hexadecimal"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("register", "\"0g\"")).find("hexadecimal"), std::string::npos);
    EXPECT_NE(RefusalOf(setting("register", "\"-1\"")).find("hexadecimal"), std::string::npos);
}

TEST(SettingsFileText, IsRefusedWithASettingThatOccursTwice) {
    const std::string red = "{\"module\": \"Camera\", \"feature\": \"Gain\", \"selectors\": "
                            "{\"A\": \"x\", \"B\": 1}, \"type\": \"float\", \"value\": 1}";
    const std::string same = "{\"module\": \"Camera\", \"feature\": \"Gain\", \"selectors\": "
                             "{\"B\": 1, \"A\": \"x\"}, \"type\": \"float\", \"value\": 2}";
    const std::string other = "{\"module\": \"Camera\", \"feature\": \"Gain\", \"selectors\": "
                              "{\"A\": \"y\", \"B\": 1}, \"type\": \"float\", \"value\": 2}";
    SettingsFile file;
    std::string error;
    EXPECT_TRUE(ReadSettingsText(WithSetting(red + "," + other), file, error)) << error;
    EXPECT_EQ(RefusalOf(WithSetting(red + ",\n" + same)),
              "line 3, column 1: this setting occurs twice");
    EXPECT_NE(RefusalOf(WithSetting("{\"module\": \"Camera\", \"feature\": \"A\", \"selectors\": "
                                    "{\"B\": 1.5}, \"type\": \"float\", \"value\": 1}"))
                  .find("a selector has"),
              std::string::npos);
}

} // namespace
