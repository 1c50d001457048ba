// sdk_checks_test.cpp - tests of what is found about the SDK's library
#include "apps/doctor/checks.h"
#include "tests/apps/doctor/findings.h"

#include <gtest/gtest.h>

namespace {

SdkFacts SoundSdk() {
    SdkFacts sdk;
    sdk.places = {{"/sdk/Bin/libPxnC.so", ""}};
    return sdk;
}

TEST(SdkChecks, ASoundLibraryIsOk) {
    const auto findings = CheckSdk(SoundSdk());
    EXPECT_EQ(FindingsOf(findings, "library"), "ok: /sdk/Bin/libPxnC.so\n");
    EXPECT_EQ(WorstOf(findings, "entries"), "ok");
    EXPECT_EQ(WorstOf(findings, "start-up"), "ok");
    EXPECT_FALSE(HasProblem(findings));
}

TEST(SdkChecks, EachPlaceIsNamedInOrderAndTheLastIsTheProblem) {
    SdkFacts sdk;
    sdk.searched = "looked for in /x";
    sdk.places = {{"/a", "there is no file /a"}, {"/b", "there is no file /b"}};
    const auto findings = CheckSdk(sdk);
    EXPECT_EQ(FindingsOf(findings, "library").find("warning: there is no file /a -> the next"), 0u);
    EXPECT_NE(FindingsOf(findings, "library")
                  .find("problem: there is no file /b -> looked for in /x; name the SDK's"),
              std::string::npos);
    EXPECT_EQ(WorstOf(findings, "entries") + WorstOf(findings, "start-up"), "");
}

TEST(SdkChecks, ALaterPlaceThatHasTheLibraryIsNoProblem) {
    SdkFacts sdk = SoundSdk();
    sdk.places.insert(sdk.places.begin(), {"/a", "there is no file /a"});
    EXPECT_FALSE(HasProblem(CheckSdk(sdk)));
}

TEST(SdkChecks, EachMissingEntryIsNamed) {
    SdkFacts sdk = SoundSdk();
    sdk.missing = {"PxnStartup", "PxnShutdown"};
    sdk.initFailure = "Init failed";
    const auto findings = CheckSdk(sdk);
    EXPECT_NE(FindingsOf(findings, "entries").find("does not have PxnStartup"), std::string::npos);
    EXPECT_NE(FindingsOf(findings, "entries").find("does not have PxnShutdown"), std::string::npos);
    EXPECT_EQ(WorstOf(findings, "start-up"), "") << "it was not started";
}

TEST(SdkChecks, AStartUpThatFailsIsNamedWithItsCode) {
    SdkFacts sdk = SoundSdk();
    sdk.initFailure = "Init failed with 4";
    sdk.startUp = -29;
    EXPECT_EQ(FindingsOf(CheckSdk(sdk), "start-up")
                  .find("problem: PxnStartup returns -29: Init failed with 4 -> correct PxnC.xml"),
              0u);
    sdk.startUp = -37;
    EXPECT_NE(FindingsOf(CheckSdk(sdk), "start-up").find("transport layer"), std::string::npos);
    sdk.startUp = 0;
    EXPECT_EQ(FindingsOf(CheckSdk(sdk), "start-up").find("problem: Init failed with 4 -> "), 0u);
}

TEST(SdkChecks, AModuleThatMakesNoGrabberIsAProblem) {
    SdkFacts sdk = SoundSdk();
    sdk.moduleProblem = "cannot load module";
    const auto findings = CheckSdk(sdk);
    EXPECT_EQ(WorstOf(findings, "module"), "problem");
    EXPECT_EQ(WorstOf(findings, "start-up"), "");
}

} // namespace
