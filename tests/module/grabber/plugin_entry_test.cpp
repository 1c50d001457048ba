// plugin_entry_test.cpp - the built module, loaded as a host loads it
#include "mivora/grabber.h"
#include "mivora/module_entry.h"
#include "mivora/version.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

namespace {

class PluginEntry : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string directory = platform::DirectoryOf(platform::ExecutablePath());
        std::string error;
        ASSERT_TRUE(
            module.Load(platform::JoinPath(directory, platform::LibraryFileName("MivoraKVNPyxen")),
                        true, &error))
            << error;
        create = reinterpret_cast<MV_CREATE_GRABBER>(module.FindSymbol(kMvCreateGrabberName));
        destroy = reinterpret_cast<MV_DELETE_GRABBER>(module.FindSymbol(kMvDeleteGrabberName));
        ASSERT_NE(create, nullptr);
        ASSERT_NE(destroy, nullptr);
    }

    platform::SharedLibrary module;
    MV_CREATE_GRABBER create = nullptr;
    MV_DELETE_GRABBER destroy = nullptr;
};

TEST_F(PluginEntry, MakesAndDestroysGrabbers) {
    int instance = 0;
    CMivoraGrabber* const grabber = create(&instance);
    ASSERT_NE(grabber, nullptr);
    EXPECT_EQ(grabber->GetModuleInstance(), &instance);
    EXPECT_STREQ(grabber->GetDriverName(), "MivoraKVNPyxen.dll");
    CMivoraGrabber* const second = create(nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, grabber);
    destroy(grabber);
    EXPECT_EQ(second->GetNumCmdChannelTypes(), 2u);
    destroy(second);
}

TEST_F(PluginEntry, DestroyingNothingDoesNothing) {
    destroy(nullptr);
}

TEST_F(PluginEntry, SaysWhatItWasBuiltAgainst) {
    const auto query =
        reinterpret_cast<MV_MODULE_INTERFACE_QUERY>(module.FindSymbol(kMvModuleInterfaceName));
    ASSERT_NE(query, nullptr);
    const MV_MODULE_INTERFACE* const record = query();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->size, sizeof(MV_MODULE_INTERFACE));
    EXPECT_EQ(record->interfaceVersion, MIVORA_INTERFACE_VERSION);
    EXPECT_STREQ(record->compilerFamily, kMvCompilerFamily);
    EXPECT_EQ(record->servicesVersion, 1u) << "what hosts of the first version look for";
    EXPECT_STREQ(record->version, MivoraHostVersion()) << "they are built together";
}

TEST_F(PluginEntry, OffersServicesOfEachGrabber) {
    const auto query =
        reinterpret_cast<MV_MODULE_INTERFACE_QUERY>(module.FindSymbol(kMvModuleInterfaceName));
    const MV_SERVICES_QUERY services = query()->services;
    ASSERT_NE(services, nullptr);
    EXPECT_EQ(services(nullptr), nullptr);
    CMivoraGrabber* const first = create(nullptr);
    CMivoraGrabber* const second = create(nullptr);
    ASSERT_NE(services(first), nullptr);
    EXPECT_EQ(services(first), services(first));
    EXPECT_NE(services(first), services(second));
    EXPECT_EQ(services(first)->GetVersion(), MIVORA_SERVICES_VERSION);
    EXPECT_EQ(services(first)->ListModules([](const char*, void*) {}, nullptr, nullptr),
              MV_SERVICE_NOT_INITIALISED);
    destroy(first);
    destroy(second);
}

TEST_F(PluginEntry, DrivesTheSdkThroughTheHostsInterface) {
    scripted::GetSdk().Reset();
    const support::EnvironmentGuard home("PYXEN_HOME", scripted::Home());
    support::RecordingSink sink;
    MivoraInstallLogSink(&sink);
    CMivoraGrabber* const grabber = create(nullptr);
    MivoraInstallLogSink(nullptr);
    ASSERT_NE(grabber, nullptr);
    EXPECT_EQ(grabber->Init(), MV_OK);
    EXPECT_EQ(grabber->GetNumCameras(), 1u);
    EXPECT_EQ(sink.Lines().front(), "1 CMivoraKVNPyxenClass::Init");
    destroy(grabber);
    EXPECT_EQ(scripted::GetSdk().StartupCount(), 0);
}

TEST_F(PluginEntry, StaysLoadedAfterACameraThatCouldNotBeClosed) {
    scripted::Sdk& sdk = scripted::GetSdk();
    sdk.Reset();
    const support::EnvironmentGuard home("PYXEN_HOME", scripted::Home());
    const auto query =
        reinterpret_cast<MV_MODULE_INTERFACE_QUERY>(module.FindSymbol(kMvModuleInterfaceName));
    const MV_MODULE_INTERFACE* const record = query();
    CMivoraGrabber* const grabber = create(nullptr);
    ASSERT_NE(grabber, nullptr);
    ASSERT_EQ(grabber->Init(), MV_OK);
    ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
    ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
    sdk.FailAlways("PxnCameraClose", PxnErrIO);
    destroy(grabber);
    module.Unload();
    // The SDK may still call the module: its memory is there.
    EXPECT_EQ(record->size, sizeof(MV_MODULE_INTERFACE));
    sdk.Reset();
}

} // namespace
