// recording_command.cpp - recordings: described, checked, converted, made into videos
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/parse_number.h"
#include "apps/mivora/commands.h"
#include "apps/mivora/recording_report.h"
#include "apps/recording/recording_check.h"
#include "apps/recording/recording_conversion.h"
#include "apps/recording/recording_summary.h"
#include "apps/recording/video_export.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

struct RecordingOptions {
    std::string directory;
    std::string output;
    std::string format;
    std::optional<std::string> pngLevel;
    bool deflate = false;
    bool overwrite = false;
    bool json = false;
};

/// What one of the commands does with the recording of one camera, or those of several.
struct RecordingRun {
    void (*one)(const RecordingOptions& options);
    void (*several)(const RecordingOptions& options, const RecordingSet& set);
};

void Run(const RecordingOptions& options, const RecordingRun& run) {
    if (const std::optional<RecordingSet> set = ReadRecordingSet(options.directory)) {
        run.several(options, *set);
    } else {
        run.one(options);
    }
}

void InfoOfOne(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    const RecordingSummary summary = Summarise(index);
    if (options.json) {
        std::vector<JsonMember> members{{"directory", options.directory}};
        AppendMembers(members, index, summary);
        PrintReport(members);
    } else {
        PrintSummary(index, summary);
    }
}

void InfoOfSeveral(const RecordingOptions& options, const RecordingSet& set) {
    const std::vector<RecordingPart> parts = ReadRecordingParts(options.directory, set);
    if (options.json) {
        std::vector<JsonMember> members{{"directory", options.directory}};
        AppendMembers(members, set, parts);
        PrintReport(members);
    } else {
        PrintSummaries(set, parts);
    }
    std::vector<std::string> problems;
    for (const RecordingPart& part : parts) {
        if (!part.index) {
            problems.push_back(part.problem);
        }
    }
    if (!problems.empty()) {
        throw CommandFailure(std::to_string(problems.size()) + " of " +
                                 std::to_string(parts.size()) + " recordings cannot be read",
                             problems);
    }
}

/// Prints what was found and the account of all frames; ends with 1 when something was found.
void ReportFindings(const RecordingOptions& options, const std::vector<std::string>& findings,
                    std::vector<JsonMember> account, std::uint64_t recorded,
                    std::uint64_t missing) {
    if (options.json) {
        const std::vector<JsonValue> list(findings.begin(), findings.end());
        account.insert(account.begin(), {{"directory", options.directory},
                                         {"findings", JsonArray(list)},
                                         {"recorded", recorded},
                                         {"missing", missing}});
        PrintReport(account);
    } else {
        for (const std::string& finding : findings) {
            std::printf("%s\n", platform::PrintableText(finding).c_str());
        }
        std::printf("%llu frames recorded, %llu missing, %zu findings\n",
                    static_cast<unsigned long long>(recorded),
                    static_cast<unsigned long long>(missing), findings.size());
    }
    if (!findings.empty()) {
        throw ExitStatus{1};
    }
}

void VerifyOne(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    const RecordingSummary summary = Summarise(index);
    ReportFindings(options, CheckRecording(options.directory, index), {}, summary.recorded,
                   summary.missing);
    if (!index.description.complete) {
        throw FramesMissing(IncompleteText(index.description.reason));
    }
}

void VerifySeveral(const RecordingOptions& options, const RecordingSet& set) {
    const std::vector<RecordingPart> parts = ReadRecordingParts(options.directory, set);
    std::uint64_t recorded = 0;
    std::uint64_t missing = 0;
    std::vector<JsonValue> cameras;
    std::vector<std::string> incomplete;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const RecordingOfSet& recording = set.recordings[i];
        const RecordingSummary summary =
            parts[i].index ? Summarise(*parts[i].index) : RecordingSummary();
        recorded += summary.recorded;
        missing += summary.missing;
        cameras.push_back(JsonObject({{"folder", recording.folder},
                                      {"recorded", summary.recorded},
                                      {"missing", summary.missing}}));
        if (!recording.complete) {
            incomplete.push_back(recording.folder + ": " + IncompleteText(recording.reason));
        }
    }
    ReportFindings(options, CheckRecordingSet(options.directory, set, parts),
                   {{"cameras", JsonArray(cameras)}}, recorded, missing);
    if (!incomplete.empty()) {
        throw FramesMissing(std::to_string(incomplete.size()) + " of " +
                                std::to_string(parts.size()) + " recordings are not complete",
                            incomplete);
    }
}

ConversionOptions ConversionOf(const RecordingOptions& options) {
    ConversionOptions conversion;
    conversion.directory = options.output;
    conversion.overwrite = options.overwrite;
    conversion.store.format = options.format;
    conversion.store.deflate = options.deflate;
    conversion.store.pngLevel = static_cast<std::uint32_t>(
        ParseUnsigned(options.pngLevel.value_or("")).value_or(conversion.store.pngLevel));
    return conversion;
}

void ReportConversion(const RecordingOptions& options, std::uint64_t recorded,
                      std::uint64_t missing) {
    if (options.json) {
        PrintReport({{"directory", options.output},
                     {"format", options.format},
                     {"recorded", recorded},
                     {"missing", missing}});
    } else {
        std::printf("%llu frames written as %s to %s\n", static_cast<unsigned long long>(recorded),
                    options.format.c_str(), platform::PrintableText(options.output).c_str());
    }
}

