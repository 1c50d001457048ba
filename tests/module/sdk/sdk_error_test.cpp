// sdk_error_test.cpp - the words for the SDK's result codes
#include "sdk/sdk_error.h"

#include "tests/module/texts.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

const std::map<PxnError, std::string>& KnownTexts() {
    static const std::map<PxnError, std::string> texts = {
        {0, "No error"},
        {-1, "Unexpected fault in PyxenC or driver"},
        {-2, "PxnStartup() was not called before the current command"},
        {-3, "The designated instance (camera, feature etc.) cannot be found"},
        {-4, "The given handle is not valid"},
        {-5, "Device was not opened for usage"},
        {-6, "Operation is invalid with the current access mode"},
        {-7, "One of the parameters was invalid (usually an illegal pointer)"},
        {-8, "The given struct size is not valid for this version of the API"},
        {-9, "More data was returned in a string/list than space was provided"},
        {-10, "The feature type for this access function was wrong"},
        {-11, "The value was not valid; either out of bounds or not an increment of the minimum"},
        {-12, "Timeout during wait"},
        {-13, "Other error"},
        {-14, "Resources not available (e.g memory)"},
        {-15, "Call is invalid in the current context (e.g callback)"},
        {-16, "No transport layers were found"},
        {-17, "API feature is not implemented"},
        {-18, "API feature is not supported"},
        {-19, "A multiple registers reads or writes was partially completed"},
        {-20, "Low level IO error in transport layer"},
        {-21,
         "The valid value set could not be retrieved, since the feature does not provide this property"},
        {-22, "Unspecified GenTL runtime error"},
        {-23, "Unspecified runtime error"},
        {-24, "The responsible module/entity is busy executing actions"},
        {-25, "The function has no data to work on"},
        {-26, "An error occurred parsing a buffer containing chunk data"},
        {-27, "Something is already in use"},
        {-28, "Error condition unknown"},
        {-29, "Error parsing XML"},
        {-30, "Something is not available"},
        {-31, "Something is not initialized"},
        {-32, "The given address is out of range or invalid for internal reasons"},
        {-33, "Something has already been done"},
        {-34, "A frame expected to contain chunk data does not contain chunk data"},
        {-35, "A callback provided by the user threw an exception"},
        {-36,
         "The XML for the module is currently not loaded; the module could be in the wrong state or the XML could not be retrieved or could not be parsed properly"},
        {-37, "A required transport layer could not be found or loaded"},
        {-39, "An entity cannot be uniquely identified based on the information provided"},
        {-40, "Something could not be accomplished with a given number of retries"},
        {-41, "The operation requires more buffers"},
    };
    return texts;
}

TEST(ReportSdkError, WritesOneErrorLineForEveryKnownCode) {
    ASSERT_EQ(KnownTexts().size(), 41u);
    for (const auto& [code, text] : KnownTexts()) {
        support::RecordingSink sink;
        ReportSdkError("Class::Operation", code, &sink);
        EXPECT_EQ(sink.Lines(), Texts{"0 Class::Operation: " + text}) << code;
    }
}

TEST(ReportSdkError, WritesTheNumberOfEveryOtherCode) {
    for (const PxnError code : {-38, 5, 1, -42, -1000, std::numeric_limits<PxnError>::min(),
                                std::numeric_limits<PxnError>::max()}) {
        support::RecordingSink sink;
        ReportSdkError("Class::Operation", code, &sink);
        EXPECT_EQ(sink.Lines(),
                  Texts{"0 Class::Operation: unknown error (" + std::to_string(code) + ")"});
    }
}

TEST(ReportSdkError, TakesPercentSignsOfTheContextAsTheyStand) {
    support::RecordingSink sink;
    ReportSdkError("100%s %d", -12, &sink);
    EXPECT_EQ(sink.Lines(), Texts{"0 100%s %d: Timeout during wait"});
}

TEST(ReportSdkError, DoesNothingWithoutSink) {
    ReportSdkError("Class::Operation", -1, nullptr);
    ReportSdkError("Class::Operation", -38, nullptr);
}

TEST(SdkErrorText, IsTheLineWithoutContext) {
    for (const auto& [code, text] : KnownTexts()) {
        EXPECT_STREQ(SdkErrorText(code), text.c_str()) << code;
    }
}

TEST(SdkErrorText, IsNullWhereThereIsNoText) {
    EXPECT_EQ(SdkErrorText(-38), nullptr);
    EXPECT_EQ(SdkErrorText(5), nullptr);
}

} // namespace
