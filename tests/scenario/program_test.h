// program_test.h - runs the built programs on simulated cameras
#pragma once

#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace scenario {

using Json = nlohmann::json;
using Arguments = std::vector<std::string>;

/// Runs mivora and pyxen-tool on the simulator with a configuration of the test.
class ProgramTest : public testing::Test {
protected:
    ProgramTest() { directory.Write("host.ini", ""); }
    /// Writes the SDK's configuration: one camera "A" of 64 x 48 pixels with 200 frames per second,
    /// with these elements inside and after it.
    void UseCamera(const std::string& inside = {}, const std::string& behind = {},
                   const std::string& kind = "gige") {
        directory.Write("PxnC.xml", "<PxnC>\n<camera kind=\"" + kind +
                                        "\" id=\"A\" extendedId=\"Eth0|A\" model=\"Camera A\" "
                                        "interface=\"" +
                                        (kind == "serial" ? "Board0" : "Eth0") +
                                        "\" sensorWidth=\"64\" sensorHeight=\"64\">\n"
                                        "<feature name=\"Height\" value=\"48\"/>\n"
                                        "<feature name=\"ExposureTime\" value=\"1000\"/>\n"
                                        "<feature name=\"AcquisitionFrameRate\" value=\"200\"/>\n" +
                                        inside + "</camera>\n" + behind + "</PxnC>\n");
    }
    static std::string Faults(const std::string& command) {
        return "<faults><script>" + command + "</script></faults>\n";
    }
    static std::string Format(const std::string& name) {
        return "<feature name=\"PixelFormat\" value=\"" + name + "\"/>\n";
    }

    /// For commands that take it: those that work on files alone do not.
    Arguments WithConfig(const Arguments& arguments) const {
        static const std::set<std::string> onFiles{"camera-key", "convert",    "formats",
                                                   "recording",  "sync-check", "trace"};
        const bool isSettingsShow =
            arguments.size() > 1 && arguments[0] == "settings" && arguments[1] == "show";
        if (isSettingsShow || (!arguments.empty() && onFiles.count(arguments[0]) != 0)) {
            return arguments;
        }
        Arguments all{"--config", directory.PathOf("host.ini")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return all;
    }
    support::ProgramResult Mivora(const Arguments& arguments, const std::string& input = {}) const {
        return support::RunProgram("mivora", WithConfig(arguments), input);
    }
    support::ProgramResult Tool(const Arguments& arguments, const std::string& input = {}) const {
        return support::RunProgram("pyxen-tool", WithConfig(arguments), input);
    }
    std::string PathOf(const std::string& name) const { return directory.PathOf(name); }

    /// Runs lines in a program's shell and compares its output.
    void ExpectShell(const std::string& program, const std::string& lines,
                     const std::string& answers, int status = 0) const {
        const auto result = support::RunProgram(program, WithConfig({"shell"}), lines);
        EXPECT_EQ(result.output, answers);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.errors, "");
    }

    static bool Contains(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
    static void ExpectDone(const support::ProgramResult& result) {
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
    }
    /// Expects that "grab -o --json" recorded, with the status that says whether frames are
    /// missing.
    static void ExpectRecorded(const support::ProgramResult& result) {
        const Json report = Json::parse(result.output, nullptr, false);
        ASSERT_TRUE(report.is_object()) << result.errors;
        if (report["recording"]["missing"] == 0) {
            ExpectDone(result);
        } else {
            ExpectFailure(result, 3, {" missing from the recording: "});
        }
    }
    /// Expects that the program failed with this status and wrote these texts to standard error.
    static void ExpectFailure(const support::ProgramResult& result, int status,
                              const std::vector<std::string>& words) {
        EXPECT_EQ(result.status, status) << result.output << result.errors;
        for (const std::string& word : words) {
            EXPECT_PRED2(Contains, result.errors, word);
        }
    }

    support::TemporaryDirectory directory;
};

} // namespace scenario
