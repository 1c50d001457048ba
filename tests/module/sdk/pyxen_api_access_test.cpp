// pyxen_api_access_test.cpp - loading, starting and leaving the camera SDK
#include "sdk/pyxen_api_access.h"

#include "tests/module/sdk/current_directory.h"
#include "tests/module/sdk/library_text.h"
#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

using library_text::File;
using library_text::Separator;
using support::EnvironmentGuard;
const Texts kEntryNames = {"PxnVersionQuery",
                           "PxnStartup",
                           "PxnShutdown",
                           "PxnCamerasList",
                           "PxnCameraInfoQueryByHandle",
                           "PxnCameraInfoQuery",
                           "PxnCameraOpen",
                           "PxnCameraClose",
                           "PxnFeaturesList",
                           "PxnFeatureInfoQuery",
                           "PxnFeatureListSelected",
                           "PxnFeatureAccessQuery",
                           "PxnFeatureIntGet",
                           "PxnFeatureIntSet",
                           "PxnFeatureIntRangeQuery",
                           "PxnFeatureIntIncrementQuery",
                           "PxnFeatureIntValidValueSetQuery",
                           "PxnFeatureFloatGet",
                           "PxnFeatureFloatSet",
                           "PxnFeatureFloatRangeQuery",
                           "PxnFeatureEnumGet",
                           "PxnFeatureEnumSet",
                           "PxnFeatureEnumRangeQuery",
                           "PxnFeatureEnumIsAvailable",
                           "PxnFeatureEnumAsInt",
                           "PxnFeatureEnumAsString",
                           "PxnFeatureEnumEntryGet",
                           "PxnFeatureStringGet",
                           "PxnFeatureStringSet",
                           "PxnFeatureStringMaxlengthQuery",
                           "PxnFeatureBoolGet",
                           "PxnFeatureBoolSet",
                           "PxnFeatureCommandRun",
                           "PxnFeatureCommandIsDone",
                           "PxnFeatureRawGet",
                           "PxnFeatureRawSet",
                           "PxnFeatureRawLengthQuery",
                           "PxnFeatureInvalidationRegister",
                           "PxnFeatureInvalidationUnregister",
                           "PxnPayloadSizeGet",
                           "PxnFrameAnnounce",
                           "PxnFrameRevoke",
                           "PxnFrameRevokeAll",
                           "PxnCaptureStart",
                           "PxnCaptureEnd",
                           "PxnCaptureFrameQueue",
                           "PxnCaptureFrameWait",
                           "PxnCaptureQueueFlush",
                           "PxnTransportLayersList",
                           "PxnInterfacesList",
                           "PxnMemoryRead",
                           "PxnMemoryWrite",
                           "PxnSettingsSave",
                           "PxnSettingsLoad",
                           "PxnChunkDataAccess"};

const std::string kTag = "CPyxenAPIAccess::CPyxenAPIAccess: ";
const std::string kNoHome = "1 " + kTag + "Environment variable PYXEN_HOME not found.";
const std::string kStarting = "1 " + kTag + "calling PxnStartup...";
const std::string kInvalid = "0 " + kTag + "PyxenAPI is invalid!";

std::string Trying(const std::string& directory) {
    return "1 " + kTag + "Trying to load " + directory + Separator() + File();
}
std::string Failed(const std::string& directory) {
    return "1 " + kTag + "Loading " + directory + Separator() + File() + " failed";
}
std::string TryingDefault() {
    return "1 " + kTag + "Trying to load " + File() + " (default path)";
}
std::string DefaultFailed() {
    return "0 " + kTag + "Loading " + File() + " (default path) failed. Giving up.";
}
std::string BesideTests(const char* directory) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), directory);
}

class ApiAccess : public ::testing::Test {
protected:
    void SetUp() override { sdk.Reset(); }

    // The lines of finding all entries of the library that is loaded.
    Texts FoundAll() {
        Texts lines;
        for (const std::string& name : kEntryNames) {
            char address[32];
            std::snprintf(address, sizeof address, "%016llX",
                          static_cast<unsigned long long>(
                              reinterpret_cast<std::uintptr_t>(api.FindExport(name.c_str()))));
            lines.push_back("1 Found " + name + " @0x" + address);
        }
        return lines;
    }
    Texts LoadedFrom(const std::string& directory) {
        Texts lines = {Trying(directory)};
        const Texts found = FoundAll();
        lines.insert(lines.end(), found.begin(), found.end());
        lines.push_back(kStarting);
        return lines;
    }

