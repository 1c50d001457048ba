// module_loader_test.cpp - loading and refusing grabber modules
#include "mivora/module_loader.h"

#include "mivora/module_entry.h"
#include "mivora/module_services.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string ModulePath(const char* name) {
    const std::string directory = platform::DirectoryOf(platform::ExecutablePath());
    return platform::JoinPath(platform::JoinPath(directory, "test_modules"),
                              std::string(name) + ".module");
}

/// The reason in the error text for a refused module, without the words common to all refusals.
std::string RefusalReason(const char* name) {
    CModuleLoader loader;
    const std::string path = ModulePath(name);
    EXPECT_FALSE(loader.Load(path.c_str()));
    EXPECT_FALSE(loader.IsLoaded());
    EXPECT_STREQ(loader.GetPath(), "");
    EXPECT_EQ(loader.CreateGrabber(), nullptr);
    EXPECT_STREQ(loader.GetErrorText(), "No grabber module is loaded");
    EXPECT_FALSE(loader.Load(path.c_str()));
    const std::string text = loader.GetErrorText();
    const std::string common = "Cannot use the grabber module \"" + path + "\": ";
    EXPECT_EQ(text.substr(0, common.size()), common);
    return text.size() > common.size() ? text.substr(common.size()) : "";
}

TEST(ModuleLoader, LoadsAModuleAndCreatesGrabbers) {
    CModuleLoader loader;
    EXPECT_FALSE(loader.IsLoaded());
    EXPECT_STREQ(loader.GetErrorText(), "");
    const std::string path = ModulePath("good");
    ASSERT_TRUE(loader.Load(path.c_str())) << loader.GetErrorText();
    EXPECT_TRUE(loader.IsLoaded());
    EXPECT_EQ(loader.GetPath(), path);
    EXPECT_STREQ(loader.GetErrorText(), "");
    CMivoraGrabber* const first = loader.CreateGrabber();
    CMivoraGrabber* const second = loader.CreateGrabber();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_NE(first->GetModuleInstance(), nullptr);
    EXPECT_EQ(first->Init(), MV_OK);
    EXPECT_EQ(first->GetNumCmdChannelTypes(), 3u);
    loader.DeleteGrabber(first);
    loader.DeleteGrabber(first);
    loader.DeleteGrabber(nullptr);
    EXPECT_EQ(second->Init(), MV_OK);
    // The loader deletes the second one.
}

TEST(ModuleLoader, DeletesRemainingGrabbersOnUnload) {
    CModuleLoader loader;
    ASSERT_TRUE(loader.Load(ModulePath("good").c_str()));
    ASSERT_NE(loader.CreateGrabber(), nullptr);
    loader.Unload();
    EXPECT_FALSE(loader.IsLoaded());
    EXPECT_EQ(loader.CreateGrabber(), nullptr);
    ASSERT_TRUE(loader.Load(ModulePath("good").c_str()));
    EXPECT_NE(loader.CreateGrabber(), nullptr);
}

TEST(ModuleLoader, NamesAMissingFile) {
    CModuleLoader loader;
    EXPECT_FALSE(loader.Load("no-such-module"));
    EXPECT_STREQ(loader.GetErrorText(),
                 "Cannot use the grabber module \"no-such-module\": there is no such file");
    EXPECT_FALSE(loader.Load(nullptr));
    EXPECT_FALSE(loader.Load(""));
    EXPECT_STREQ(loader.GetErrorText(), "Cannot use the grabber module \"\": no file was named");
}

TEST(ModuleLoader, RefusesAFileThatIsNotALibrary) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.Write("text.module", "this is no library\n");
    CModuleLoader loader;
    EXPECT_FALSE(loader.Load(path.c_str()));
    const std::string common = "Cannot use the grabber module \"" + path + "\": ";
    EXPECT_EQ(std::string(loader.GetErrorText()).substr(0, common.size()), common);
    EXPECT_GT(std::string(loader.GetErrorText()).size(), common.size());
}

TEST(ModuleLoader, RefusesAModuleWithoutAnInterfaceRecord) {
    EXPECT_EQ(RefusalReason("silent"), "it does not export MivoraModuleInterface");
}

TEST(ModuleLoader, NamesAllMissingEntries) {
    EXPECT_EQ(RefusalReason("without_entries"),
              "it does not export CreateGrabberInstance, DeleteGrabberInstance");
    EXPECT_EQ(RefusalReason("without_anything"), "it does not export MivoraModuleInterface, "
                                                 "CreateGrabberInstance, DeleteGrabberInstance");
}

TEST(ModuleLoader, RefusesAnotherSizeOfTheRecord) {
    EXPECT_EQ(RefusalReason("other_size"), "its interface record has 8 bytes, fewer than 16");
}

