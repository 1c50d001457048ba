// cameras_command.cpp - lists the cameras
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

void PrintJson(CMivoraGrabber& grabber) {
    std::vector<JsonValue> list;
    const auto count = static_cast<std::int32_t>(grabber.GetNumCameras());
    for (std::int32_t i = 0; i < count; ++i) {
        CMivoraCamera* const camera = grabber.GetCamera(i);
        list.push_back(JsonObject({{"index", i},
                                   {"uniqueId", camera->GetCameraUniqueID()},
                                   {"name", camera->GetCameraName()},
                                   {"active", i == grabber.GetActCameraIndex()}}));
    }
    std::printf("%s\n", JsonArray(list).Text().c_str());
}

void PrintTable(CMivoraGrabber& grabber) {
    const auto count = static_cast<std::int32_t>(grabber.GetNumCameras());
    if (count == 0) {
        std::printf("There is no camera.\n");
    }
    for (std::int32_t i = 0; i < count; ++i) {
        CMivoraCamera* const camera = grabber.GetCamera(i);
        std::printf("%c %2d  0x%08X  %s\n", i == grabber.GetActCameraIndex() ? '*' : ' ', i,
                    static_cast<unsigned>(camera->GetCameraUniqueID()),
                    platform::PrintableText(camera->GetCameraName()).c_str());
    }
}

} // namespace

void AddCamerasCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("cameras", "List the cameras: active mark, index, unique id and name");
    const auto json = std::make_shared<bool>(false);
    command.AddFlag("--json", *json, "Print JSON");
    command.SetFooter("Example:\n  mivora --sdk simulator cameras --json\n");
    command.OnRun([&options, maker, json] {
        Session session(options, maker());
        session.InitWithCamera();
        *json ? PrintJson(session.Grabber()) : PrintTable(session.Grabber());
    });
}