    scripted::Sdk& sdk = scripted::GetSdk();
    const std::string home = scripted::Home();
    support::TemporaryDirectory empty;
    support::RecordingSink sink;
    CPyxenAPIAccess api;
};

TEST_F(ApiAccess, IsEmptyBeforeLoading) {
    EXPECT_FALSE(api.IsValid());
    EXPECT_EQ(api.GetLibraryHandle(), nullptr);
    EXPECT_EQ(api.FindExport("PxnStartup"), nullptr);
    EXPECT_EQ(api.PxnStartup, nullptr);
    for (unsigned part = 0; part < 5; ++part) {
        EXPECT_EQ(api.GetFileVersionPart(part), 65535);
    }
    api.Unload();
    EXPECT_FALSE(api.IsValid());
}

TEST_F(ApiAccess, LoadsFromTheHomeDirectoryAndResolvesAllEntriesInOrder) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_TRUE(api.IsValid());
    ASSERT_EQ(kEntryNames.size(), 55u);
    EXPECT_EQ(sink.Lines(), LoadedFrom(home + Separator() + "Bin"));
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnStartup(null)"});
    EXPECT_EQ(sdk.StartupCount(), 1);
}

TEST_F(ApiAccess, PutsEveryEntryInItsPlace) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load(nullptr, nullptr));
#define EXPECT_ENTRY(name) EXPECT_EQ(reinterpret_cast<void*>(api.name), api.FindExport(#name));
    PXN_ENTRIES(EXPECT_ENTRY)
#undef EXPECT_ENTRY
    EXPECT_NE(api.FindExport("PxnStartup"), nullptr);
}

TEST_F(ApiAccess, HomeMayEndInASeparator) {
    const EnvironmentGuard variable("PYXEN_HOME", home + Separator());
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_EQ(sink.Lines(), LoadedFrom(home + Separator() + "Bin"));
}

TEST_F(ApiAccess, SeveralSeparatorsOfHomeStayAsTyped) {
    const EnvironmentGuard variable("PYXEN_HOME", home + Separator() + Separator());
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_EQ(sink.Lines(), LoadedFrom(home + Separator() + Separator() + "Bin"));
}

TEST_F(ApiAccess, HomeMayBeRelative) {
    const CurrentDirectory there(platform::DirectoryOf(home));
    const EnvironmentGuard variable("PYXEN_HOME", "scripted");
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_EQ(sink.Lines(), LoadedFrom("scripted" + Separator() + "Bin"));
    EXPECT_EQ(api.GetFileVersionPart(0), 2);
}

TEST_F(ApiAccess, WithoutTheLibraryInHomeTheDefaultPathIsTried) {
    const CurrentDirectory there(empty.Path());
    const EnvironmentGuard variable("PYXEN_HOME", empty.Path());
    const std::string directory = empty.PathOf("Bin");
    EXPECT_FALSE(api.Load(nullptr, &sink));
    EXPECT_FALSE(api.IsValid());
    EXPECT_EQ(sink.Lines(), (Texts{Trying(directory), Failed(directory), TryingDefault(),
                                   DefaultFailed(), kInvalid}));
    EXPECT_EQ(sdk.TakeCalls(), Texts{});
}

TEST_F(ApiAccess, WithoutHomeOnlyTheDefaultPathIsTried) {
    const CurrentDirectory there(empty.Path());
    {
        const EnvironmentGuard variable("PYXEN_HOME");
        EXPECT_FALSE(api.Load(nullptr, &sink));
        EXPECT_EQ(sink.Take(), (Texts{kNoHome, TryingDefault(), DefaultFailed(), kInvalid}));
    }
    const EnvironmentGuard variable("PYXEN_HOME", "");
    EXPECT_FALSE(api.Load(nullptr, &sink));
    EXPECT_EQ(sink.Take(), (Texts{kNoHome, TryingDefault(), DefaultFailed(), kInvalid}));
}