TEST(ModuleLoader, RefusesAnotherVersionAndNamesBoth) {
    EXPECT_EQ(RefusalReason("other_version"),
              "it was built for version 7 of the grabber interface, "
              "this host has version 1");
}

TEST(ModuleLoader, RefusesAnotherCompilerFamilyAndNamesBoth) {
    EXPECT_EQ(RefusalReason("other_family"),
              std::string("it was built with the Some other C++ ABI, this host with the ") +
                  kMvCompilerFamily);
    EXPECT_EQ(RefusalReason("other_both"),
              std::string("it was built for version 7 of the grabber interface, this host has "
                          "version 1; it was built with the unknown C++ ABI, this host with the ") +
                  kMvCompilerFamily);
}

TEST(ModuleLoader, ReportsThatAModuleCreatedNoGrabber) {
    CModuleLoader loader;
    const std::string path = ModulePath("makes_nothing");
    ASSERT_TRUE(loader.Load(path.c_str())) << loader.GetErrorText();
    EXPECT_EQ(loader.CreateGrabber(), nullptr);
    EXPECT_EQ(loader.GetErrorText(), "The grabber module \"" + path + "\" made no grabber");
}

/// Why the module offers no services for a grabber of its own.
std::string WhyNoServices(const char* name) {
    CModuleLoader loader;
    const std::string path = ModulePath(name);
    EXPECT_TRUE(loader.Load(path.c_str())) << loader.GetErrorText();
    EXPECT_EQ(loader.GetServices(loader.CreateGrabber()), nullptr);
    const std::string text = loader.GetErrorText();
    const std::string common = "The grabber module \"" + path + "\" ";
    EXPECT_EQ(text.substr(0, common.size()), common);
    return text.size() > common.size() ? text.substr(common.size()) : "";
}

TEST(ModuleLoader, FindsTheServicesOfAGrabber) {
    for (const char* const name : {"services", "services_longer", "services_without_version"}) {
        CModuleLoader loader;
        ASSERT_TRUE(loader.Load(ModulePath(name).c_str())) << loader.GetErrorText();
        IMivoraModuleServices* const services = loader.GetServices(loader.CreateGrabber());
        ASSERT_NE(services, nullptr) << loader.GetErrorText();
        EXPECT_STREQ(loader.GetErrorText(), "");
        EXPECT_EQ(services->GetVersion(), MIVORA_SERVICES_VERSION);
    }
}

TEST(ModuleLoader, KnowsTheVersionOfAModuleThatHasOne) {
    CModuleLoader loader;
    EXPECT_STREQ(loader.GetModuleVersion(), "");
    ASSERT_TRUE(loader.Load(ModulePath("with_version").c_str())) << loader.GetErrorText();
    EXPECT_STREQ(loader.GetModuleVersion(), "2.3.4");
    loader.Unload();
    EXPECT_STREQ(loader.GetModuleVersion(), "");
    for (const char* const name : {"good", "services_unsaid", "services_without_version"}) {
        ASSERT_TRUE(loader.Load(ModulePath(name).c_str())) << loader.GetErrorText();
        EXPECT_STREQ(loader.GetModuleVersion(), "") << name << " has none, or a record without it";
    }
}

TEST(ModuleLoader, SaysThatAModuleHasNoServices) {
    EXPECT_EQ(WhyNoServices("good"), "offers no services");
    EXPECT_EQ(WhyNoServices("services_unsaid"), "offers no services");
    EXPECT_EQ(WhyNoServices("services_cut_off"), "offers no services");
    EXPECT_EQ(WhyNoServices("services_for_nobody"), "offers no services for this grabber");
}

TEST(ModuleLoader, RefusesServicesOfAnotherVersionAndNamesBoth) {
    EXPECT_EQ(WhyNoServices("services_other_version"),
              "offers version 7 of the services, this host has version 1");
}

TEST(ModuleLoader, FindsServicesOfItsOwnGrabbersOnly) {
    CModuleLoader loader;
    CModuleLoader other;
    ASSERT_TRUE(loader.Load(ModulePath("services").c_str()));
    ASSERT_TRUE(other.Load(ModulePath("services").c_str()));
    CMivoraGrabber* const grabber = other.CreateGrabber();
    EXPECT_EQ(loader.GetServices(grabber), nullptr);
    EXPECT_STREQ(loader.GetErrorText(), "The grabber was not made by the loaded module");
    EXPECT_EQ(loader.GetServices(nullptr), nullptr);
    EXPECT_STREQ(loader.GetErrorText(), "The grabber was not made by the loaded module");
    EXPECT_NE(other.GetServices(grabber), nullptr);
    other.DeleteGrabber(grabber);
    EXPECT_EQ(other.GetServices(grabber), nullptr);
    EXPECT_STREQ(other.GetErrorText(), "The grabber was not made by the loaded module");
}

} // namespace
