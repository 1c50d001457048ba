// formats_command.cpp - prints the pixel format table and camera keys
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/pyxen-tool/commands.h"
#include "grabber/camera_key.h"
#include "imaging/pixel_format.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

void PrintJson() {
    std::vector<JsonValue> list;
    for (const PixelFormat& format : PixelFormatTable()) {
        list.push_back(JsonObject({{"name", format.name},
                                   {"code", format.code},
                                   {"components", format.components},
                                   {"allocatedBits", format.allocatedBits},
                                   {"bits", format.bits},
                                   {"colorCoding", static_cast<int>(format.colorCoding)},
                                   {"cfaX", format.cfaX},
                                   {"cfaY", format.cfaY},
                                   {"conversion", format.conversionName}}));
    }
    std::printf("%s\n", JsonArray(list).Text().c_str());
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

void AddFormatsCommand(CommandLine& program) {
    Command command =
        program.AddCommand("formats", "List the pixel formats in the order of search");
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.ExcludesCameraOptions();
    command.SetFooter("Example:\n  pyxen-tool formats --json\n");
    command.OnRun([json] { *json ? PrintJson() : PrintTable(); });
}

void AddCameraKeyCommand(CommandLine& program) {
    Command command = program.AddCommand(
        "camera-key", "Print the unique camera id that belongs to an extended identifier");
    const auto text = std::make_shared<std::string>();
    command.AddOption("TEXT", *text, "The camera's extended identifier").Required();
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.ExcludesCameraOptions();
    command.SetFooter("Example:\n  pyxen-tool camera-key GEV-0001\n");
    command.OnRun([text, json] {
        const std::uint32_t key = CameraKey(text->c_str());
        if (*json) {
            PrintReport({{"extendedId", *text}, {"uniqueId", key}});
        } else {
            std::printf("0x%08X\n", static_cast<unsigned>(key));
        }
    });
}
