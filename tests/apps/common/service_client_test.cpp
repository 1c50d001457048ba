// service_client_test.cpp - services by types of the standard library
#include "apps/common/service_client.h"

#include "apps/common/command_failure.h"
#include "tests/apps/common/fake_services.h"
#include "tests/support/test_services.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <set>

namespace {

/// The text of the failure of `call`.
template <typename Call>
std::string FailureOf(Call&& call) {
    try {
        call();
    } catch (const CommandFailure& failure) {
        return failure.what();
    }
    ADD_FAILURE() << "it did not fail";
    return "";
}

TEST(ServiceClient, PassesAllOfADescription) {
    FakeServices services;
    const char* const entries[] = {"Mono8", "Mono12"};
    const std::uint32_t available[] = {1, 0};
    const char* const selected[] = {"Width"};
    MV_FEATURE_DESCRIPTION& record =
        services.Add("Camera", "PixelFormat", MV_FEATURE_ENUMERATION).description;
    record.visibility = MV_VISIBILITY_EXPERT;
    record.isSelector = 1;
    record.isStreamable = 1;
    record.category = "/ImageFormatControl";
    record.unit = "px";
    record.hasLimits = 1;
    record.integerMax = 7;
    record.realMin = 0.5;
    record.longestText = 9;
    record.entryCount = 2;
    record.entries = entries;
    record.entryAvailable = available;
    record.selected = selected;
    record.selectedCount = 1;
    ServiceClient client(services);
    const FeatureDescription feature = client.DescribeFeature("Camera", "PixelFormat");
    EXPECT_EQ(feature.type, MV_FEATURE_ENUMERATION);
    EXPECT_EQ(feature.visibility, MV_VISIBILITY_EXPERT);
    EXPECT_TRUE(feature.isSelector);
    EXPECT_TRUE(feature.isStreamable);
    EXPECT_FALSE(feature.isVolatile);
    EXPECT_EQ(feature.Path(), "/Camera/ImageFormatControl/PixelFormat");
    EXPECT_EQ(feature.unit, "px");
    EXPECT_EQ(feature.integerMax, 7);
    EXPECT_EQ(feature.realMin, 0.5);
    EXPECT_EQ(feature.longestText, 9u);
    ASSERT_EQ(feature.entries.size(), 2u);
    EXPECT_EQ(feature.entries[0].name, "Mono8");
    EXPECT_TRUE(feature.entries[0].isAvailable);
    EXPECT_FALSE(feature.entries[1].isAvailable);
    EXPECT_EQ(feature.selected, std::vector<std::string>{"Width"});
    EXPECT_EQ(client.ListModules(), (std::vector<std::string>{"System", "Camera"}));
    ASSERT_EQ(client.ListFeatures("Camera").size(), 1u);
    EXPECT_TRUE(client.ListFeatures("System").empty());
}

TEST(ServiceClient, ReadsAndWritesValuesWithAnyBytes) {
    FakeServices services;
    services.Add("Camera", "Data", MV_FEATURE_REGISTER);
    ServiceClient client(services);
    const ServiceValue bytes{MV_FEATURE_REGISTER, 0, 0, std::string("a\0b", 3)};
    const auto written = client.WriteFeature("Camera", "Data", bytes, "610062");
    ASSERT_TRUE(written);
    EXPECT_EQ(written->text, bytes.text);
    EXPECT_EQ(client.ReadFeature("Camera", "Data").text, bytes.text);
    services.isReadBack = false;
    EXPECT_FALSE(client.WriteFeature("Camera", "Data", bytes, "610062"));
    EXPECT_FALSE(client.TryReadFeature("Camera", "Other"));
    EXPECT_FALSE(client.TryDescribeFeature("Camera", "Other"));
    EXPECT_TRUE(client.TryDescribeFeature("Camera", "Data"));
}

// A list that lacks what there was no memory for would look like a whole one.
TEST(ServiceClient, DoesNotPassOverMissingMemory) {
    class ServicesWithoutMemory final : public TestServices {
    public:
        MV_SERVICE_RESULT DescribeFeature(const char*, const char*, MV_FEATURE_RECEIVER, void*,
                                          MV_SERVICE_REASON*) override {
            return MV_SERVICE_OUT_OF_MEMORY;
        }
        MV_SERVICE_RESULT ReadFeature(const char*, const char*, MV_VALUE_RECEIVER, void*,
                                      MV_SERVICE_REASON*) override {
            return MV_SERVICE_OUT_OF_MEMORY;
        }
    } services;
    ServiceClient client(services);
    EXPECT_THROW(client.TryDescribeFeature("Camera", "Width"), std::bad_alloc);
    EXPECT_THROW(client.TryReadFeature("Camera", "Width"), std::bad_alloc);
}

TEST(ServiceClient, NamesServiceResultObjectAndReasonsOfAFailure) {
    FakeServices services;
    services.Add("Camera", "Width", MV_FEATURE_INTEGER).writing = MV_SERVICE_OUT_OF_RANGE;
    std::deque<std::string> logged{"of before"};
    ServiceClient client(services, [&] {
        std::deque<std::string> lines{"  said by\x1B the log"};
        lines.swap(logged);
        return lines;
    });
    EXPECT_EQ(FailureOf([&] {
                  client.WriteFeature("Camera", "Width", {MV_FEATURE_INTEGER, 9, 0, ""}, "9");
              }),
              "WriteFeature failed with 8 (the value is outside the limits) for Camera/Width=9\n"
              "  it does not want to\n  said by\\x1B the log");
    EXPECT_EQ(FailureOf([&] { ServiceClient(services).ReadFeature("Camera", "No"); }),
              "ReadFeature failed with 5 (there is nothing of this name) for Camera/No\n"
              "  no such feature");
}

TEST(ServiceClient, TakesAnIncompleteSettingsFileForNoFailure) {
    FakeServices services;
    services.settings = {
        {sizeof(MV_SETTING), MV_SERVICE_OK, "Camera", "Gain", "GainSelector=Red", "2", "1", ""},
        {sizeof(MV_SETTING), MV_SERVICE_NOT_FOUND, "Camera", "Other", "", "3", "",
         "there is none"}};
    services.settingsResult = MV_SERVICE_INCOMPLETE;
    services.settingsReason = "not all";
    ServiceClient client(services);
    const SettingsOutcome loaded = client.LoadSettings("a.json", true);
    EXPECT_FALSE(loaded.isComplete);
    EXPECT_EQ(loaded.reason, "not all");
    ASSERT_EQ(loaded.settings.size(), 2u);
    EXPECT_EQ(loaded.settings[0].selector, "GainSelector=Red");
    EXPECT_EQ(loaded.settings[0].present, "1");
    EXPECT_EQ(loaded.settings[1].result, MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(loaded.settings[1].reason, "there is none");
    services.settingsResult = MV_SERVICE_OK;
    services.settingsReason = "";
    EXPECT_TRUE(client.LoadSettings("b.json", false).isComplete);
    EXPECT_TRUE(client.SaveSettings("c.json").isComplete);
    EXPECT_EQ(services.calls,
              (std::vector<std::string>{"load a.json 1", "load b.json 0", "save c.json"}));
    services.settingsResult = MV_SERVICE_FILE_FAILED;
    EXPECT_EQ(FailureOf([&] { client.SaveSettings("d.json"); }),
              "SaveSettings failed with 14 (the file cannot be used) for d.json");
}

TEST(ServiceClient, HasATextForEveryResult) {
    std::set<std::string> texts;
    for (int result = MV_SERVICE_OK; result <= MV_SERVICE_OUT_OF_MEMORY; ++result) {
        EXPECT_TRUE(texts.insert(ServiceResultText(static_cast<MV_SERVICE_RESULT>(result))).second)
            << result;
    }
    EXPECT_EQ(texts.count("unknown result"), 0u);
    EXPECT_STREQ(ServiceResultText(static_cast<MV_SERVICE_RESULT>(99)), "unknown result");
}

/// Services that have an image, in a version.
class ImageServices : public TestServices {
public:
    explicit ImageServices(std::uint32_t theVersion) : version(theVersion) {}
    std::uint32_t GetVersion() const override { return version; }
    MV_SERVICE_RESULT ReadSentImage(std::uint64_t index, MV_DATA_RECEIVER receiver, void* context,
                                    MV_SERVICE_REASON* reason) override {
        if (index == 0) {
            receiver("Mono12p", "\0\1\2", 3, context);
            return MV_SERVICE_OK;
        }
        std::snprintf(reason->text, sizeof reason->text, "the camera has it again");
        return index == 1 ? MV_SERVICE_GONE : MV_SERVICE_OUT_OF_MEMORY;
    }

private:
    const std::uint32_t version;
};

TEST(ServiceClient, ReadsImagesAsTheyWereSent) {
    ImageServices services(2);
    ServiceClient client(services);
    EXPECT_TRUE(client.OffersSentImages());
    SentImageBytes image;
    std::string reason;
    EXPECT_TRUE(client.TryReadSentImage(0, image, reason));
    EXPECT_EQ(image.format, "Mono12p");
    EXPECT_EQ(image.bytes, std::string("\0\1\2", 3));
    EXPECT_FALSE(client.TryReadSentImage(1, image, reason));
    EXPECT_EQ(reason, "the camera has it again");
    EXPECT_THROW(client.TryReadSentImage(2, image, reason), std::bad_alloc);
}

// They have no such slot.
TEST(ServiceClient, KnowsThatServicesOfTheFirstVersionHaveNoSentImages) {
    ImageServices services(1);
    EXPECT_FALSE(ServiceClient(services).OffersSentImages());
}

} // namespace
