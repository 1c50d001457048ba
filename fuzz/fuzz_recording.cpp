// fuzz_recording.cpp - reading recordings: description, index, files of frames
//
// The first byte says what the rest is.
#include "apps/common/command_failure.h"
#include "apps/recording/frame_reader.h"
#include "apps/recording/playback_plan.h"
#include "apps/recording/recording_summary.h"
#include "fuzz/fuzz_file.h"
#include "platform/file_system.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

void Require(bool isTrue) {
    if (!isTrue) {
        std::abort();
    }
}

// What was read is written, and read as the same again.
void ReadDescription(const std::string& text) {
    const RecordingDescription description = ParseRecordingDescription(text);
    Require(ParseRecordingDescription(description.Json()) == description);
}

std::string LineText(const FrameLine& line, const ImageLayout& common) {
    std::string text;
    line.AppendJson(text, common);
    return text;
}

void ReadIndex(const std::string& text) {
    RecordingIndex index;
    index.description.layout = {8, 4, 1, 8, 8, MVCC_MONO, 0, 0};
    const ImageLayout& common = index.description.layout;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const FrameLine line = ParseFrameLine(text.substr(begin, end - begin), common);
        const std::string written = LineText(line, common);
        Require(LineText(ParseFrameLine(written, common), common) == written);
        index.lines.push_back(line);
        begin = end + 1;
    }
    const RecordingSummary summary = Summarise(index);
    Require(summary.recorded + summary.missing == index.lines.size());
    const PlaybackPlan plan = MakePlaybackPlan(index);
    std::int64_t last = 0;
    for (const PlannedFrame& frame : plan.frames) {
        Require(frame.line < index.lines.size() && frame.due.count() >= last);
        last = frame.due.count();
    }
    Require(plan.length.count() >= last);
}

// Format, bits, colour coding and size are in five bytes before the content of the file.
void ReadFrame(const std::uint8_t* data, std::size_t size) {
    constexpr const char* kFormats[] = {"png", "pnm", "raw", "stack", "tiff", "multi-tiff"};
    constexpr std::uint32_t kBits[] = {8, 10, 12, 14, 16};
    constexpr MV_COLORCODING kCodings[] = {MVCC_MONO, MVCC_RAW_CFA, MVCC_RGB, MVCC_BGRA};
    constexpr std::uint32_t kComponents[] = {1, 1, 3, 4};
    constexpr std::size_t kHead = 6;
    if (size < kHead) {
        return;
    }
    const std::size_t coding = data[2] % std::size(kCodings);
    ImageLayout layout{data[3],
                       data[4],
                       kComponents[coding],
                       8,
                       kBits[data[1] % std::size(kBits)],
                       kCodings[coding],
                       data[2] / 4u % 2,
                       data[2] / 8u % 2};
    layout.allocatedBits = layout.bits > 8 ? 16 : 8;
    const FuzzFile file(data + kHead, size - kHead);
    const std::string directory = platform::DirectoryOf(file.Path());
    FrameReader reader(directory, kFormats[data[0] % std::size(kFormats)]);
    std::vector<std::uint8_t> image;
    reader.Read({file.Path().substr(directory.size() + 1), data[5], 0}, layout, image);
    Require(image.size() == layout.Size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    try {
        switch (data[0]) {
        case 'd':
            ReadDescription(text);
            break;
        case 'i':
            ReadIndex(text);
            break;
        default:
            ReadFrame(data + 1, size - 1);
            break;
        }
    } catch (const CommandFailure& failure) {
        Require(*failure.what() != '\0'); // what is refused is refused with a reason
    }
    return 0;
}
