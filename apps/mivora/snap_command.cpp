// snap_command.cpp - writes one frame to a file
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/format_handling.h"
#include "apps/common/frame_wait.h"
#include "apps/common/host_image.h"
#include "apps/common/image_writer.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/commands.h"
#include "apps/recording/stream_store.h"
#include "mivora/grabber.h"
#include "platform/console.h"
#include "platform/interrupt.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kAsynchronous = 2;
constexpr std::uint64_t kTimeoutMs = 5000;
constexpr const char* kStream = "-";
constexpr const char* kStreamFormat = "png";

struct SnapOptions {
    std::uint32_t mode = kAsynchronous;
    std::optional<std::string> timeout;
    std::string file; ///< or "-": standard output
    std::optional<std::string> format;
    std::optional<std::string> pngLevel;
    bool deflate = false;
    bool raw = false;
    std::vector<std::string> set;
    bool json = false;

    bool IsStream() const { return file == kStream; }
    /// Has the ending that says the format.
    std::string FormatName() const {
        return IsStream() ? "image." + format.value_or(raw ? "raw" : kStreamFormat) : file;
    }
    ImageFileOptions FileOptions() const {
        ImageFileOptions options;
        if (pngLevel) {
            options.pngLevel = static_cast<std::uint32_t>(pngLevel->front() - '0');
        }
        options.deflate = deflate;
        return options;
    }
};

std::string SnapFileProblem(const std::string& file) {
    return file == kStream ? "" : ImageFileNameProblem(file);
}

void CheckFileOptions(const SnapOptions& options) {
    if (options.format && !options.IsStream()) {
        throw BadUsage("--format: the ending of " + options.file + " says the format");
    }
    const std::string name = options.FormatName();
    const ImageFileFormat format = ImageFileFormatOf(name);
    if (options.pngLevel && format != ImageFileFormat::kPng) {
        throw BadUsage("--png-level has no effect on " + name + ", which is no .png");
    }
    if (options.deflate && format != ImageFileFormat::kTiff) {
        throw BadUsage("--deflate has no effect on " + name + ", which is no .tif");
    }
    if (options.timeout && options.mode != kAsynchronous) {
        throw BadUsage("--timeout has an effect on mode 2 only");
    }
    if (options.raw && format != ImageFileFormat::kRaw) {
        throw BadUsage("--raw: " + name + " is no .raw, which the camera's bytes are written to");
    }
}

/// Keeps what the camera has sent of the first frame of an acquisition. The module has it for sure
/// only while the frame is handed over, on a thread of its own.
class SentImageCatch {
public:
    explicit SentImageCatch(ServiceClient& moduleServices) : services(moduleServices) {
        if (!services.OffersSentImages()) {
            throw CommandFailure("--raw: the grabber module does not hand out what cameras send");
        }
    }

    /// Never throws; before the frame is counted.
    void Catch(std::uint64_t bufferIndex) noexcept {
        if (isOver) {
            return;
        }
        isOver = true;
        try {
            isCaught = services.TryReadSentImage(bufferIndex, image, reason);
        } catch (...) {
            failure = std::current_exception();
        }
    }
    /// After the frame has been counted.
    const SentImageBytes& Image() const {
        if (failure) {
            std::rethrow_exception(failure);
        }
        if (!isCaught) {
            throw CommandFailure("--raw: the camera's bytes cannot be had", {reason});
        }
        return image;
    }

private:
    ServiceClient& services;
    SentImageBytes image;
    std::string reason;
    std::exception_ptr failure;
    bool isOver = false;
    bool isCaught = false;
};

void WriteToStream(const ImageLayout& layout, const EncodedFrame& frame) {
    platform::ReportBrokenPipes();
    StreamStore(stdout, "standard output", "raw").Append(1, layout, frame);
}

void Write(const SnapOptions& options, const ImageLayout& layout, const void* image) {
    if (!options.IsStream()) {
        WriteImage(options.file, layout, image, options.FileOptions());
        return;
    }
    EncodedFrame frame;
    EncodeImage(options.FormatName(), layout, image, options.FileOptions(), frame);
    WriteToStream(layout, frame);
}

void WriteSent(const SnapOptions& options, const ImageLayout& layout, const SentImageBytes& image) {
    EncodedFrame frame;
    frame.pixels = reinterpret_cast<const std::uint8_t*>(image.bytes.data());
    frame.pixelBytes = image.bytes.size();
    if (options.IsStream()) {
        WriteToStream(layout, frame);
        return;
    }
    WriteEncodedFrame(options.file, frame);
    const JsonValue sent = JsonObject({{"pixelFormat", image.format},
                                       {"width", layout.width},
                                       {"height", layout.height},
                                       {"bytes", std::uint64_t{image.bytes.size()}}});
    WriteWholeFile(options.file + ".json",
                   JsonObject({{"schema", 1}, {"sent", sent}}).Text() + "\n");
}

void WaitForFrame(Session& session, FrameWait& wait, std::uint64_t timeoutMs) {
    EventRecorder& events = session.Events();
    if (!events.WaitFor([&] { return events.Frames() > 0; }, timeoutMs)) {
        const NoFrameCause cause = wait.FindCause();
        session.Grabber().StopSnap();
        if (platform::InterruptRequested()) {
            throw CommandFailure("interrupted before a frame came from " + session.ActCameraText());
        }
        session.Check("Snap", MV_ACQUISITION_FAILED,
                      session.ActCameraText() + ", no frame for " + std::to_string(timeoutMs) +
                          " ms",
                      {cause.text});
    }
}

