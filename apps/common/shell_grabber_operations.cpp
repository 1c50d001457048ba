// shell_grabber_operations.cpp - operations for initialisation, buffers, acquisition and dialogs
#include "apps/common/event_recorder.h"
#include "apps/common/host_image.h"
#include "apps/common/image_writer.h"
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

#include <exception>
#include <memory>
#include <optional>

namespace {

using Dialog = MV_ERRCODE (CMivoraGrabber::*)(MV_WINDOW, MV_DLG_EXITCODE*);

void AddDialog(ShellOperations& operations, CMivoraGrabber& grabber, const char* name,
               Dialog dialog) {
    operations.Add(name, "", [&grabber, dialog] {
        MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;
        const MV_ERRCODE code = (grabber.*dialog)(nullptr, &exitCode);
        return ShellAnswer::Code(code).WithSigned("exitCode", exitCode);
    });
}

void AddLife(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("Init", "", [&] { return ShellAnswer::Code(grabber.Init()); });
    operations.Add("DeInit", "", [&] { return ShellAnswer::Code(grabber.DeInit()); });
    operations.Add("GetDriverDesc", "", [&] { return ShellAnswer::Text(grabber.GetDriverDesc()); });
    operations.Add("GetDriverName", "", [&] { return ShellAnswer::Text(grabber.GetDriverName()); });
    operations.Add("GetDriverVersion", "",
                   [&] { return ShellAnswer::Text(grabber.GetDriverVersion()); });
    operations.Add("SetDriverDesc", "TEXT", [&](const std::string& text) {
        grabber.SetDriverDesc(text.c_str());
        return ShellAnswer::Ok();
    });
}

void AddBuffers(ShellOperations& operations, CMivoraGrabber& grabber) {
    // Images keep the layout from when their buffers were prepared, even if the camera is changed
    // afterwards.
    const auto prepared = std::make_shared<std::optional<ImageLayout>>();
    operations.Add("PrepareFrameBuffers", "N", [&grabber, prepared](std::uint64_t count) {
        const MV_ERRCODE code = grabber.PrepareFrameBuffers(count);
        prepared->reset();
        if (code == MV_OK) {
            *prepared = DescribeImage(*grabber.GetActCamera()->GetActGfxMode());
        }
        return ShellAnswer::Code(code);
    });
    operations.Add("GetLastFilledBuffer", "", [&] {
        std::uint64_t index = 0;
        const MV_ERRCODE code = grabber.GetLastFilledBuffer(&index);
        return ShellAnswer::Code(code).With("index", index);
    });
    operations.Add("GetFrameBuffer", "I", [&](std::uint64_t index) {
        return ShellAnswer::Pointer(grabber.GetFrameBuffer(index));
    });
    operations.Add("ReleaseFrameBuffer", "I", [&](std::uint64_t index) {
        return ShellAnswer::Code(grabber.ReleaseFrameBuffer(index));
    });
    operations.Add("GetRequestedBufferCount", "", [&] {
        return ShellAnswer::Number(static_cast<std::int64_t>(grabber.GetRequestedBufferCount()));
    });
    operations.Add("GetLostBufferCount", "", [&] {
        return ShellAnswer::Number(static_cast<std::int64_t>(grabber.GetLostBufferCount()));
    });
    operations.Add("SaveBuffer", "I FILE",
                   [&grabber, prepared](std::uint64_t index, const std::string& path) {
                       const void* const data = grabber.GetFrameBuffer(index);
                       if (!*prepared || !data) {
                           throw ShellRefusal("there is no such image");
                       }
                       try {
                           WriteImage(path, **prepared, data);
                       } catch (const std::exception& failure) {
                           throw ShellRefusal(failure.what());
                       }
                       return ShellAnswer::Ok();
                   });
}

void AddAcquisition(ShellOperations& operations, const ShellContext& context) {
    CMivoraGrabber& grabber = context.grabber;
    operations.Add("Snap", "MODE", [&grabber, &events = context.events](std::uint32_t mode) {
        events.ResetFrames();
        return ShellAnswer::Code(grabber.Snap(mode));
    });
    operations.Add("StopSnap", "", [&] { return ShellAnswer::Code(grabber.StopSnap()); });
    operations.Add("GetAcquisitionState", "",
                   [&] { return ShellAnswer::Number(grabber.GetAcquisitionState()); });
    operations.Add("SetAcquisitionState", "STATE", [&](std::uint32_t state) {
        grabber.SetAcquisitionState(state);
        return ShellAnswer::Ok();
    });
    operations.Add("DoPostProcess", "I 0|1", [&](std::uint64_t index, bool fromCallback) {
        grabber.DoPostProcess(index, fromCallback ? 1 : 0);
        return ShellAnswer::Ok();
    });
}

void AddDialogs(ShellOperations& operations, CMivoraGrabber& grabber) {
    AddDialog(operations, grabber, "SelectCameraDialog", &CMivoraGrabber::SelectCameraDialog);
    AddDialog(operations, grabber, "SelectModeDialog", &CMivoraGrabber::SelectModeDialog);
    AddDialog(operations, grabber, "GrabberConfigDialog", &CMivoraGrabber::GrabberConfigDialog);
    AddDialog(operations, grabber, "SelectCmdDialog", &CMivoraGrabber::SelectCmdDialog);
    operations.Add("CamCntrlDialog", "",
                   [&] { return ShellAnswer::Code(grabber.CamCntrlDialog(nullptr)); });
    operations.Add("CloseCamCntrlDialog", "",
                   [&] { return ShellAnswer::Code(grabber.CloseCamCntrlDialog()); });
    operations.Add("IsCamCntrlDialogOpen", "",
                   [&] { return ShellAnswer::Number(grabber.IsCamCntrlDialogOpen()); });
}

void AddSignals(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("SignalCamCfgChange", "", [&] {
        grabber.SignalCamCfgChange();
        return ShellAnswer::Ok();
    });
    operations.Add("SignalCamCntrlDlgEvent", "CODE", [&](std::uint32_t code) {
        return ShellAnswer::Number(grabber.SignalCamCntrlDlgEvent(code));
    });
    operations.Add("UpdateCamCntrlDialogs", "MASK", [&](std::uint32_t mask) {
        grabber.UpdateCamCntrlDialogs(mask);
        return ShellAnswer::Ok();
    });
}

} // namespace

void AddGrabberOperations(ShellOperations& operations, const ShellContext& context) {
    AddLife(operations, context.grabber);
    AddBuffers(operations, context.grabber);
    AddAcquisition(operations, context);
    AddDialogs(operations, context.grabber);
    AddSignals(operations, context.grabber);
}

void AddAllOperations(ShellOperations& operations, const ShellContext& context) {
    AddGrabberOperations(operations, context);
    AddConfigurationOperations(operations, context);
    AddCameraOperations(operations, context);
    AddChannelOperations(operations, context);
    AddParameterOperations(operations, context);
    AddHostOperations(operations, context);
}
