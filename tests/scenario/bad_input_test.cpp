// bad_input_test.cpp - bad usage, missing files and damaged libraries
#include "platform/process.h"
#include "platform/shared_library.h"
#include "tests/scenario/program_test.h"

#include <cstdio>
#include <filesystem>

namespace scenario {
namespace {

class BadInput : public ProgramTest {};

TEST_F(BadInput, HelpIsNoFailure) {
    for (const char* program : {"mivora", "pyxen-tool"}) {
        const auto result = support::RunProgram(program, {"--help"});
        ExpectDone(result);
        EXPECT_PRED2(Contains, result.output, "--sdk");
        EXPECT_PRED2(Contains, result.output, "shell");
    }
    for (const char* command :
         {"cameras", "info", "snap", "grab", "param", "channels", "serial", "watch", "shell",
          "features", "get", "set", "describe", "settings", "doctor", "selftest"}) {
        ExpectDone(support::RunProgram("mivora", {command, "--help"}));
    }
    for (const char* command :
         {"sync-check", "sdk-check", "trace", "convert", "formats", "camera-key", "shell"}) {
        ExpectDone(support::RunProgram("pyxen-tool", {command, "--help"}));
    }
}

TEST_F(BadInput, BadUsageEndsWithStatusTwo) {
    for (const char* program : {"mivora", "pyxen-tool"}) {
        ExpectFailure(support::RunProgram(program, {}), 2, {"subcommand"});
        ExpectFailure(support::RunProgram(program, {"nonsense"}), 2,
                      {"not expected: nonsense", "Run with --help"});
        ExpectFailure(support::RunProgram(program, {"--nonsense"}), 2,
                      {"not expected: --nonsense", "Run with --help"});
        ExpectFailure(support::RunProgram(program, {"--nonsense", "shell"}), 2,
                      {"not expected: --nonsense", "Run with --help"});
        ExpectFailure(support::RunProgram(program, {"shell", "--sdk"}), 2, {"--sdk"});
    }
}

// A script's variable that is not set: another camera, or the simulator, would be taken in its
// place.
TEST_F(BadInput, AnEmptyNameIsNoName) {
    for (const char* option :
         {"--camera", "--sdk", "--sdk-script", "--trace-sdk", "--config", "--log", "--module"}) {
        ExpectFailure(support::RunProgram("mivora", {option, "", "cameras"}), 2,
                      {std::string(option) + ": it is given without a value"});
    }
}

TEST_F(BadInput, WhatTheCommandLineShowsAloneNeedsNoSdk) {
    const std::string nowhere = PathOf("nowhere");
    ExpectFailure(Mivora({"--sdk", nowhere, "snap", "-o", PathOf("image.jpg")}), 2,
                  {"--output: the file name must end in .png"});
    ExpectFailure(Mivora({"--sdk", nowhere, "snap"}), 2, {"--output is required"});
    ExpectFailure(Mivora({"--sdk", nowhere, "param", "set", "257", "long"}), 2,
                  {"V1: \"long\" is no number"});
    ExpectFailure(Tool({"convert", "--format", "Mono8", "--width", "2", "--height", "2",
                        PathOf("nothing.raw"), PathOf("image.jpg")}),
                  2, {"OUT: the file name must end in .png"});
}

TEST_F(BadInput, AMissingSdkLibraryIsNamed) {
    ExpectFailure(Mivora({"--sdk", PathOf("nowhere"), "cameras"}), 1,
                  {"mivora: Init failed with 4", "PYXEN_HOME=" + PathOf("nowhere"),
                   "there is no file " + PathOf("nowhere"), "Giving up."});
    EXPECT_EQ(Mivora({"--sdk", PathOf("nowhere"), "cameras"}).errors.find("looked for"),
              std::string::npos);
    ExpectFailure(Mivora({"--sdk", PathOf("nowhere"), "features"}), 1,
                  {"mivora: Init failed with 4"});
}

TEST_F(BadInput, EveryPlaceIsNamedWhereAnSdkWasLookedFor) {
    // A copy of the program without an SDK beside it.
    const bool isWindows = support::BuiltProgram("mivora").ends_with(".exe");
    const std::string moduleFile = platform::LibraryFileName("MivoraKVNPyxen");
    for (const std::string& name : {std::string(isWindows ? "mivora.exe" : "mivora"), moduleFile,
                                    std::string(isWindows ? "Mivora.dll" : "libMivora.so.1")}) {
        std::filesystem::copy_file(support::BuiltFile(name), PathOf(name));
    }
    platform::ProcessStart start = support::ProgramStart("mivora", {"cameras"});
    start.program = PathOf(isWindows ? "mivora.exe" : "mivora");
    start.workingDirectory = PathOf("here");
    std::filesystem::create_directory(PathOf("here"));
    const std::string file = platform::LibraryFileName("PxnC");
    const std::string home = platform::JoinPath(directory.Path(), "simulator");
    const std::string inHere = platform::JoinPath(PathOf("here"), file);
    const std::string below = platform::JoinPath(platform::JoinPath(home, "Bin"), file);
    auto result = support::RunProgram(start);
    ExpectFailure(result, 1,
                  {"mivora: Init failed with 4 (",
                   ") for the camera SDK of PYXEN_HOME=" + home + "\n",
                   "\n  neither --sdk nor PYXEN_HOME names a camera SDK: the SDK \"simulator\" was "
                   "looked for in " +
                       home + " and in ",
                   "\n  there is no file " + below + "\n  there is no file " + inHere + "\n"});
    start.arguments = {"--sdk", "genicam", "cameras"};
    ExpectFailure(support::RunProgram(start), 1,
                  {"\n  the SDK \"genicam\" was looked for in " +
                   platform::JoinPath(directory.Path(), "genicam") + " and in "});
    start.arguments = {"cameras"};
    start.environment.emplace_back("PYXEN_HOME", PathOf("mine"));
    result = support::RunProgram(start);
    ExpectFailure(result, 1,
                  {"PYXEN_HOME=" + PathOf("mine"), "\n  there is no file " + inHere + "\n"});
    EXPECT_EQ(result.errors.find("looked for"), std::string::npos) << result.errors;
}

TEST_F(BadInput, TheEnvironmentsSdkCountsWithoutTheOption) {
    auto start = support::ProgramStart("mivora", WithConfig({"cameras"}));
    start.environment.emplace_back("PYXEN_HOME", PathOf("elsewhere"));
    ExpectFailure(support::RunProgram(start), 1, {"PYXEN_HOME=" + PathOf("elsewhere")});
    start.arguments.insert(start.arguments.begin(), {"--sdk", "simulator"});
    EXPECT_EQ(support::RunProgram(start).status, 0);
}

TEST_F(BadInput, TheSdkDirectoryReachesTheModuleAsTyped) {
    const std::string home = PathOf("sdk") + platform::kPathSeparator;
    const auto result = Mivora({"--sdk", home, "--log", PathOf("log"), "cameras"});
    EXPECT_EQ(result.status, 1);
    EXPECT_PRED2(Contains, result.errors, "PYXEN_HOME=" + home + "\n");
    EXPECT_PRED2(Contains, directory.Read("log"),
                 "Trying to load " + home + "Bin" + platform::kPathSeparator +
                     platform::LibraryFileName("PxnC") + "\n");
}

TEST_F(BadInput, ALibraryThatIsNoLibraryIsNamed) {
    const std::string library =
        directory.Write("sdk/Bin/" + platform::LibraryFileName("PxnC"), "this is no library\n");
    ExpectFailure(Mivora({"--sdk", PathOf("sdk"), "cameras"}), 1,
                  {"Init failed with 4", platform::LibraryFileName("PxnC") + ": "});
}

TEST_F(BadInput, ALibraryThatLacksEntriesIsNamedWithThem) {
    ExpectFailure(Mivora({"--sdk", support::BuiltFile("incomplete"), "cameras"}), 1,
                  {"Init failed with 4", "PyxenApi: Could not find Pxn", "PyxenAPI is invalid!"});
}

TEST_F(BadInput, ABrokenSdkConfigurationIsNamed) {
    const std::string file = directory.Write("PxnC.xml", "<PxnC><camera></PxnC>");
    ExpectFailure(Mivora({"cameras"}), 1,
                  {"Init failed with 4", "with " + file, "PxnStartup returned error"});
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" colour=\"red\"/></PxnC>");
    ExpectFailure(Mivora({"cameras"}), 1, {"Init failed with 4", "PxnStartup returned error"});
}

// Whatever camera it names, another one would be taken.
TEST_F(BadInput, AConfigurationThatIsNotThereIsNamed) {
    const std::string file = PathOf("hots.ini");
    const std::string reason =
        "there is no configuration file " + file + ", and no PxnC.xml beside it";
    ExpectFailure(support::RunProgram("mivora", {"--config", file, "info"}), 1, {reason});
    ExpectFailure(support::RunProgram("mivora", {"--config", file, "grab", "--frames", "1"}), 1,
                  {reason});
    UseCamera();
    ExpectDone(support::RunProgram("mivora", {"--config", file, "info"}));
    EXPECT_FALSE(platform::PathExists(file));
}

TEST_F(BadInput, AConfigurationThatCannotBeReadIsNamed) {
    std::remove(PathOf("host.ini").c_str());
    ASSERT_TRUE(platform::CreateDirectories(PathOf("host.ini")));
    ExpectFailure(Mivora({"cameras"}), 1,
                  {"SetGrabberIni failed with 23", "for " + PathOf("host.ini")});
    ExpectFailure(Mivora({"shell"}, "Init\n"), 1, {"SetGrabberIni failed with 23"});
}

TEST_F(BadInput, GarbageInTheConfigurationDoesNoHarm) {
    UseCamera();
    std::string garbage;
    for (int i = 0; i < 5000; ++i) {
        garbage += static_cast<char>(i * 7919 % 253 + 1);
    }
    directory.Write("host.ini", garbage);
    EXPECT_EQ(Mivora({"cameras"}).status, 0);
}

TEST_F(BadInput, AModuleThatCannotBeUsedIsNamed) {
    ExpectFailure(Mivora({"--module", PathOf("nowhere.so"), "cameras"}), 1,
                  {PathOf("nowhere.so"), "no such file"});
    const std::string text = directory.Write("module.so", "no library");
    ExpectFailure(Mivora({"--module", text, "cameras"}), 1, {text});
    // A library, but not a grabber module.
    const std::string sdk =
        support::BuiltFile("simulator/Bin/" + platform::LibraryFileName("PxnC"));
    ExpectFailure(Mivora({"--module", sdk, "cameras"}), 1, {"MivoraModuleInterface"});
}

TEST_F(BadInput, ALogThatCannotBeWrittenIsNamed) {
    ExpectFailure(Mivora({"--log", PathOf("none/log"), "cameras"}), 1,
                  {"cannot write the log file", PathOf("none/log")});
}

TEST_F(BadInput, TheLogCanGoToStandardError) {
    UseCamera();
    const auto result = Mivora({"--log", "-", "cameras", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(Json::accept(result.output));
    EXPECT_EQ(result.errors.find("1 CMivoraKVNPyxenClass::Init\n"), 0u);
}

TEST_F(BadInput, AnUnknownCameraIsNamedWithThoseThereAre) {
    UseCamera();
    for (const char* camera : {"1", "0xFFFFFFFF", "99999999999", "-1", "Camera B"}) {
        ExpectFailure(
            Mivora({"--camera", camera, "info"}), 1,
            {std::string("there is no camera \"") + camera + "\"", "camera 0 (Camera A, 0x"});
    }
}

TEST_F(BadInput, ACameraThatCannotBeOpenedIsNamed) {
    UseCamera("", Faults("fail-always PxnCameraOpen -24"));
    ExpectFailure(Mivora({"info"}), 1,
                  {"OpenActCamera failed with 4", "for camera 0 (Camera A", "busy"});
}

TEST_F(BadInput, AStartThatTheCameraRefusesIsNamed) {
    UseCamera("", Faults("fail-always PxnFeatureCommandRun -6"));
    ExpectFailure(
        Mivora({"snap", "-o", PathOf("a.raw")}), 1,
        {"Snap failed with 29",
         "CMivoraKVNPyxenClass::Snap: Sending acquisition start command to camera failed"});
    ExpectFailure(Mivora({"grab", "--frames", "3"}), 1, {"Snap failed with 29"});
}

} // namespace
} // namespace scenario
