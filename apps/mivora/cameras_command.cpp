// cameras_command.cpp - lists the cameras
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/known_camera.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

void PrintJson(const std::vector<KnownCamera>& cameras) {
    std::vector<JsonValue> list;
    list.reserve(cameras.size());
    for (const KnownCamera& camera : cameras) {
        list.push_back(JsonObject(KnownCameraMembers(camera)));
    }
    std::printf("%s\n", JsonArray(list).Text().c_str());
}

/// A column is as wide as its longest text; one that is empty in all lines is left out.
void PrintTable(const std::vector<KnownCamera>& cameras) {
    if (cameras.empty()) {
        std::printf("There is no camera.\n");
        return;
    }
    std::vector<std::vector<std::string>> lines = {{"", "unique id", "name", "vendor", "model",
                                                    "serial number", "user name", "interface",
                                                    "access", "UniqueId"}};
    for (const KnownCamera& camera : cameras) {
        lines.push_back({(camera.isActive ? "* " : "  ") + std::to_string(camera.index),
                         UniqueIdText(camera.uniqueId), camera.name, camera.vendor, camera.model,
                         camera.serialNumber, camera.userName, camera.interfaceName,
                         camera.AccessText(), camera.extendedId});
    }
    std::vector<std::size_t> widths(lines[0].size());
    for (std::size_t line = 0; line < lines.size(); ++line) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            std::string& text = lines[line][column];
            text = platform::PrintableText(text);
            if (line > 0 && !text.empty()) {
                widths[column] = std::max({widths[column], text.size(), lines[0][column].size()});
            }
        }
    }
    for (const std::vector<std::string>& line : lines) {
        std::string shown;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (widths[column] != 0) {
                shown += (shown.empty() ? "" : "  ") + line[column] +
                         std::string(widths[column] - line[column].size(), ' ');
            }
        }
        shown.erase(shown.find_last_not_of(' ') + 1);
        std::printf("%s\n", shown.c_str());
    }
}

/// The list serves to find out what a configuration should name, so it is given all the same.
void WarnOfAMissingCamera(Session& session, const std::vector<KnownCamera>& cameras) {
    const std::string configured = session.ConfiguredCamera();
    if (!configured.empty() &&
        std::none_of(cameras.begin(), cameras.end(), std::mem_fn(&KnownCamera::isActive))) {
        std::fprintf(stderr, "mivora: the configured camera \"%s\" is not there\n",
                     platform::PrintableText(configured).c_str());
    }
}

} // namespace

void AddCamerasCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand(
        "cameras", "List the cameras and what --camera and the configuration call them");
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.SetFooter(
        "The configured camera, or that of --camera, has a mark. --camera takes any of these texts\n"
        "that only one camera has. The column UniqueId is what the key UniqueId of the\n"
        "configuration file names a camera by. Most cameras tell vendor and user name only while\n"
        "they are open.\n"
        "\n"
        "Example:\n"
        "  mivora --sdk simulator cameras --json\n");
    command.OnRun([&options, maker, json] {
        Session session(options, maker());
        session.InitWithCamera();
        const std::vector<KnownCamera> cameras = session.KnownCameras();
        WarnOfAMissingCamera(session, cameras);
        *json ? PrintJson(cameras) : PrintTable(cameras);
    });
}
