// formats_command.cpp - the pixel format table, and the key of a camera
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/pyxen-tool/commands.h"
#include "grabber/camera_key.h"
#include "grabber/pixel_format.h"

#include <cstdio>
#include <memory>
#include <string>

namespace {

void PrintJson() {
    Json list = Json::array();
    for (const PixelFormat& format : PixelFormatTable()) {
        list.push_back(
            {{"name", format.name},
             {"code", format.code},
             {"components", format.components},
             {"allocatedBits", format.allocatedBits},
             {"bits", format.bits},
             {"colorCoding", static_cast<int>(format.colorCoding)},
             {"cfaX", format.cfaX},
             {"cfaY", format.cfaY},
             {"conversion", format.conversionName ? Json(format.conversionName) : Json(nullptr)}});
    }
    std::printf("%s\n", JsonDump(list).c_str());
}

void PrintTable() {
    std::printf("%-16s %-10s comp alloc bits coding cfa  conversion\n", "name", "code");
    for (const PixelFormat& format : PixelFormatTable()) {
        std::printf("%-16s 0x%08X %4d %5d %4d %6d %d,%d  %s\n", format.name,
                    static_cast<unsigned>(format.code), format.components, format.allocatedBits,
                    format.bits, static_cast<int>(format.colorCoding), format.cfaX, format.cfaY,
                    format.conversionName ? format.conversionName : "-");
    }
}

} // namespace

void AddFormatsCommand(CLI::App& app) {
    CLI::App* const command =
        app.add_subcommand("formats", "List the pixel formats in the order of search");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print JSON");
    command->footer("Example:\n  pyxen-tool formats --json\n");
    command->callback([json] { *json ? PrintJson() : PrintTable(); });
}

void AddCameraKeyCommand(CLI::App& app) {
    CLI::App* const command = app.add_subcommand(
        "camera-key", "Print the unique camera id that belongs to an extended identifier");
    const auto text = std::make_shared<std::string>();
    command->add_option("TEXT", *text, "The camera's extended identifier")->required();
    command->footer("Example:\n  pyxen-tool camera-key GEV-0001\n");
    command->callback(
        [text] { std::printf("0x%08X\n", static_cast<unsigned>(CameraKey(text->c_str()))); });
}
