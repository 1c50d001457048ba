// pyxen_api_access_posix_test.cpp - loading where paths are UTF-8 and have no length limit of their
// own
#include "sdk/pyxen_api_access.h"
#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

TEST(ApiLoading, AConfigurationPathThatIsNoTextStopsTheLoad) {
    scripted::Sdk& sdk = scripted::GetSdk();
    sdk.Reset();
    const support::EnvironmentGuard variable("PYXEN_HOME", scripted::Home());
    support::RecordingSink sink;
    CPyxenAPIAccess api;
    EXPECT_FALSE(api.Load("/tmp/\xFF/PxnC.xml", &sink));
    EXPECT_FALSE(api.IsValid());
    const Texts lines = sink.Lines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "1 CPyxenAPIAccess::CPyxenAPIAccess: calling PxnStartup...");
    EXPECT_EQ(lines.back(),
              "0 CPyxenAPIAccess::CPyxenAPIAccess: Cannot convert PxnC.xml's filename into wchar!");
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnShutdown()"});
    EXPECT_FALSE(api.Load("/tmp/\xFF/PxnC.xml", nullptr));
}

TEST(ApiLoading, AUtf8ConfigurationPathArrivesWhole) {
    scripted::GetSdk().Reset();
    const support::EnvironmentGuard variable("PYXEN_HOME", scripted::Home());
    CPyxenAPIAccess api;
    ASSERT_TRUE(api.Load("/tmp/K\xC3\xA4mera\xF0\x9F\x93\xB7/PxnC.xml", nullptr));
    EXPECT_EQ(scripted::GetSdk().TakeCalls(), Texts{"PxnStartup(\"/tmp/K?mera?/PxnC.xml\")"});
}

TEST(ApiLoading, APathTooLongToBeMadeAbsoluteIsUsedAsItStands) {
    scripted::GetSdk().Reset();
    support::TemporaryDirectory directory;
    std::string home = directory.Path();
    while (home.size() < 300) {
        home += "/a_directory_with_a_rather_long_name";
    }
    ASSERT_TRUE(platform::CreateDirectories(home + "/Bin"));
    std::filesystem::create_symlink(scripted::Home() + "/Bin/libPxnC.so", home + "/Bin/libPxnC.so");
    const support::EnvironmentGuard variable("PYXEN_HOME", home);
    support::RecordingSink sink;
    CPyxenAPIAccess api;
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_EQ(sink.Lines().front(),
              "1 CPyxenAPIAccess::CPyxenAPIAccess: Trying to load " + home + "/Bin/libPxnC.so");
    EXPECT_EQ(api.GetFileVersionPart(3), 7);
}

} // namespace
