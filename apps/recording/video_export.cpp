// video_export.cpp - a recording as a video, by a program that is installed
#include "apps/recording/video_export.h"

#include "apps/common/command_failure.h"
#include "apps/recording/frame_reader.h"
#include "apps/recording/matroska_stream.h"
#include "apps/recording/ordered_work.h"
#include "apps/recording/playback_plan.h"
#include "apps/recording/video_picture.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/process.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

constexpr const char* kFfmpeg = "ffmpeg";
constexpr const char* kGstreamer = "gst-launch-1.0";
constexpr std::array<std::string_view, 3> kEndings = {".mp4", ".mkv", ".avi"};
constexpr std::uint64_t kSecondNs = 1000000000;

std::string EndingOf(const std::string& path) {
    for (const std::string_view ending : kEndings) {
        if (path.size() > ending.size() && path.ends_with(ending)) {
            return std::string(ending);
        }
    }
    return "";
}

/// The arguments of FFmpeg, which knows the kind of file by its ending.
std::vector<std::string> FfmpegArguments(const std::string& file, const std::string& ending) {
    std::vector<std::string> arguments = {"-hide_banner", "-loglevel", "error",  "-y",
                                          "-f",           "matroska",  "-i",     "pipe:0",
                                          "-an",          "-pix_fmt",  "yuv420p"};
    if (ending != ".avi") {
        // Else times would be rounded to the usual distance of frames, and frames repeated.
        arguments.insert(arguments.end(), {"-vsync", "vfr", "-enc_time_base", "-1"});
    }
    arguments.push_back("file:" + file);
    return arguments;
}

/// A text in a description of a pipeline.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char letter : text) {
        quoted += letter == '"' || letter == '\\' ? "\\" : "";
        quoted += letter;
    }
    return quoted + "\"";
}

std::vector<std::string> GstreamerArguments(const std::string& file, const std::string& ending) {
    std::vector<std::string> arguments = {"-q", "fdsrc",        "fd=0", "!", "matroskademux",
                                          "!",  "videoconvert", "!"};
    if (ending == ".avi") {
        arguments.insert(arguments.end(), {"videorate", "!", "jpegenc", "!", "avimux"});
    } else {
        arguments.insert(arguments.end(), {"x264enc", "!", "h264parse", "!",
                                           ending == ".mp4" ? "mp4mux" : "matroskamux"});
    }
    arguments.insert(arguments.end(), {"!", "filesink", "location=" + Quoted(file)});
    return arguments;
}

platform::ProcessStart FindVideoProgram(const std::string& file, const std::string& ending) {
    platform::ProcessStart start;
    start.program = platform::FindProgram(kFfmpeg);
    if (!start.program.empty()) {
        start.arguments = FfmpegArguments(file, ending);
        return start;
    }
    start.program = platform::FindProgram(kGstreamer);
    if (start.program.empty()) {
        throw CommandFailure("a video is written by FFmpeg or GStreamer, and neither is installed",
                             {std::string(kFfmpeg) + " and " + kGstreamer +
                              " were looked for in the directories of PATH"});
    }
    start.arguments = GstreamerArguments(file, ending);
    return start;
}

/// Lines that a program printed, as details of a failure.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (end != begin) {
            lines.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return lines;
}

/// The frames of a recording that have images of its size, as a stream of pictures.
class PictureSource {
public:
    PictureSource(const std::string& recordingDirectory, const RecordingIndex& recordingIndex)
        : directory(recordingDirectory), index(recordingIndex) {
        for (const PlannedFrame& frame : MakePlaybackPlan(index).frames) {
            if (!index.lines[frame.line].file.empty()) {
                frames.push_back(frame);
            }
        }
        if (frames.empty()) {
            throw CommandFailure("there are no frames in " + directory);
        }
    }

    std::uint64_t Count() const { return frames.size(); }
    std::uint64_t LengthNs() const { return TimeOf(frames.size() - 1); }

    /// `send` gets the parts of the stream in order and returns false to end it.
    template <typename Send>
    void Run(const Send& send) const {
        const ImageLayout& layout = index.description.layout;
        const MatroskaStream stream(EvenSize(layout.width), EvenSize(layout.height), Interval());
        bool goesOn = send(stream.Head());
        const auto read = [this](std::size_t at) {
            const FrameLine& line = index.lines[frames[at].line];
            std::vector<std::uint8_t> image;
            FrameReader reader(directory, index.description.format);
            reader.Read({line.file, line.offset, line.bytes}, line.layout, image);
            std::string picture;
            MakeVideoPicture(line.layout, image.data(), picture);
            return picture;
        };
        WorkInOrder(frames.size(), read, [&](std::size_t at, const std::string& picture) {
            goesOn = goesOn && send(stream.BeforePicture(TimeOf(at))) && send(picture);
            if (!goesOn) {
                throw EndOfProgram();
            }
        });
    }

    /// Thrown when nobody reads the stream any more.
    struct EndOfProgram {};

private:
    std::uint64_t TimeOf(std::size_t at) const {
        return static_cast<std::uint64_t>((frames[at].due - frames.front().due).count());
    }
    std::uint64_t Interval() const {
        return frames.size() > 1 ? LengthNs() / (frames.size() - 1) : 0;
    }

    const std::string& directory;
    const RecordingIndex& index;
    std::vector<PlannedFrame> frames;
};

/// Gives the file its name, or removes it.
class UnfinishedFile {
public:
    UnfinishedFile(std::string finalPath, const std::string& ending)
        : path(std::move(finalPath)), temporary(path + ".unfinished" + ending) {}
    ~UnfinishedFile() {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::string& Path() const { return temporary; }
    void Finish() const {
        std::error_code error;
        std::filesystem::rename(temporary, path, error);
        if (error) {
            throw CommandFailure("cannot write " + path + ": " + error.message());
        }
    }

private:
    const std::string path;
    const std::string temporary;
};

} // namespace

std::string VideoFileNameProblem(const std::string& path) {
    return EndingOf(path).empty() ? "the file name must end in .mp4 .mkv or .avi" : "";
}

ExportedVideo ExportVideo(const std::string& directory, const RecordingIndex& index,
                          const std::string& file) {
    const std::string ending = EndingOf(file);
    const PictureSource source(directory, index);
    const UnfinishedFile unfinished(file, ending);
    const platform::ProcessStart start = FindVideoProgram(unfinished.Path(), ending);
    platform::Process program;
    std::string error;
    if (!program.Start(start, &error)) {
        throw CommandFailure("cannot start " + start.program + ": " + error);
    }
    try {
        source.Run([&program](const std::string& part) { return program.Write(part); });
    } catch (const PictureSource::EndOfProgram&) {
        // Its status says why.
    }
    program.CloseInput();
    int status = 0;
    program.Wait(platform::kInfinite, status);
    if (status != 0) {
        throw CommandFailure(start.program + " failed with status " + std::to_string(status),
                             Lines(program.Errors()));
    }
    unfinished.Finish();
    return {start.program, source.Count(),
            static_cast<double>(source.LengthNs()) / static_cast<double>(kSecondNs)};
}