void ConvertOne(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    ConvertRecording(options.directory, index, ConversionOf(options));
    const RecordingSummary summary = Summarise(index);
    ReportConversion(options, summary.recorded, summary.missing);
}

void ConvertSeveral(const RecordingOptions& options, const RecordingSet& set) {
    const std::vector<RecordingPart> parts = ReadRecordingParts(options.directory, set);
    ConvertRecordingSet(options.directory, set, parts, ConversionOf(options));
    std::uint64_t recorded = 0;
    std::uint64_t missing = 0;
    for (const RecordingPart& part : parts) {
        const RecordingSummary summary = Summarise(*part.index);
        recorded += summary.recorded;
        missing += summary.missing;
    }
    ReportConversion(options, recorded, missing);
}

void ExportOne(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    const ExportedVideo video = ExportVideo(options.directory, index, options.output);
    if (options.json) {
        PrintReport({{"file", options.output},
                     {"program", video.program},
                     {"frames", video.frames},
                     {"seconds", video.seconds}});
    } else {
        std::printf("%llu frames of %.3f s written to %s by %s\n",
                    static_cast<unsigned long long>(video.frames), video.seconds,
                    platform::PrintableText(options.output).c_str(),
                    platform::PrintableText(video.program).c_str());
    }
}

void ExportSeveral(const RecordingOptions& options, const RecordingSet& set) {
    std::vector<std::string> commands;
    for (const RecordingOfSet& recording : set.recordings) {
        commands.push_back("mivora recording export " +
                           platform::JoinPath(options.directory, recording.folder) + " -o " +
                           recording.folder + options.output.substr(options.output.rfind('.')));
    }
    throw CommandFailure(options.directory + " has the recordings of " +
                             std::to_string(commands.size()) +
                             " cameras, and a video is of one: name the folder of each",
                         commands);
}

std::string LevelProblem(const std::string& text) {
    return ParseUnsigned(text).value_or(10) <= 9 ? "" : "\"" + text + "\" is no level from 0 to 9";
}

constexpr RecordingRun kInfo{InfoOfOne, InfoOfSeveral};
constexpr RecordingRun kVerify{VerifyOne, VerifySeveral};
constexpr RecordingRun kConvert{ConvertOne, ConvertSeveral};
constexpr RecordingRun kExport{ExportOne, ExportSeveral};

/// A command below "recording": its directory, its run.
Command AddPart(Command& parent, const std::shared_ptr<RecordingOptions>& options, const char* name,
                const char* description, const RecordingRun& run) {
    Command command = parent.AddCommand(name, description);
    command.AddOption("DIR", options->directory, "Directory of the recording").Required();
    command.AddJson(options->json);
    command.ExcludesCameraOptions();
    command.OnRun([options, run] { Run(*options, run); });
    return command;
}

void AddConvert(Command& parent, const std::shared_ptr<RecordingOptions>& options) {
    Command command =
        AddPart(parent, options, "convert", "Make a recording of it in another format", kConvert);
    command.AddOption("--to", options->format, "How frames are kept")
        .Required()
        .OneOf({"tiff", "multi-tiff", "png", "pnm", "raw", "stack"});
    command.AddOption("-o,--output", options->output, "Directory of the new recording")
        .Required()
        .TypeName("DIR");
    command
        .AddOption("--png-level", options->pngLevel,
                   "How well png compresses, 0 to 9; 1 if not given")
        .Check(LevelProblem)
        .TypeName("L");
    command.AddFlag("--deflate", options->deflate, "Compress tiff and multi-tiff");
    command.AddFlag("--overwrite", options->overwrite,
                    "Replace the recording that the directory holds");
    command.SetFooter(
        "Frames keep their values, numbers, ids and times; what is missing stays so.\n"
        "\n"
        "Example:\n  mivora recording convert fast --to tiff -o kept\n");
    command.OnRun([options] {
        if (options->pngLevel && options->format != "png") {
            throw BadUsage("--png-level has an effect on png only");
        }
        if (options->deflate && !options->format.ends_with("tiff")) {
            throw BadUsage("--deflate has an effect on tiff and multi-tiff only");
        }
        Run(*options, kConvert);
    });
}

} // namespace

void AddRecordingCommand(CommandLine& program) {
    Command command =
        program.AddCommand("recording", "Describe, check, convert and export recordings");
    command.RequireCommand();
    const auto options = std::make_shared<RecordingOptions>();
    AddPart(command, options, "info", "Show what a recording is", kInfo);
    AddPart(command, options, "verify", "Compare its index with its files", kVerify)
        .SetFooter("Exit status: 0 whole, 1 with findings, which are printed, 3 when all that was\n"
                   "recorded is there but frames are missing from the recording.\n");
    AddConvert(command, options);
    Command video =
        AddPart(command, options, "export", "Make a video, by FFmpeg or GStreamer", kExport);
    video.AddOption("-o,--output", options->output, "File to write; .mp4 .mkv .avi")
        .Required()
        .Check(VideoFileNameProblem)
        .TypeName("FILE");
}
