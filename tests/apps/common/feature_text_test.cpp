// feature_text_test.cpp - features and their values as text and as JSON
#include "apps/common/feature_text.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

FeatureDescription Described(MV_FEATURE_TYPE type) {
    FeatureDescription feature;
    feature.type = type;
    feature.module = "Camera";
    feature.category = "/Control";
    feature.name = "It";
    return feature;
}

FeatureDescription DescribedInteger(std::int64_t least, std::int64_t most) {
    FeatureDescription feature = Described(MV_FEATURE_INTEGER);
    feature.hasLimits = true;
    feature.integerMin = least;
    feature.integerMax = most;
    return feature;
}

TEST(FeatureText, HasALineWithRange) {
    FeatureDescription feature = DescribedInteger(16, 64);
    feature.isReadable = true;
    feature.isWritable = true;
    feature.unit = "px";
    feature.hasIncrement = true;
    feature.increment = 4;
    const ServiceValue value{MV_FEATURE_INTEGER, 48, 0, ""};
    EXPECT_EQ(FeatureLine("It", 6, feature, value), "It     integer     RW 48 px  16..64 step 4");
    feature.isReadable = false;
    EXPECT_EQ(FeatureLine("It", 0, feature, std::nullopt), "It integer     W  -  16..64 step 4");
    EXPECT_EQ(JsonObject(FeatureMembers(feature, value)).Text(),
              "{\"path\":\"/Camera/Control/It\",\"module\":\"Camera\",\"name\":\"It\","
              "\"type\":\"integer\",\"access\":\"W\",\"value\":48,\"unit\":\"px\",\"min\":16,"
              "\"max\":64,\"increment\":4}");
}

TEST(FeatureText, LeavesOutLimitsThatOnlyTheTypeHas) {
    EXPECT_EQ(RangeText(DescribedInteger(std::numeric_limits<std::int64_t>::min(),
                                         std::numeric_limits<std::int64_t>::max())),
              "");
    EXPECT_EQ(RangeText(DescribedInteger(0, std::numeric_limits<std::int64_t>::max())),
              "0..9223372036854775807");
    FeatureDescription real = Described(MV_FEATURE_FLOAT);
    real.hasLimits = true;
    real.realMin = std::numeric_limits<double>::lowest();
    real.realMax = std::numeric_limits<double>::max();
    EXPECT_EQ(RangeText(real), "");
    real.realMin = static_cast<double>(std::numeric_limits<std::int64_t>::min());
    real.realMax = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(RangeText(real), "");
    real.realMin = 0.5;
    real.realMax = 10;
    EXPECT_EQ(RangeText(real), "0.5..10.0");
    real.hasLimits = false;
    EXPECT_EQ(RangeText(real), "");
}

TEST(FeatureText, ShowsEntriesAndTheLengthOfTexts) {
    FeatureDescription choice = Described(MV_FEATURE_ENUMERATION);
    choice.entries = {{"On", true}, {"Auto", false}};
    EXPECT_EQ(RangeText(choice), "On|Auto(unavailable)");
    EXPECT_NE(JsonObject(FeatureMembers(choice, std::nullopt))
                  .Text()
                  .find("\"value\":null,\"unit\":\"\",\"entries\":[{\"name\":\"On\","
                        "\"available\":true},{\"name\":\"Auto\",\"available\":false}]}"),
              std::string::npos);
    FeatureDescription text = Described(MV_FEATURE_STRING);
    text.hasLimits = true;
    text.longestText = 16;
    EXPECT_EQ(RangeText(text), "at most 16 bytes");
    EXPECT_NE(JsonObject(FeatureMembers(text, std::nullopt)).Text().find("\"maxLength\":16}"),
              std::string::npos);
    text.toolTip = "a tip";
    EXPECT_NE(JsonObject(MoreFeatureMembers(text)).Text().find("\"toolTip\":\"a tip\""),
              std::string::npos);
}

TEST(FeatureText, ShowsValuesOfEveryType) {
    const auto shown = [](MV_FEATURE_TYPE type, std::int64_t integer, double real,
                          const char* text) {
        const ServiceValue value{type, integer, real, text};
        return ServiceValueText(value) + " " + ServiceValueJson(value).Text();
    };
    EXPECT_EQ(shown(MV_FEATURE_INTEGER, -7, 0, ""), "-7 -7");
    EXPECT_EQ(shown(MV_FEATURE_FLOAT, 0, 1000, ""), "1000.0 1000.0");
    EXPECT_EQ(shown(MV_FEATURE_BOOLEAN, 1, 0, ""), "true true");
    EXPECT_EQ(shown(MV_FEATURE_ENUMERATION, 3, 0, "Mono8"), "Mono8 \"Mono8\"");
    EXPECT_EQ(shown(MV_FEATURE_STRING, 0, 0, "a\"b"), "a\"b \"a\\\"b\"");
    EXPECT_EQ(shown(MV_FEATURE_REGISTER, 0, 0, "a\xFF"), "61FF \"61FF\"");
}

TEST(FeatureText, ParsesValuesOfTheType) {
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_INTEGER), "0x20").integer, 32);
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_FLOAT), "2.5e1").real, 25.0);
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_BOOLEAN), "On").integer, 1);
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_BOOLEAN), "false").integer, 0);
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_ENUMERATION), "Mono8").text, "Mono8");
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_STRING), "").type, MV_FEATURE_STRING);
    EXPECT_EQ(ParseServiceValue(Described(MV_FEATURE_REGISTER), "61 00").text,
              std::string("a\0", 2));
    for (const MV_FEATURE_TYPE type : {MV_FEATURE_INTEGER, MV_FEATURE_FLOAT, MV_FEATURE_BOOLEAN,
                                       MV_FEATURE_REGISTER, MV_FEATURE_COMMAND}) {
        EXPECT_THROW(ParseServiceValue(Described(type), "wide"), CommandFailure) << type;
    }
}

} // namespace