TEST_F(ApiAccess, TheDefaultPathIsTheCurrentDirectory) {
    const CurrentDirectory there(home + Separator() + "Bin");
    const EnvironmentGuard variable("PYXEN_HOME", empty.Path());
    ASSERT_TRUE(api.Load(nullptr, &sink));
    Texts expected = {Trying(empty.PathOf("Bin")), Failed(empty.PathOf("Bin")), TryingDefault()};
    const Texts found = FoundAll();
    expected.insert(expected.end(), found.begin(), found.end());
    expected.push_back(kStarting);
    EXPECT_EQ(sink.Lines(), expected);
    EXPECT_EQ(api.GetFileVersionPart(3), 7);
}

TEST_F(ApiAccess, LoadsALibraryWhoseDependencyIsBesideIt) {
    const EnvironmentGuard variable("PYXEN_HOME", BesideTests("dependent"));
    EXPECT_TRUE(api.Load(nullptr, &sink));
}

TEST_F(ApiAccess, EveryMissingEntryIsNamed) {
    const EnvironmentGuard variable("PYXEN_HOME", BesideTests("incomplete"));
    EXPECT_FALSE(api.Load(nullptr, &sink));
    EXPECT_FALSE(api.IsValid());
    const Texts lines = sink.Lines();
    ASSERT_EQ(lines.size(), 1 + kEntryNames.size() + 1);
    for (std::size_t index = 0; index < kEntryNames.size(); ++index) {
        const std::string& name = kEntryNames[index];
        const std::string& line = lines[1 + index];
        if (name == "PxnFeatureEnumAsInt" || name == "PxnChunkDataAccess") {
            EXPECT_EQ(line, "0 PyxenApi: Could not find " + name);
        } else {
            EXPECT_EQ(line.substr(0, line.size() - 16), "1 Found " + name + " @0x");
        }
    }
    EXPECT_EQ(lines.back(), kInvalid);
    EXPECT_EQ(api.GetLibraryHandle(), nullptr);
}

TEST_F(ApiAccess, AFailedStartIsReportedAndShutDownOnce) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    sdk.Fail("PxnStartup", PxnErrNoTL);
    EXPECT_FALSE(api.Load(nullptr, &sink));
    EXPECT_FALSE(api.IsValid());
    const Texts lines = sink.Lines();
    ASSERT_EQ(lines.size(), 58u);
    EXPECT_EQ(lines[56], kStarting);
    EXPECT_EQ(lines[57], "0 " + kTag + "PxnStartup returned error: No transport layers were found");
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnStartup(null)", "PxnShutdown()"}));
    EXPECT_EQ(api.GetLibraryHandle(), nullptr);
    api.Unload();
    EXPECT_EQ(sdk.TakeCalls(), Texts{});
}

TEST_F(ApiAccess, ConfigurationPathGoesToTheSdkAsWideText) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load("dir/PxnC.xml", &sink));
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnStartup(\"dir/PxnC.xml\")"});
    ASSERT_TRUE(api.Load("", &sink));
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnShutdown()", "PxnStartup(\"\")"}));
}

TEST_F(ApiAccess, LoadingAgainStartsClean) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load(nullptr, &sink));
    ASSERT_TRUE(api.Load(nullptr, &sink));
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnStartup(null)", "PxnShutdown()", "PxnStartup(null)"}));
    EXPECT_EQ(sdk.StartupCount(), 1);
}

TEST_F(ApiAccess, AFailedLoadLeavesNothingOfTheEarlierOne) {
    {
        const EnvironmentGuard variable("PYXEN_HOME", home);
        ASSERT_TRUE(api.Load(nullptr, &sink));
    }
    const CurrentDirectory there(empty.Path());
    const EnvironmentGuard variable("PYXEN_HOME", empty.Path());
    EXPECT_FALSE(api.Load(nullptr, &sink));
    EXPECT_EQ(sdk.StartupCount(), 0);
    EXPECT_EQ(api.GetFileVersionPart(0), 65535);
    EXPECT_EQ(api.PxnStartup, nullptr);
}

