// printable_output_test.cpp - names and texts that try to control the terminal
#include "tests/scenario/program_test.h"

#include <algorithm>

namespace scenario {
namespace {

// It begins a line that looks like one of the list, and clears the screen.
constexpr char kName[] = "Camera A&#10;* 9  0x00000009  forged&#27;[2J\xC2\x9B";
constexpr char kShownName[] = "Camera A\\x0A* 9  0x00000009  forged\\x1B[2J\\xC2\\x9B";

class PrintableOutput : public ProgramTest {
protected:
    PrintableOutput() {
        directory.Write("PxnC.xml", std::string("<PxnC><camera kind=\"gige\" id=\"A\" "
                                                "extendedId=\"Eth0|A\" model=\"") +
                                        kName +
                                        "\"><feature name=\"DeviceUserID\" value=\"a&#10;&#27;[2J\""
                                        "/></camera></PxnC>");
    }

    static std::ptrdiff_t CountLines(const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    }
    static bool HasControls(const std::string& text) {
        return text.find("\xC2\x9B") != std::string::npos ||
               std::any_of(text.begin(), text.end(), [](char c) {
                   const auto byte = static_cast<unsigned char>(c);
                   return (byte < 0x20 && c != '\n') || byte == 0x7F;
               });
    }
    /// Expects that what the program printed has the text and nothing that controls the terminal.
    static void ExpectShown(const support::ProgramResult& result, const std::string& text) {
        EXPECT_FALSE(HasControls(result.output)) << result.output;
        EXPECT_FALSE(HasControls(result.errors)) << result.errors;
        EXPECT_PRED2(Contains, result.output + result.errors, text);
    }
};

TEST_F(PrintableOutput, OfMivoraShowsTheControlCharactersOfNames) {
    const auto list = Mivora({"cameras"});
    ExpectShown(list, kShownName);
    EXPECT_EQ(CountLines(list.output), 2) << "the heading and the camera";
    ExpectShown(Mivora({"info"}), kShownName);
    ExpectShown(Mivora({"watch", "--for", "1"}), kShownName);
    ExpectShown(Mivora({"channels"}), "type ");
}

TEST_F(PrintableOutput, OfErrorsShowsThoseOfNamesAndArguments) {
    const auto unknown = Mivora({"--camera", "no\x1B[1mcamera\n", "info"});
    EXPECT_EQ(unknown.status, 1);
    ExpectShown(unknown, "there is no camera \"no\\x1B[1mcamera\\x0A\"; there are\n  camera 0 (" +
                             std::string(kShownName));
    EXPECT_EQ(CountLines(unknown.errors), 2);
    ExpectShown(Mivora({"cam\x1B[1meras"}), "cam\\x1B[1meras");
    ExpectShown(Mivora({"get", "Camera/\x1B[1m"}), "\"\\x1B[1m\"");
    ExpectShown(Tool({"sync-check", "\x1B[1m.sync"}), "\\x1B[1m.sync");
    ExpectShown(Mivora({"shell"}, "No\x1B[1m\n"), "No\\x1B[1m ? unknown operation\n");
}

TEST_F(PrintableOutput, OfFeaturesShowsThoseOfValues) {
    EXPECT_EQ(Mivora({"get", "Camera/DeviceUserID"}).output, "a\\x0A\\x1B[2J\n");
    EXPECT_EQ(Mivora({"set", "Camera/DeviceUserID=\x1B]0;b\x07"}).output, "\\x1B]0;b\\x07\n");
    const auto features = Mivora({"features", "--filter", "DeviceModelName"});
    ExpectShown(features, "\\xC2\\x9B");
    ExpectShown(Mivora({"features", "--tree", "--filter", "DeviceModelName"}), "\\xC2\\x9B");
    ExpectShown(Mivora({"describe", "Camera/DeviceModelName"}), "\\xC2\\x9B");
    directory.Write("names.sync", "Camera::\x1B[2J\r\n\t{");
    ExpectShown(Tool({"sync-check", PathOf("names.sync")}), "names.sync");
}

TEST_F(PrintableOutput, OfTheSdkShowsThoseOfItsConfiguration) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" model=\"A\"><feature name=\"Gamma\" "
                                "value=\"&#27;[2J&#10;\"/></camera></PxnC>");
    ExpectShown(Mivora({"cameras"}), "\\x1B[2J\\x0A");
}

TEST_F(PrintableOutput, LeavesJsonAndLogFilesAsTheyAre) {
    const Json list = Json::parse(Mivora({"cameras", "--json"}).output);
    EXPECT_EQ(list[0]["name"], "Camera A\n* 9  0x00000009  forged\x1B[2J\xC2\x9B");
    const std::string line = "Log \"\x1B[1m\t\"\n";
    ExpectDone(Mivora({"--log", PathOf("log.txt"), "shell"}, line));
    EXPECT_PRED2(Contains, directory.Read("log.txt"), "\x1B[1m\t");
    ExpectShown(Mivora({"--log", "-", "shell"}, line), "\\x1B[1m\\x09");
}

} // namespace
} // namespace scenario
