// recording_report.cpp - what the command "recording" says of recordings
#include "apps/mivora/recording_report.h"

#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>
#include <optional>

namespace {

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

std::string CompleteText(bool isComplete, const std::string& reason) {
    return isComplete ? "yes" : reason.empty() ? "no" : "no: " + reason;
}

/// Of the recordings that can be read.
struct SummarySum {
    std::uint64_t recorded = 0;
    std::uint64_t missing = 0;
    std::uint64_t bytes = 0;
    std::size_t complete = 0;
};

SummarySum SumOf(const std::vector<RecordingPart>& parts) {
    SummarySum sum;
    for (const RecordingPart& part : parts) {
        if (part.index) {
            const RecordingSummary summary = Summarise(*part.index);
            sum.recorded += summary.recorded;
            sum.missing += summary.missing;
            sum.bytes += summary.bytes;
            sum.complete += part.index->description.complete ? 1 : 0;
        }
    }
    return sum;
}

} // namespace

std::string IncompleteText(const std::string& reason) {
    return reason.empty() ? "the recording is not complete" : reason;
}

void PrintSummary(const RecordingIndex& index, const RecordingSummary& summary) {
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
    PrintRecordingLine("complete", CompleteText(description.complete, description.reason));
}

void AppendMembers(std::vector<JsonMember>& members, const RecordingIndex& index,
                   const RecordingSummary& summary) {
    std::string description = index.description.Json();
    description.pop_back(); // the end of its line
    members.insert(members.end(), {{"description", JsonValue::FromText(description)},
                                   {"status", StatusJson(summary)},
                                   {"recorded", summary.recorded},
                                   {"missing", summary.missing},
                                   {"bytes", summary.bytes},
                                   {"seconds", ValueOrNull(summary.seconds)},
                                   {"framesPerSecond", ValueOrNull(summary.framesPerSecond)},
                                   {"gaps", GapsJson(summary)},
                                   {"complete", index.description.complete}});
}

void PrintSummaries(const RecordingSet& set, const std::vector<RecordingPart>& parts) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
        PrintRecordingLine("folder", set.recordings[i].folder);
        if (parts[i].index) {
            PrintSummary(*parts[i].index, Summarise(*parts[i].index));
        } else {
            PrintRecordingLine("problem", parts[i].problem);
        }
        std::printf("\n");
    }
    const SummarySum sum = SumOf(parts);
    PrintRecordingLine("cameras", std::to_string(parts.size()) + ", started by " + set.startedBy);
    PrintRecordingLine("frames", std::to_string(sum.recorded) + " recorded, " +
                                     std::to_string(sum.missing) + " missing");
    PrintRecordingLine("complete",
                       CompleteText(sum.complete == parts.size(),
                                    std::to_string(sum.complete) + " of " +
                                        std::to_string(parts.size()) + " recordings are"));
}

void AppendMembers(std::vector<JsonMember>& members, const RecordingSet& set,
                   const std::vector<RecordingPart>& parts) {
    std::vector<JsonValue> cameras;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        std::vector<JsonMember> camera{
            {"folder", set.recordings[i].folder},
            {"problem", parts[i].index ? JsonValue(nullptr) : JsonValue(parts[i].problem)}};
        if (parts[i].index) {
            AppendMembers(camera, *parts[i].index, Summarise(*parts[i].index));
        }
        cameras.push_back(JsonObject(camera));
    }
    const SummarySum sum = SumOf(parts);
    members.insert(members.end(), {{"start", set.start},
                                   {"startedBy", set.startedBy},
                                   {"firstFramesNs", ValueOrNull(set.firstFramesNs)},
                                   {"cameras", JsonArray(cameras)},
                                   {"recorded", sum.recorded},
                                   {"missing", sum.missing},
                                   {"bytes", sum.bytes},
                                   {"complete", sum.complete == parts.size()}});
}
