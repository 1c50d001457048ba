// program_version_test.cpp - tests of what --version prints
#include "apps/common/program_version.h"

#include "mivora/version.h"
#include "platform/file_system.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

namespace {

const std::string kOwn = MivoraHostVersion(); // built together with the programs

TEST(ProgramVersion, NamesProgramHostAndModule) {
    EXPECT_EQ(VersionText("thing", {"/m/a.so", "2.3.4", ""}, false),
              "thing " + kOwn + "\nhost library " + kOwn +
                  ", interface 1\ngrabber module 2.3.4 /m/a.so");
    EXPECT_EQ(VersionText("thing", {"/m/a.so", std::nullopt, "no module"}, false),
              "thing " + kOwn + "\nhost library " + kOwn + ", interface 1\nno module");
    EXPECT_EQ(VersionText("thing", VersionOfLinkedModule(), false),
              "thing " + kOwn + "\nhost library " + kOwn + ", interface 1\ngrabber module " + kOwn +
                  ", linked in");
}

TEST(ProgramVersion, IsAnObjectInJson) {
    EXPECT_EQ(VersionText("thing", {"/m/a.so", std::nullopt, ""}, true),
              R"({"schema":1,"program":"thing","version":")" + kOwn + R"(","host":{"version":")" +
                  kOwn +
                  R"(","interface":1},"module":{"version":null,"file":"/m/a.so","problem":null}})");
}

TEST(ProgramVersion, LoadsTheModule) {
    const ModuleVersion missing = VersionOfModule("/nowhere/a.module");
    EXPECT_NE(missing.problem.find("/nowhere/a.module"), std::string::npos) << missing.problem;
    EXPECT_EQ(missing.version, std::nullopt);
    const ModuleVersion silent = VersionOfModule(support::BuiltFile("test_modules/silent.module"));
    EXPECT_NE(silent.problem.find("MivoraModuleInterface"), std::string::npos) << silent.problem;
    const ModuleVersion good = VersionOfModule(support::BuiltFile("test_modules/good.module"));
    EXPECT_EQ(good.problem, "");
    EXPECT_NE(good.file.find("good.module"), std::string::npos);
    const ModuleVersion own =
        VersionOfModule(support::BuiltFile(platform::LibraryFileName("MivoraKVNPyxen")));
    EXPECT_EQ(own.version, kOwn);
}

} // namespace
