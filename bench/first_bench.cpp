// first_bench.cpp - from the start of a program to its first image
//
// first_bench PROGRAM [OPTION...]: starts `PROGRAM --log - OPTION... grab --frames=1` several times
// and notes when lines of its log come.
#include "bench/support/baseline.h"
#include "platform/clock.h"
#include "platform/process.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kRuns = 11;
constexpr std::uint64_t kNanosecondsPerSecond = 1000000000;
constexpr std::uint64_t kPatience = 30 * kNanosecondsPerSecond;

struct Step {
    const char* name;
    const char* line; ///< which the log has when the step is done
};

constexpr std::array<Step, 7> kSteps = {{
    {"program and module loaded", "CMivoraKVNPyxenClass::Init"},
    {"SDK loaded", "calling PxnStartup"},
    {"SDK started", "Using Pyxen V"},
    {"camera opened", "Successfully opened camera!"},
    {"buffers prepared", "Framebuffers are currently allocated"},
    {"acquisition started", "CMivoraKVNPyxenClass::Snap: started camera acquisition"},
    {"first image", "Successfully grabbed frame"},
}};

using Times = std::array<double, kSteps.size()>; // milliseconds since the start

bool Measure(const platform::ProcessStart& start, Times& times) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    platform::Process program;
    std::string error;
    if (!program.Start(start, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return false;
    }
    std::size_t done = 0;
    while (done < kSteps.size()) {
        const std::string log = program.Errors();
        const std::uint64_t now = platform::MonotonicNanoseconds() - begin;
        while (done < kSteps.size() && log.find(kSteps[done].line) != std::string::npos) {
            times[done++] = static_cast<double>(now) / 1e6;
        }
        int status = 0;
        if (now > kPatience || (done < kSteps.size() && program.Wait(0, status) &&
                                program.Errors().find(kSteps.back().line) == std::string::npos)) {
            std::fprintf(stderr, "no \"%s\" in\n%s%s\n", kSteps[done].line,
                         program.Output().c_str(), log.c_str());
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    int status = 0;
    return program.Wait(static_cast<std::uint32_t>(kPatience / 1000000), status) && status == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: first_bench PROGRAM [OPTION...]\n");
        return 2;
    }
    platform::ProcessStart start;
    start.program = argv[1];
    start.arguments = {"--log", "-"};
    start.arguments.insert(start.arguments.end(), argv + 2, argv + argc);
    start.arguments.insert(start.arguments.end(), {"grab", "--frames=1"});
    std::vector<Times> runs(kRuns);
    for (Times& times : runs) {
        if (!Measure(start, times)) {
            return 1;
        }
    }
    std::printf("%s\n\n| ms since the start, %d runs |", ProcessorName().c_str(), kRuns);
    std::printf(" median | lowest | highest |\n|---|---|---|---|\n");
    for (std::size_t step = 0; step < kSteps.size(); ++step) {
        std::vector<double> values;
        for (const Times& times : runs) {
            values.push_back(times[step]);
        }
        std::sort(values.begin(), values.end());
        std::printf("| %s | %.1f | %.1f | %.1f |\n", kSteps[step].name, values[values.size() / 2],
                    values.front(), values.back());
    }
    return 0;
}
