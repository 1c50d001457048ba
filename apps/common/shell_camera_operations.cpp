// shell_camera_operations.cpp - operations on cameras and their graphics modes
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

namespace {

ShellAnswer DescribeMode(CMivoraCamera* camera) {
    CMivoraGfxMode* const mode = camera ? camera->GetActGfxMode() : nullptr;
    if (!mode) {
        return ShellAnswer::Pointer(nullptr);
    }
    return ShellAnswer::Ok()
        .With("xRes", mode->GetxRes())
        .With("yRes", mode->GetyRes())
        .With("components", mode->GetNumComponents())
        .With("allocatedBits", mode->GetAllocatedBitPerComponent())
        .With("bitStart", mode->GetBitStartComponent())
        .With("bits", mode->GetBitPerComponent())
        .WithSigned("colorCoding", mode->GetColorCoding())
        .With("cfaX", mode->GetCFAxOffset())
        .With("cfaY", mode->GetCFAyOffset())
        .With("numPixels", mode->GetNumPixels())
        .With("imageSize", mode->GetImageSize());
}

void AddList(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("RefreshCameraList", "",
                   [&] { return ShellAnswer::Code(grabber.RefreshCameraList()); });
    operations.Add("GetNumCameras", "",
                   [&] { return ShellAnswer::Number(grabber.GetNumCameras()); });
    operations.Add("GetFirstCamera", "",
                   [&] { return ShellAnswer::Pointer(grabber.GetFirstCamera()); });
    operations.Add("GetLastCamera", "",
                   [&] { return ShellAnswer::Pointer(grabber.GetLastCamera()); });
    operations.Add("GetActCamera", "",
                   [&] { return ShellAnswer::Pointer(grabber.GetActCamera()); });
    operations.Add("GetCamera", "I", [&](std::int32_t index) {
        return ShellAnswer::Pointer(grabber.GetCamera(index));
    });
    operations.Add("GetCameraIndexByQZRCameraID", "ID", [&](std::uint32_t id) {
        return ShellAnswer::Number(grabber.GetCameraIndexByQZRCameraID(id));
    });
    operations.Add("GetCameraIndexByCameraUniqueID", "ID", [&](std::uint32_t id) {
        return ShellAnswer::Number(grabber.GetCameraIndexByCameraUniqueID(id));
    });
    operations.Add("Camera", "I", [&](std::int32_t index) {
        CMivoraCamera* const camera = grabber.GetCamera(index);
        if (!camera) {
            return ShellAnswer::Pointer(nullptr);
        }
        return ShellAnswer::Ok()
            .WithText("name", camera->GetCameraName())
            .With("uniqueId", camera->GetCameraUniqueID())
            .WithSigned("section", camera->GetCameraSectionNum());
    });
}

void AddActive(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("GetActCameraIndex", "",
                   [&] { return ShellAnswer::Number(grabber.GetActCameraIndex()); });
    operations.Add("SetActCameraIndex", "I", [&](std::int32_t index) {
        return ShellAnswer::Code(grabber.SetActCameraIndex(index));
    });
    operations.Add("OpenActCamera", "", [&] { return ShellAnswer::Code(grabber.OpenActCamera()); });
    operations.Add("CloseActCamera", "",
                   [&] { return ShellAnswer::Code(grabber.CloseActCamera()); });
    operations.Add("IsCameraOpen", "", [&] { return ShellAnswer::Number(grabber.IsCameraOpen()); });
    operations.Add("Mode", "", [&] { return DescribeMode(grabber.GetActCamera()); });
}

} // namespace

void AddCameraOperations(ShellOperations& operations, const ShellContext& context) {
    AddList(operations, context.grabber);
    AddActive(operations, context.grabber);
}
