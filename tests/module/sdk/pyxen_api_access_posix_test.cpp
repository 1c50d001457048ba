// pyxen_api_access_posix_test.cpp - loading where paths are UTF-8 and have no length limit of their
// own, and where a library that is being loaded can be removed
#include "sdk/pyxen_api_access.h"
#include "tests/module/sdk/current_directory.h"
#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
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

std::string BareLibrary() {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()),
                              "bare/Bin/libPxnC.so");
}

// Only a path that was made absolute names a file of the current directory: as it stands, the name
// is searched for elsewhere, where these tests have the scripted SDK.
TEST(ApiLoading, APathIsMadeAbsoluteUpTo259Characters) {
    scripted::Sdk& sdk = scripted::GetSdk();
    sdk.Reset();
    const support::EnvironmentGuard variable("PYXEN_HOME");
    const std::string file = "/libPxnC.so";
    for (const std::size_t length : {259u, 260u}) {
        const support::TemporaryDirectory directory;
        std::string place = std::filesystem::canonical(directory.Path()).string();
        while (place.size() + file.size() < length) {
            const std::size_t missing = length - file.size() - place.size();
            place += '/' + std::string(missing > 101 ? 50 : missing - 1, 'd');
        }
        ASSERT_EQ(place.size() + file.size(), length);
        ASSERT_TRUE(platform::CreateDirectories(place));
        std::filesystem::create_symlink(BareLibrary(), place + file);
        const CurrentDirectory there(place);
        CPyxenAPIAccess api;
        const bool isBare = api.Load(nullptr, nullptr) && sdk.TakeCalls({"PxnStartup"}).empty();
        EXPECT_EQ(isBare, length == 259) << length;
    }
}

TEST(ApiLoading, TheVersionIsReadBeforeTheLibraryIsLoaded) {
    const support::TemporaryDirectory directory;
    const std::string link = directory.PathOf("Bin/libPxnC.so");
    ASSERT_TRUE(platform::CreateDirectories(directory.PathOf("Bin")));
    std::filesystem::copy_file(BareLibrary(), link + ".3.1.4.1");
    std::filesystem::create_symlink("libPxnC.so.3.1.4.1", link);
    const support::EnvironmentGuard home("PYXEN_HOME", directory.Path());
    const support::EnvironmentGuard removal("BARE_SDK_REMOVES", link);
    CPyxenAPIAccess api;
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    EXPECT_FALSE(platform::PathExists(link));
    EXPECT_EQ(api.GetFileVersionPart(0), 3);
    EXPECT_EQ(api.GetFileVersionPart(1), 1);
    EXPECT_EQ(api.GetFileVersionPart(2), 4);
    EXPECT_EQ(api.GetFileVersionPart(3), 1);
}

} // namespace
