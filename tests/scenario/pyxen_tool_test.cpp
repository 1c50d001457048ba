// pyxen_tool_test.cpp - the commands of pyxen-tool
#include "tests/scenario/program_test.h"

#include <algorithm>
#include <string>
#include <utility>

namespace scenario {
namespace {

class PyxenTool : public ProgramTest {};

TEST_F(PyxenTool, ChecksSynchronisationFiles) {
    const std::string good = directory.Write(
        "good.sync", "{\"SyncFeatures\":[{\"ModuleName\":\"Camera\",\"FeatureName\":\"Gain\","
                     "\"Dependencies\":[{\"ModuleName\":\"Interface\",\"FeatureName\":\"A\"}]}]}");
    auto result = support::RunProgram("pyxen-tool", {"sync-check", good});
    ExpectDone(result);
    EXPECT_EQ(result.output, "1 FeatureSyncher::Init: Loading " + good +
                                 "...\n1 FeatureSyncher::Init: Camera::Gain will be synched with "
                                 "\n1   Interface::A\n");
    result = support::RunProgram("pyxen-tool", {"sync-check", good, "--json"});
    ExpectDone(result);
    const Json json = Json::parse(result.output);
    EXPECT_EQ(json["ok"], true);
    EXPECT_EQ(json["entries"],
              Json::parse("[{\"module\":\"Camera\",\"feature\":\"Gain\",\"dependencies\":"
                          "[{\"module\":\"Interface\",\"feature\":\"A\"}]}]"));
    EXPECT_EQ(json["log"].size(), 3u);
    EXPECT_EQ(json["log"][2], Json::parse("{\"level\":1,\"text\":\"  Interface::A\"}"));

    const std::string bad = directory.Write("bad.sync", "{\"SyncFeatures\":[]} x");
    result = support::RunProgram("pyxen-tool", {"sync-check", bad, "--json"});
    ExpectFailure(result, 1, {"bad.sync has a fault; no entry of it is in use"});
    EXPECT_EQ(Json::parse(result.output)["ok"], false);
    ExpectFailure(support::RunProgram("pyxen-tool", {"sync-check", PathOf("none")}), 1,
                  {PathOf("none") + " cannot be read"});
    ExpectFailure(support::RunProgram("pyxen-tool", {"sync-check", PathOf("")}), 1,
                  {"cannot be read"});
}

TEST_F(PyxenTool, ReportsAfterWhichEntryASynchronisationFileIsWrong) {
    const std::string entry =
        "{\"ModuleName\":\"Camera\",\"FeatureName\":\"Gain\",\"Dependencies\":[]}";
    // The reader logs no line for this fault.
    const std::string path =
        directory.Write("late.sync", "{\"SyncFeatures\":[" + entry + "," + entry + ",]}");
    const auto result = support::RunProgram("pyxen-tool", {"sync-check", path});
    ExpectFailure(result, 1, {path + " has a fault behind entry 2 (Camera::Gain)"});
    const std::string line = "1 FeatureSyncher::Init: Camera::Gain will be synched with \n";
    EXPECT_EQ(result.output, "1 FeatureSyncher::Init: Loading " + path + "...\n" + line + line);
}

TEST_F(PyxenTool, ReadsSynchronisationFilesOfAnySizeAndContent) {
    const auto check = [&](const std::string& content) {
        const std::string path = directory.Write("big.sync", content);
        const auto result = support::RunProgram("pyxen-tool", {"sync-check", path});
        return std::pair(result.status, result.output.substr(result.output.find('\n') + 1));
    };
    constexpr std::size_t kHundredMegabytes = 100000000;
    EXPECT_EQ(check("{\"SyncFeatures\":[" + std::string(kHundredMegabytes, ' ') + "]}"),
              std::pair(0, std::string()));
    EXPECT_EQ(check(std::string(1000000, '"')), std::pair(1, std::string()));
    EXPECT_EQ(check(std::string(1000000, '\xFF')), std::pair(1, std::string()));
    EXPECT_EQ(check("{\"SyncFeatures\":[\xE4]}"),
              std::pair(1, std::string("0 FeatureSyncher::Init: missing closing bracket\n")));
    EXPECT_EQ(check(""), std::pair(1, std::string()));
}

TEST_F(PyxenTool, ListsThePixelFormats) {
    const auto result = support::RunProgram("pyxen-tool", {"formats", "--json"});
    ExpectDone(result);
    const Json formats = Json::parse(result.output);
    ASSERT_EQ(formats.size(), 76u);
    EXPECT_EQ(formats[0], Json::parse("{\"name\":\"Mono8\",\"code\":17301505,\"components\":1,"
                                      "\"allocatedBits\":8,\"bits\":8,\"colorCoding\":0,\"cfaX\":0,"
                                      "\"cfaY\":0,\"conversion\":null}"));
    EXPECT_EQ(formats[2]["conversion"], "Unpack10p");
    EXPECT_TRUE(result.output.starts_with("[{\"name\":\"Mono8\",\"code\":17301505,"
                                          "\"components\":1,\"allocatedBits\":8,\"bits\":8,"
                                          "\"colorCoding\":0,\"cfaX\":0,\"cfaY\":0,"
                                          "\"conversion\":null},"));
    const std::string table = support::RunProgram("pyxen-tool", {"formats"}).output;
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 77);
}

TEST_F(PyxenTool, PrintsCameraKeys) {
    EXPECT_EQ(support::RunProgram("pyxen-tool", {"camera-key", ""}).output, "0x00000000\n");
    const auto result = support::RunProgram("pyxen-tool", {"camera-key", "ABC"});
    ExpectDone(result);
    EXPECT_EQ(result.output.size(), 11u);
    EXPECT_EQ(result.output.substr(0, 2), "0x");
    // Here the word is an argument, not a command.
    EXPECT_EQ(support::RunProgram("pyxen-tool", {"camera-key", "shell"}).status, 0);
}

TEST_F(PyxenTool, ConvertsDumps) {
    const std::string dump = directory.Write("dump", std::string("\x34\xF2\xBC\x0A", 4));
    const auto convert = [&](const char* format, const char* width, const std::string& output) {
        return support::RunProgram("pyxen-tool", {"convert", "--format", format, "--width", width,
                                                  "--height", "2", dump, output});
    };
    ExpectDone(convert("mono12p", "1", PathOf("a.raw")));
    EXPECT_EQ(directory.Read("a.raw"), std::string("\x34\x02\xBC\x0A", 4));
    ExpectDone(convert("Mono12p", "1", PathOf("a.pgm")));
    EXPECT_EQ(directory.Read("a.pgm"), std::string("P5\n1 2\n4095\n\x02\x34\x0A\xBC", 16));
    ExpectDone(convert("Mono16", "1", PathOf("a.png")));
    ExpectFailure(convert("Mono12p", "2", PathOf("b.raw")), 1, {"has 6 bytes", "this dump has 4"});
    EXPECT_FALSE(platform::PathExists(PathOf("b.raw")));
    ExpectFailure(convert("Mono13", "1", PathOf("b.raw")), 1, {"unknown pixel format \"Mono13\""});
    ExpectFailure(convert("Mono12p", "0", PathOf("b.raw")), 2, {"--width"});
    ExpectFailure(convert("Mono12p", "1", PathOf("b.gif")), 2, {"OUT"});
    ExpectFailure(convert("Mono12p", "1", PathOf("none/b.raw")), 1, {"cannot write"});
    ExpectFailure(
        support::RunProgram("pyxen-tool", {"convert", "--format", "Mono8", "--width", "1",
                                           "--height", "1", PathOf("none"), PathOf("b.raw")}),
        1, {"cannot read " + PathOf("none")});
}

} // namespace
} // namespace scenario
