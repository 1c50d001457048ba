// program_runs.cpp - runs of the programs, on the gate with the simulator behind it
#include "tests/sweep/program_runs.h"

#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/sweep/gate/sweep_gate.h"
#include "tests/sweep/list_files.h"

#include <atomic>
#include <regex>
#include <sstream>
#include <thread>

namespace sweep {
namespace {

// One image in 250 ms: time enough to stop before the next.
constexpr const char* kSimulatorFile =
    "<PxnC>\n<camera kind=\"serial\" id=\"A\" extendedId=\"Board0|A\" model=\"Camera A\" "
    "sensorWidth=\"64\" sensorHeight=\"64\">\n"
    "<feature name=\"ExposureTime\" value=\"1000\"/>\n"
    "<feature name=\"AcquisitionFrameRate\" value=\"4\"/>\n"
    "</camera>\n</PxnC>\n";

std::vector<std::string> LinesOf(const std::string& stream, const std::string& text) {
    // Times differ from run to run, and how many frames come before the stop.
    static const std::regex number("[0-9]+\\.[0-9]+"
                                   "|[0-9]+(?= (queued|filled|flushed|lost))"
                                   "|[1-9][0-9]*(?= (completed|delivered|received))");
    std::istringstream input(std::regex_replace(text, number, "N"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);) {
        lines.push_back(stream + ": " + line);
    }
    return lines;
}

std::string Simulator() {
    return platform::JoinPath(support::BuiltFile("simulator"),
                              platform::JoinPath("Bin", platform::LibraryFileName("PxnC")));
}

} // namespace

const char* const kSettingsOfARun =
    R"({"format": "Mivora settings", "version": 1, "camera": {"vendor": "", "model": "", )"
    R"("serial": "", "id": ""}, "settings": [{"module": "Camera", "feature": "Width", )"
    R"("type": "integer", "value": 32}, {"module": "Camera", "feature": "Gain", "selectors": )"
    R"({"GainSelector": "DigitalAll"}, "type": "float", "value": 2}]})";

Step RunOnGate(const ProgramUse& use, const std::string& file,
               const support::TemporaryDirectory& directory, const Environment& environment) {
    directory.Write("PxnC.xml", kSimulatorFile);
    for (const auto& [name, content] : use.files) {
        directory.Write(name, content);
    }
    std::vector<std::string> arguments;
    if (!use.isOnFiles) {
        arguments = {"--sdk", support::BuiltFile("sweep"), "--config",
                     directory.PathOf("host.ini")};
    }
    arguments.insert(arguments.end(), use.arguments.begin(), use.arguments.end());
    for (std::string& argument : arguments) {
        Replace(argument, "{directory}", directory.Path());
    }
    platform::ProcessStart start = support::ProgramStart(file, arguments);
    start.environment = environment;
    start.environment.emplace_back(kGateLibrary, Simulator());
    const support::ProgramResult result = support::RunProgram(start, use.input);
    Step step{use.name, std::to_string(result.status), {}};
    for (const auto& [stream, written] :
         {std::pair("out", result.output), {"err", result.errors}}) {
        // Paths before numbers, which they may contain.
        std::string text = written;
        Replace(text, "\\\\", "\\"); // as JSON has the paths of Windows
        Replace(text, directory.Path(), "{directory}");
        Replace(text, support::BuiltFile("sweep"), "{sdk}");
        Replace(text, platform::DirectoryOf(platform::ExecutablePath()), "{bin}");
        Replace(text, "\\", "/");
        Replace(text, "/" + platform::LibraryFileName("PxnC"), "/libPxnC.so");
        for (std::string& line : LinesOf(stream, text)) {
            step.lines.push_back(std::move(line));
        }
    }
    return step;
}

void RunAtOnce(std::size_t count, const std::function<void(std::size_t)>& run) {
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < (IsWholeSweep() ? 16u : 2u); ++number) {
        threads.emplace_back([&] {
            for (std::size_t index = next++; index < count; index = next++) {
                run(index);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace sweep
