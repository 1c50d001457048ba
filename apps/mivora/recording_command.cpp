// recording_command.cpp - recordings: described, checked, converted, made into videos
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/mivora/commands.h"
#include "apps/recording/recording_check.h"
#include "apps/recording/recording_conversion.h"
#include "apps/recording/recording_summary.h"
#include "apps/recording/video_export.h"
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

template <typename T>
JsonValue ValueOrNull(const std::optional<T>& value) {
    return value ? JsonValue(*value) : JsonValue(nullptr);
}

void PrintRecordingLine(const char* name, const std::string& text) {
    std::printf("%-12s%s\n", name, platform::PrintableText(text).c_str());
}

std::string NumberText(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string CameraText(const RecordedCamera& camera) {
    std::string text;
    for (const std::optional<std::string>& part : {camera.vendor, camera.model}) {
        text += part && !part->empty() ? (text.empty() ? "" : " ") + *part : "";
    }
    text = text.empty() ? "not known" : text;
    text += camera.serial && !camera.serial->empty() ? ", serial number " + *camera.serial : "";
    text += camera.userName && !camera.userName->empty() ? ", \"" + *camera.userName + "\"" : "";
    return text;
}

std::string ImagesText(const RecordingDescription& description) {
    const ImageLayout& layout = description.layout;
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + " pixels, " +
           ColorCodingName(layout.colorCoding) + ", " + std::to_string(layout.components) + " of " +
           std::to_string(layout.bits) + " bits, kept as " + description.format +
           (description.pixelFormat ? ", from " + *description.pixelFormat : "");
}

std::string StatusCounts(const RecordingSummary& summary) {
    std::string text;
    for (std::size_t status = 0; status < summary.byStatus.size(); ++status) {
        text += (text.empty() ? "" : ", ") + std::to_string(summary.byStatus[status]) + " " +
                FrameStatusName(static_cast<FrameStatus>(status));
    }
    return text;
}

std::string GapText(const RecordedGap& gap) {
    std::string text = FrameStatusName(gap.status);
    text += gap.firstN == gap.lastN
                ? ": frame " + std::to_string(gap.firstN)
                : ": frames " + std::to_string(gap.firstN) + " to " + std::to_string(gap.lastN);
    if (gap.firstId) {
        text += gap.firstId == gap.lastId ? ", id " + std::to_string(*gap.firstId)
                                          : ", ids " + std::to_string(*gap.firstId) + " to " +
                                                std::to_string(*gap.lastId);
    }
    return text;
}

void PrintInfo(const RecordingIndex& index, const RecordingSummary& summary) {
    const RecordingDescription& description = index.description;
    PrintRecordingLine("camera", CameraText(description.camera));
    PrintRecordingLine("start", description.start + ", by " + description.program);
    PrintRecordingLine("images", ImagesText(description));
    PrintRecordingLine("exposure", description.exposureUs
                                       ? NumberText("%.6g us", *description.exposureUs)
                                       : "not known");
    PrintRecordingLine("frames", StatusCounts(summary));
    PrintRecordingLine("duration", summary.seconds ? NumberText("%.3f s", *summary.seconds) +
                                                         (summary.framesPerSecond
                                                              ? NumberText(", %.2f frames/s",
                                                                           *summary.framesPerSecond)
                                                              : "")
                                                   : "not known");
    for (const RecordedGap& gap : summary.gaps) {
        PrintRecordingLine("gap", GapText(gap));
    }
    PrintRecordingLine("complete", description.complete         ? "yes"
                                   : description.reason.empty() ? "no"
                                                                : "no: " + description.reason);
}

JsonValue GapsJson(const RecordingSummary& summary) {
    std::vector<JsonValue> gaps;
    for (const RecordedGap& gap : summary.gaps) {
        gaps.push_back(JsonObject({{"status", FrameStatusName(gap.status)},
                                   {"first", gap.firstN},
                                   {"last", gap.lastN},
                                   {"firstId", ValueOrNull(gap.firstId)},
                                   {"lastId", ValueOrNull(gap.lastId)}}));
    }
    return JsonArray(gaps);
}

JsonValue StatusJson(const RecordingSummary& summary) {
    std::vector<JsonMember> members;
    for (std::size_t status = 0; status < summary.byStatus.size(); ++status) {
        members.push_back(
            {FrameStatusName(static_cast<FrameStatus>(status)), summary.byStatus[status]});
    }
    return JsonObject(members);
}

void Info(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    const RecordingSummary summary = Summarise(index);
    if (!options.json) {
        PrintInfo(index, summary);
        return;
    }
    std::string description = index.description.Json();
    description.pop_back(); // the end of its line
    PrintReport({{"directory", options.directory},
                 {"description", JsonValue::FromText(description)},
                 {"status", StatusJson(summary)},
                 {"recorded", summary.recorded},
                 {"missing", summary.missing},
                 {"bytes", summary.bytes},
                 {"seconds", ValueOrNull(summary.seconds)},
                 {"framesPerSecond", ValueOrNull(summary.framesPerSecond)},
                 {"gaps", GapsJson(summary)},
                 {"complete", index.description.complete}});
}

void PrintFindings(const RecordingOptions& options, const std::vector<std::string>& findings,
                   const RecordingSummary& summary) {
    if (options.json) {
        std::vector<JsonValue> list(findings.begin(), findings.end());
        PrintReport({{"directory", options.directory},
                     {"findings", JsonArray(list)},
                     {"recorded", summary.recorded},
                     {"missing", summary.missing}});
        return;
    }
    for (const std::string& finding : findings) {
        std::printf("%s\n", platform::PrintableText(finding).c_str());
    }
    std::printf("%llu frames recorded, %llu missing, %zu findings\n",
                static_cast<unsigned long long>(summary.recorded),
                static_cast<unsigned long long>(summary.missing), findings.size());
}

void Verify(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    const std::vector<std::string> findings = CheckRecording(options.directory, index);
    PrintFindings(options, findings, Summarise(index));
    if (!findings.empty()) {
        throw ExitStatus{1};
    }
    if (!index.description.complete) {
        throw FramesMissing(index.description.reason.empty() ? "the recording is not complete"
                                                             : index.description.reason);
    }
}

void Convert(const RecordingOptions& options) {
    const RecordingIndex index = ReadRecordingIndex(options.directory);
    ConversionOptions conversion;
    conversion.directory = options.output;
    conversion.overwrite = options.overwrite;
    conversion.store.format = options.format;
    conversion.store.deflate = options.deflate;
    conversion.store.pngLevel = static_cast<std::uint32_t>(
        ParseUnsigned(options.pngLevel.value_or("")).value_or(conversion.store.pngLevel));
    ConvertRecording(options.directory, index, conversion);
    const RecordingSummary summary = Summarise(index);
    if (options.json) {
        PrintReport({{"directory", options.output},
                     {"format", options.format},
                     {"recorded", summary.recorded},
                     {"missing", summary.missing}});
    } else {
        std::printf("%llu frames written as %s to %s\n",
                    static_cast<unsigned long long>(summary.recorded), options.format.c_str(),
                    platform::PrintableText(options.output).c_str());
    }
}

void Export(const RecordingOptions& options) {
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

std::string LevelProblem(const std::string& text) {
    return ParseUnsigned(text).value_or(10) <= 9 ? "" : "\"" + text + "\" is no level from 0 to 9";
}

/// A command below "recording": its directory, its run.
Command AddPart(Command& parent, const std::shared_ptr<RecordingOptions>& options, const char* name,
                const char* description, void (*run)(const RecordingOptions&)) {
    Command command = parent.AddCommand(name, description);
    command.AddOption("DIR", options->directory, "Directory of the recording").Required();
    command.AddJson(options->json);
    for (const char* const withoutEffect :
         {"--camera", "--sdk", "--sdk-script", "--trace-sdk", "--module"}) {
        command.Excludes(withoutEffect);
    }
    command.OnRun([options, run] { run(*options); });
    return command;
}

void AddConvert(Command& parent, const std::shared_ptr<RecordingOptions>& options) {
    Command command =
        AddPart(parent, options, "convert", "Make a recording of it in another format", Convert);
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
        Convert(*options);
    });
}

} // namespace

void AddRecordingCommand(CommandLine& program) {
    Command command =
        program.AddCommand("recording", "Describe, check, convert and export recordings");
    command.RequireCommand();
    const auto options = std::make_shared<RecordingOptions>();
    AddPart(command, options, "info", "Show what a recording is", Info);
    AddPart(command, options, "verify", "Compare its index with its files", Verify)
        .SetFooter("Exit status: 0 whole, 1 with findings, which are printed, 3 when all that was\n"
                   "recorded is there but frames are missing from the recording.\n");
    AddConvert(command, options);
    Command video =
        AddPart(command, options, "export", "Make a video, by FFmpeg or GStreamer", Export);
    video.AddOption("-o,--output", options->output, "File to write; .mp4 .mkv .avi")
        .Required()
        .Check(VideoFileNameProblem)
        .TypeName("FILE");
}