/// Refuses what would give a black image, and warns of what will look wrong.
void CheckFormat(Session& session, std::uint32_t mode, const ImageLayout& layout) {
    const std::optional<ServiceValue> format = ReadPixelFormat(session.OptionalServices());
    if (!format) {
        return;
    }
    if (mode != kAsynchronous && HandlingOf(*format, layout) != FormatHandling::kAsItIs) {
        throw CommandFailure("mode " + std::to_string(mode) + " does not convert " + format->text +
                                 ", so that the image would be black",
                             {"take the frame with --mode 2, write the camera's bytes with --raw, "
                              "or choose a format that needs no conversion, such as Mono8 or "
                              "Mono16"});
    }
    WarnOfFormat(*format, layout);
}

void Snap(Session& session, const SnapOptions& options) {
    const std::vector<FeatureAssignment> assignments =
        ParseFeatureAssignments(session, options.set);
    session.OpenCamera();
    ApplyFeatureAssignments(session, assignments);
    CMivoraGrabber& grabber = session.Grabber();
    const ImageLayout layout = DescribeImage(session.CheckedMode());
    std::shared_ptr<SentImageCatch> sent; // a frame may come after the wait for it
    if (options.raw) {
        sent = std::make_shared<SentImageCatch>(session.Services());
        session.Events().SetFrameHook([sent](std::uint64_t index) { sent->Catch(index); });
    } else {
        CheckFormat(session, options.mode, layout);
    }
    session.PrepareBuffers(1, session.ActCameraText());
    platform::InstallInterruptHandler();
    FrameWait wait(session);
    wait.Begin();
    session.Check("Snap", grabber.Snap(options.mode), session.ActCameraText());
    WaitForFrame(session, wait, ParseUnsigned(options.timeout.value_or("")).value_or(kTimeoutMs));
    std::uint64_t index = 0;
    session.Check("GetLastFilledBuffer", grabber.GetLastFilledBuffer(&index),
                  session.ActCameraText());
    if (sent) {
        WriteSent(options, layout, sent->Image());
    } else {
        Write(options, layout, grabber.GetFrameBuffer(index));
    }
    grabber.ReleaseFrameBuffer(index);
    if (options.json) {
        const JsonValue report = sent ? JsonReport({{"file", options.file},
                                                    {"width", layout.width},
                                                    {"height", layout.height},
                                                    {"pixelFormat", sent->Image().format}})
                                      : JsonReport({{"file", options.file},
                                                    {"width", layout.width},
                                                    {"height", layout.height},
                                                    {"components", layout.components},
                                                    {"bits", layout.bits}});
        std::fprintf(options.IsStream() ? stderr : stdout, "%s\n", report.Text().c_str());
    }
}

constexpr const char* kSnapFooter =
    "Mode 2 snaps asynchronously, 3 to 5 synchronously. In the synchronous modes the grabber\n"
    "module hands the image over without converting it: packed and YUV formats are refused there\n"
    "and want mode 2, or --raw, which writes the bytes as the camera has sent them.\n"
    "A .png of a colour filter (Bayer) image is in colour, a .tif or .pgm of it is the raw\n"
    "mosaic. A .png has values moved up to 16 bits, a .tif or .pgm the true ones.\n"
    "\n"
    "Examples:\n"
    "  mivora snap -o image.png\n"
    "  mivora --camera 1 snap --mode 3 -o image.raw\n"
    "  mivora snap --raw --set Camera/PixelFormat=Mono12p -o image.raw\n"
    "  mivora snap --set Camera/PixelFormat=Mono12 --set Camera/ExposureTime=20000 -o image.png\n"
    "  mivora snap -o - --format pnm | viewer\n";

} // namespace

void AddSnapCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("snap", "Take one frame and write it to a file");
    const auto snap = std::make_shared<SnapOptions>();
    command.AddOption("--mode", snap->mode, "Snap mode").Within(2, 5).ShowDefault();
    command
        .AddOption("-o,--output", snap->file,
                   "File to write; its ending says the format: .png .tif .tiff .pgm .ppm .pnm "
                   ".raw; - is standard output")
        .Required()
        .Check(SnapFileProblem)
        .TypeName("FILE");
    command
        .AddOption("-f,--format", snap->format,
                   "What is written to standard output; png if not given")
        .OneOf({"png", "tiff", "pgm", "ppm", "pnm", "raw"});
    command
        .AddOption("-t,--timeout", snap->timeout,
                   "Longest wait for the frame in mode 2, in milliseconds; 5000 if not given")
        .Check(CountProblem)
        .TypeName("MS");
    command
        .AddOption("--png-level", snap->pngLevel,
                   "How well a .png is compressed, 0 to 9; 1 if not given")
        .Check(PngLevelProblem)
        .TypeName("L");
    command.AddFlag("--deflate", snap->deflate, "Compress a .tif without loss");
    command.AddFlag("--raw", snap->raw,
                    "Write a .raw with the bytes as the camera has sent them, not converted");
    AddSetOption(command, snap->set);
    command.AddJson(snap->json);
    command.SetFooter(kSnapFooter);
    command.OnRun([&options, maker, snap] {
        CheckFileOptions(*snap);
        Session session(options, maker());
        Snap(session, *snap);
    });
}
