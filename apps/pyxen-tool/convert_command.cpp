// convert_command.cpp - converts a raw image to the host's layout or to a picture
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/image_writer.h"
#include "apps/common/json_text.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/raw_dump.h"
#include "platform/file_system.h"

#include <cstdint>
#include <memory>
#include <string>

using namespace pyxen;

namespace {

// More than any camera delivers; keeps the size of an image well within 64 bits.
constexpr std::uint32_t kMostPixels = 1u << 20;

struct ConvertOptions {
    std::string format;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::string input;
    std::string output;
    bool json = false;
};

void Convert(const ConvertOptions& options) {
    const PixelFormat* const format = FindPixelFormatByName(options.format.c_str());
    if (!format) {
        throw CommandFailure("unknown pixel format \"" + options.format +
                             "\"; the command formats lists them");
    }
    std::string raw;
    std::string error;
    if (!platform::ReadWholeFile(options.input, raw, &error)) {
        throw CommandFailure("cannot read " + options.input + ": " + error);
    }
    const auto host = ConvertDump(*format, options.width, options.height, raw);
    const ImageLayout layout = HostLayout(*format, options.width, options.height);
    WriteImage(options.output, layout, host.data());
    if (options.json) {
        PrintReport({{"file", options.output},
                     {"width", layout.width},
                     {"height", layout.height},
                     {"components", layout.components},
                     {"bits", layout.bits}});
    }
}

} // namespace

void AddConvertCommand(CommandLine& program) {
    Command command = program.AddCommand(
        "convert", "Convert a raw dump in the camera's layout into the host's layout or an image");
    command.ExcludesCameraOptions();
    const auto options = std::make_shared<ConvertOptions>();
    command.AddOption("--format", options->format, "Pixel format of the dump")
        .Required()
        .TypeName("NAME");
    command.AddOption("--width", options->width, "Pixels in a line")
        .Required()
        .Within(1u, kMostPixels)
        .TypeName("W");
    command.AddOption("--height", options->height, "Lines")
        .Required()
        .Within(1u, kMostPixels)
        .TypeName("H");
    command.AddOption("IN", options->input, "The dump").Required();
    command
        .AddOption("OUT", options->output, "File to write: .raw .png .tif .tiff .pgm .ppm or .pnm")
        .Required()
        .Check(ImageFileNameProblem);
    command.AddJson(options->json);
    command.SetFooter(
        "In the dump the lines of Mono10p, Mono12p and the Bayer formats like them are\n"
        "padded to whole bytes; all else is without padding. A dump of another length\n"
        "is refused.\n"
        "\n"
        "Example:\n"
        "  pyxen-tool convert --format Mono12p --width 640 --height 480 a.bin a.png\n");
    command.OnRun([options] { Convert(*options); });
}
