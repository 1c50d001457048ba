// written_recording.h - a recording that a test writes by itself
#pragma once

#include "apps/recording/frame_line.h"
#include "apps/recording/recording_description.h"
#include "tests/support/temporary_directory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// Grey images in a stack; whatever a test changes before Write is in the recording.
struct WrittenRecording {
    explicit WrittenRecording(const ImageLayout& layout = {8, 4, 1, 8, 8, MVCC_MONO, 0, 0}) {
        description.program = "a test";
        description.camera.vendor = "Maker";
        description.camera.model = "Model 1";
        description.camera.serial = "4711";
        description.camera.userName = "front door";
        description.camera.id = "CAM-4711";
        description.camera.extendedId = "Board0|CAM-4711";
        description.camera.interfaceName = "Board0";
        description.pixelFormat = "Mono8";
        description.layout = layout;
        description.offsetX = 16;
        description.offsetY = 2;
        description.exposureUs = 2500;
        description.frameRate = 100;
        description.start = "2026-01-31T12:00:00.000000000Z";
        description.format = "stack";
        description.complete = true;
    }

    /// The image of a frame: bytes that begin with its number and count.
    std::string Image(std::uint64_t n) const {
        std::string image(description.layout.Size(), '\0');
        for (std::size_t at = 0; at < image.size(); ++at) {
            image[at] = static_cast<char>(n + at);
        }
        return image;
    }
    /// Frame ids are those after 16, times 10 ms apart.
    FrameLine& Add(FrameStatus status = FrameStatus::kComplete, bool hasImage = true) {
        constexpr std::uint64_t kInterval = 10000000;
        FrameLine line;
        line.n = lines.size() + 1;
        line.stamp = {16 + line.n, 1000 + line.n * kInterval, 5000 + line.n * kInterval};
        line.status = status;
        line.layout = description.layout;
        if (hasImage) {
            const std::string image = Image(line.n);
            line.file = "frames.stack";
            line.offset = stack.size();
            line.bytes = image.size();
            stack += image;
        }
        ++(hasImage ? description.frames.recorded : description.frames.missing);
        description.complete = description.complete && hasImage;
        lines.push_back(line);
        return lines.back();
    }
    void AddMissing(FrameStatus status) { Add(status, false); }

    std::string IndexText() const {
        std::string text;
        for (const FrameLine& line : lines) {
            line.AppendJson(text, description.layout);
            text += '\n';
        }
        return text;
    }
    /// Returns the recording's directory.
    std::string Write(const TemporaryDirectory& directory) const {
        WriteTo(directory, "");
        return directory.Path();
    }
    /// The same for what begins with "FOLDER/".
    void WriteTo(const TemporaryDirectory& directory, const std::string& begin) const {
        directory.Write(begin + kRecordingDescriptionName, description.Json());
        directory.Write(begin + kFrameIndexName, IndexText());
        directory.Write(begin + "frames.stack", stack);
    }

    RecordingDescription description;
    std::vector<FrameLine> lines;
    std::string stack;
};

} // namespace support