TEST_F(ApiAccess, UnloadShutsDownOnce) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load(nullptr, &sink));
    sdk.ClearCalls();
    sink.Take();
    api.Unload();
    EXPECT_FALSE(api.IsValid());
    EXPECT_EQ(api.GetLibraryHandle(), nullptr);
    api.Unload();
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnShutdown()"});
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(ApiAccess, DestructionShutsDown) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    {
        CPyxenAPIAccess inner;
        ASSERT_TRUE(inner.Load(nullptr, nullptr));
        sdk.ClearCalls();
    }
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnShutdown()"});
    EXPECT_EQ(sdk.StartupCount(), 0);
}

TEST_F(ApiAccess, VersionPartsAreThoseOfTheFile) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    EXPECT_EQ(api.GetFileVersionPart(0), 2);
    EXPECT_EQ(api.GetFileVersionPart(1), 1);
    EXPECT_EQ(api.GetFileVersionPart(2), 0);
    EXPECT_EQ(api.GetFileVersionPart(3), 7);
    EXPECT_EQ(api.GetFileVersionPart(4), 65535);
    EXPECT_EQ(api.GetFileVersionPart(0xFFFFFFFF), 65535);
    api.Unload();
    EXPECT_EQ(api.GetFileVersionPart(0), 65535);
}

TEST_F(ApiAccess, AFileWithoutVersionHasNoParts) {
    const EnvironmentGuard variable("PYXEN_HOME", BesideTests("bare"));
    ASSERT_TRUE(api.Load(nullptr, &sink));
    for (unsigned part = 0; part < 5; ++part) {
        EXPECT_EQ(api.GetFileVersionPart(part), 65535);
    }
}

TEST_F(ApiAccess, VersionPartsAreThoseOfALibraryBehind) {
    {
        const EnvironmentGuard variable("PYXEN_HOME", BesideTests("forwarding"));
        ASSERT_TRUE(api.Load(nullptr, nullptr));
        for (unsigned part = 0; part < 4; ++part) {
            EXPECT_EQ(api.GetFileVersionPart(part), 5 + part);
        }
        EXPECT_EQ(api.GetFileVersionPart(4), 65535);
    }
    const EnvironmentGuard variable("PYXEN_HOME", BesideTests("bare"));
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    EXPECT_EQ(api.GetFileVersionPart(0), 65535);
}

// Runs out of memory at one of its lines.
class FailingSink final : public ILogSink {
public:
    explicit FailingSink(std::size_t linesBefore) : left(linesBefore) {}
    void Write(int, const char*, ...) override {
        if (left == 0) {
            throw std::bad_alloc();
        }
        --left;
    }
    void WriteError(const char*) override {}

private:
    std::size_t left;
};

TEST_F(ApiAccess, ASinkThatFailsAtWhateverLineEndsTheLoad) {
    const EnvironmentGuard variable("PYXEN_HOME", home);
    const std::size_t lines = 1 + kEntryNames.size() + 1;
    for (std::size_t before = 0; before < lines; ++before) {
        FailingSink failing(before);
        CPyxenAPIAccess loaded;
        EXPECT_FALSE(loaded.Load(nullptr, &failing)) << before;
        EXPECT_FALSE(loaded.IsValid()) << before;
        EXPECT_EQ(loaded.GetLibraryHandle(), nullptr) << before;
        EXPECT_EQ(sdk.TakeCalls({"PxnStartup"}), Texts{}) << before;
    }
    FailingSink enough(lines);
    CPyxenAPIAccess loaded;
    EXPECT_TRUE(loaded.Load(nullptr, &enough));
}

TEST_F(ApiAccess, EveryRoadWorksWithoutSink) {
    const CurrentDirectory there(empty.Path());
    {
        const EnvironmentGuard variable("PYXEN_HOME", empty.Path());
        EXPECT_FALSE(api.Load(nullptr, nullptr));
    }
    {
        const EnvironmentGuard variable("PYXEN_HOME");
        EXPECT_FALSE(api.Load(nullptr, nullptr));
    }
    {
        const EnvironmentGuard variable("PYXEN_HOME", BesideTests("incomplete"));
        EXPECT_FALSE(api.Load(nullptr, nullptr));
    }
    const EnvironmentGuard variable("PYXEN_HOME", home);
    sdk.Fail("PxnStartup", PxnErrNoTL);
    EXPECT_FALSE(api.Load(nullptr, nullptr));
    EXPECT_TRUE(api.Load("PxnC.xml", nullptr));
}

} // namespace
