// sdk_session_test.cpp - the camera SDK from loading to unloading
#include "grabber/sdk_session.h"

#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

const std::string kTag = "1 CMivoraKVNPyxenClass::Init: ";

class SdkSessionTest : public ::testing::Test {
protected:
    void SetUp() override { sdk.Reset(); }

    scripted::Sdk& sdk = scripted::GetSdk();
    support::EnvironmentGuard home{"PYXEN_HOME", scripted::Home()};
    support::TemporaryDirectory directory;
    support::RecordingSink sink;
    SdkSession session{&sink};
};

TEST_F(SdkSessionTest, BeginsUnloaded) {
    EXPECT_FALSE(session.Api().IsValid());
    EXPECT_EQ(session.SystemCache().GetModuleName(), nullptr);
    EXPECT_EQ(session.GetInterfaceCount(), 0u);
    session.Unload();
    EXPECT_EQ(sdk.Calls(), Texts{});
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(SdkSessionTest, LoadsWithTheConfigurationFileOfTheDirectory) {
    const std::string path = directory.Write("PxnC.xml", "<a/>");
    ASSERT_TRUE(session.Load(directory.PathOf("")));
    EXPECT_EQ(sink.Take().front().substr(0, kTag.size() + 24), kTag + "Using Pyxen config file:");
    EXPECT_TRUE(session.Api().IsValid());
}

TEST_F(SdkSessionTest, ListsFeaturesThenInterfaces) {
    ASSERT_TRUE(session.Load("/nowhere"));
    sdk.ClearCalls();
    session.List();
    EXPECT_STREQ(session.SystemCache().GetModuleName(), "PxnSystem");
    EXPECT_GT(session.SystemCache().GetFeatureCount(), 0u);
    EXPECT_EQ(session.GetInterfaceCount(), sdk.Data().interfaces.size());
    const Texts calls = sdk.TakeCalls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front().substr(0, calls.front().find('(')), "PxnFeaturesList");
    EXPECT_EQ(calls.back().substr(0, calls.back().find('(')), "PxnInterfacesList");
    session.ForgetInterfaces();
    EXPECT_EQ(session.GetInterfaceCount(), 0u);
}

TEST_F(SdkSessionTest, WritesVersionsOfSdkAndFile) {
    ASSERT_TRUE(session.Load("/nowhere"));
    const CPyxenAPIAccess& api = session.Api();
    std::string file;
    for (unsigned part = 0; part < 4; ++part) {
        file += (part == 0 ? "" : ".") + std::to_string(api.GetFileVersionPart(part));
    }
    EXPECT_EQ(session.GetVersionText("Name", {1, 2, 3}), "Name V1.2.3 (" + file + ")");
}

TEST_F(SdkSessionTest, UnloadsAndLoadsAgain) {
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(session.Load("/nowhere"));
        session.List();
        session.Unload();
        EXPECT_FALSE(session.Api().IsValid());
        EXPECT_EQ(session.SystemCache().GetModuleName(), nullptr);
        EXPECT_EQ(session.GetInterfaceCount(), 0u);
    }
}

TEST_F(SdkSessionTest, StaysUnloadedWhenTheSdkDoesNotStart) {
    sdk.Fail("PxnStartup", PxnErrIO);
    EXPECT_FALSE(session.Load("/nowhere"));
    EXPECT_FALSE(session.Api().IsValid());
}

} // namespace
