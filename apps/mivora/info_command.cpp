// info_command.cpp - shows the driver and the layout of the camera's images
#include "apps/common/command_line.h"
#include "apps/common/host_image.h"
#include "apps/common/json_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <memory>

namespace {

void PrintJson(CMivoraGrabber& grabber, CMivoraGfxMode& mode) {
    CMivoraCamera& camera = *grabber.GetActCamera();
    const ImageLayout layout = DescribeImage(mode);
    PrintReport({{"driverDescription", grabber.GetDriverDesc()},
                 {"driverName", grabber.GetDriverName()},
                 {"driverVersion", grabber.GetDriverVersion()},
                 {"camera", JsonObject({{"index", grabber.GetActCameraIndex()},
                                        {"uniqueId", camera.GetCameraUniqueID()},
                                        {"name", camera.GetCameraName()}})},
                 {"mode", JsonObject({{"width", layout.width},
                                      {"height", layout.height},
                                      {"components", layout.components},
                                      {"allocatedBits", layout.allocatedBits},
                                      {"bitStart", mode.GetBitStartComponent()},
                                      {"bits", layout.bits},
                                      {"colorCoding", static_cast<int>(layout.colorCoding)},
                                      {"cfaX", layout.cfaX},
                                      {"cfaY", layout.cfaY},
                                      {"numPixels", mode.GetNumPixels()},
                                      {"imageSize", mode.GetImageSize()}})}});
}

void PrintText(Session& session, CMivoraGfxMode& mode) {
    CMivoraGrabber& grabber = session.Grabber();
    const ImageLayout layout = DescribeImage(mode);
    std::printf("Driver:        %s\n", platform::PrintableText(grabber.GetDriverDesc()).c_str());
    std::printf("Driver file:   %s\n", platform::PrintableText(grabber.GetDriverName()).c_str());
    std::printf("Version:       %s\n", platform::PrintableText(grabber.GetDriverVersion()).c_str());
    std::printf("Camera:        %s\n", session.ActCameraText().c_str());
    std::printf("Size:          %u x %u pixels\n", layout.width, layout.height);
    std::printf("Components:    %u, %u of %u bits each\n", layout.components, layout.bits,
                layout.allocatedBits);
    std::printf("Colour coding: %d (%s)\n", static_cast<int>(layout.colorCoding),
                ColorCodingName(layout.colorCoding));
    if (layout.colorCoding == MVCC_RAW_CFA) {
        std::printf("Filter offset: %u, %u\n", layout.cfaX, layout.cfaY);
    }
    std::printf("Image size:    %llu bytes\n",
                static_cast<unsigned long long>(mode.GetImageSize()));
}

} // namespace

void AddInfoCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("info", "Show the driver and how the camera's images look");
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.SetFooter("Example:\n  mivora --camera 1 info\n");
    command.OnRun([&options, maker, json] {
        Session session(options, maker());
        session.OpenCamera();
        CMivoraGfxMode& mode = session.CheckedMode();
        if (*json) {
            PrintJson(session.Grabber(), mode);
        } else {
            PrintText(session, mode);
        }
    });
}
