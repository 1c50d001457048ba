// trace_command.cpp - prints and compares traces of the camera SDK
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/trace_lines.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

struct TraceOptions {
    std::optional<std::string> file;
    TraceFilter filter;
    bool summary = false;
    bool isComparing = false;
    bool json = false;
    std::string left;
    std::string right;
};

sdktrace::Trace Read(const std::string& file) {
    sdktrace::Trace trace;
    std::string error;
    if (!ReadTrace(file, trace, error)) {
        throw CommandFailure("cannot read " + file + ": " + error);
    }
    return trace;
}

void PrintSummary(const sdktrace::Trace& trace) {
    std::printf("%-34s %9s %9s %12s %12s\n", "call", "calls", "failed", "total ms", "longest us");
    for (const auto& [name, summary] : SummariseTrace(trace)) {
        std::printf("%-34s %9zu %9zu %12.3f %12.1f\n", name.c_str(), summary.calls, summary.failed,
                    static_cast<double>(summary.total) * 1e-6,
                    static_cast<double>(summary.longest) * 1e-3);
    }
}

void PrintSummaryJson(const sdktrace::Trace& trace) {
    std::vector<JsonValue> calls;
    for (const auto& [name, summary] : SummariseTrace(trace)) {
        calls.push_back(JsonObject({{"call", name},
                                    {"calls", std::uint64_t{summary.calls}},
                                    {"failed", std::uint64_t{summary.failed}},
                                    {"totalNs", summary.total},
                                    {"longestNs", summary.longest}}));
    }
    PrintReport({{"hasBeginning", trace.hasBeginning}, {"calls", JsonArray(calls)}});
}

void PrintJsonLines(const sdktrace::Trace& trace, const TraceFilter& filter) {
    VisitTrace(trace, filter, [](const TraceLine& line) {
        PrintReport({{"call", line.name},
                     {"timeNs", line.time},
                     {"thread", line.thread},
                     {"depth", std::uint64_t{line.depth}},
                     {"callback", line.isCallback},
                     {"result", line.result ? JsonValue(*line.result) : nullptr},
                     {"durationNs", line.duration ? JsonValue(*line.duration) : nullptr},
                     {"text", line.text}});
    });
}

void Print(const TraceOptions& options) {
    const sdktrace::Trace trace = Read(options.file.value());
    if (options.json) {
        options.summary ? PrintSummaryJson(trace) : PrintJsonLines(trace, options.filter);
        return;
    }
    if (!trace.hasBeginning) {
        std::printf("The beginning has been overwritten.\n");
    }
    if (options.summary) {
        PrintSummary(trace);
        return;
    }
    PrintTrace(trace, options.filter,
               [](const std::string& line) { std::printf("%s\n", line.c_str()); });
}

void Compare(const TraceOptions& options) {
    const auto differences = CompareTraces(Read(options.left), Read(options.right));
    bool differs = false;
    std::vector<JsonValue> threads;
    for (std::size_t i = 0; i < differences.size(); ++i) {
        if (differences[i].empty()) {
            continue;
        }
        differs = true;
        if (options.json) {
            threads.push_back(
                JsonObject({{"thread", std::uint64_t{i + 1}}, {"difference", differences[i]}}));
        } else {
            std::printf("thread %zu\n%s\n", i + 1, differences[i].c_str());
        }
    }
    if (options.json) {
        PrintReport({{"differences", JsonArray(threads)}});
    }
    if (differs) {
        throw ExitStatus{EXIT_FAILURE};
    }
}

} // namespace

void AddTraceCommand(CommandLine& program) {
    Command command =
        program.AddCommand("trace", "Print a trace that --trace-sdk has written, or compare two");
    command.ExcludesCameraOptions();
    const auto options = std::make_shared<TraceOptions>();
    TraceFilter& filter = options->filter;
    command.AddOption("FILE", options->file, "The trace; also of a program that runs or crashed");
    CommandOption summary = command.AddFlag("--summary", options->summary,
                                            "Print counts and times of each call instead");
    summary.Excludes(
        command.AddOption("--call", filter.call, "Only calls and callbacks with this in their name")
            .TypeName("NAME"));
    summary.Excludes(
        command.AddOption("--text", filter.text, "Only lines that contain this").TypeName("TEXT"));
    summary.Excludes(
        command.AddOption("--thread", filter.thread, "Only one thread, by its number in the trace")
            .TypeName("N"));
    summary.Excludes(command.AddFlag("--failed", filter.onlyFailed,
                                     "Only what returned another result than 0, or has not "
                                     "returned"));
    summary.Excludes(command.AddFlag("--whole", filter.isWhole, "Cut neither texts nor lists"));
    command.AddJson(options->json);
    command.SetFooter(
        "Prints for each call: seconds, thread, arguments, result with what was stored,\n"
        "duration. What happens inside of it on the same thread is indented; callbacks\n"
        "begin with >.\n"
        "\n"
        "Examples:\n"
        "  mivora --trace-sdk a.trace grab --frames 10\n"
        "  pyxen-tool trace a.trace --failed\n"
        "  pyxen-tool trace a.trace --call Feature --text ExposureTime\n"
        "  pyxen-tool trace diff a.trace b.trace\n");
    command.OnRun([options] {
        if (!options->isComparing) {
            if (!options->file) {
                throw MissingArgument("FILE");
            }
            Print(*options);
        }
    });
    Command diff = command.AddCommand("diff", "Compare two traces");
    diff.AddOption("A", options->left, "One trace").Required();
    diff.AddOption("B", options->right, "The other one").Required();
    diff.AddJson(options->json);
    diff.SetFooter("Prints for each thread the first call or result that differs. Pointers and\n"
                   "handles are counted; times and control commands are left out. Status 0 when\n"
                   "nothing differs, else 1.\n"
                   "\n"
                   "Example:\n"
                   "  pyxen-tool trace diff good.trace bad.trace\n");
    diff.OnRun([options] {
        options->isComparing = true;
        Compare(*options);
    });
}
