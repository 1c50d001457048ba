// grabber_events.cpp - configuration changes, camera control events and dialogs
#include "grabber_impl.h"

#include "guarded.h"

#include <algorithm>

MV_ERRCODE CMivoraGrabber::InstCamCfgChangeMsgWnd(MV_WINDOW window, std::uint32_t message) {
    return impl->camCfgChange.messages.SetWindow(window, message);
}

MV_ERRCODE CMivoraGrabber::InstCamCfgChangeThreadID(std::uint32_t threadId, std::uint32_t message) {
    return impl->camCfgChange.messages.SetThread(threadId, message);
}

MV_ERRCODE CMivoraGrabber::InstCamCfgChangeCallBack(MV_CAM_CFG_CHANGE_CALLBACK callback,
                                                    void* context) {
    return impl->camCfgChange.SetCallback(callback, context);
}

void CMivoraGrabber::SignalCamCfgChange() {
    Guarded(false, [&] {
        if (!impl->IsFeatureOn(EMV_FEATURE_CAM_CFG_CHANGE)) {
            return false;
        }
        impl->camCfgChange.messages.Post(0, 0);
        return impl->camCfgChange.callback.Deliver(
            [](const Callback<MV_CAM_CFG_CHANGE_CALLBACK>& receiver) {
                receiver.function(receiver.context);
            });
    });
}

MV_ERRCODE CMivoraGrabber::InstCamCntrlMsgWnd(MV_WINDOW window, std::uint32_t message) {
    return impl->camCntrl.messages.SetWindow(window, message);
}

MV_ERRCODE CMivoraGrabber::InstCamCntrlThreadID(std::uint32_t threadId, std::uint32_t message) {
    return impl->camCntrl.messages.SetThread(threadId, message);
}

MV_ERRCODE CMivoraGrabber::InstCamCntrlCallBack(MV_CAM_CNTRL_CALLBACK callback, void* context) {
    return impl->camCntrl.SetCallback(callback, context);
}

std::uint32_t CMivoraGrabber::SignalCamCntrlDlgEvent(std::uint32_t code) {
    // Posted messages have no result, so only the callback can return anything but 1.
    std::uint32_t result = 1;
    Guarded(false, [&] {
        if (!impl->IsFeatureOn(EMV_FEATURE_CAM_CNTRL_EVENT)) {
            return false;
        }
        impl->camCntrl.messages.Post(code, 0);
        return impl->camCntrl.callback.Deliver(
            [&](const Callback<MV_CAM_CNTRL_CALLBACK>& receiver) {
                result = receiver.function(code, receiver.context);
            });
    });
    return result;
}

MV_ERRCODE CMivoraGrabber::InstDialogUpdateCallBack(MV_DIALOG_UPDATE_CALLBACK callback,
                                                    void* context) {
    return impl->dialogUpdate.SetCallback(callback, context);
}

void CMivoraGrabber::UpdateCamCntrlDialogs(std::uint32_t mask) {
    Guarded(false, [&] {
        impl->camCntrlDialog.Deliver([&](ICamCntrlDialog* dialog) { dialog->Update(mask); });
        return impl->dialogUpdate.callback.Deliver(
            [&](const Callback<MV_DIALOG_UPDATE_CALLBACK>& receiver) {
                receiver.function(mask, receiver.context);
            });
    });
}

MV_ERRCODE CMivoraGrabber::CamCntrlDialog(MV_WINDOW /*parent*/) {
    const CMivoraCamera* const camera = GetActCamera();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    if (impl->sink) {
        impl->sink->Write(kMvLogError,
                          "Mivora: CamCntrlDialog: There is no camera control dialog %u",
                          camera->GetCamCntrlDlgIndex());
    }
    return MV_NOT_AVAILABLE;
}

MV_ERRCODE CMivoraGrabber::CloseCamCntrlDialog() {
    if (ICamCntrlDialog* const dialog = GetCamCntrlDialogObject()) {
        dialog->Hide();
    }
    return MV_OK;
}

std::uint32_t CMivoraGrabber::IsCamCntrlDialogOpen() {
    const ICamCntrlDialog* const dialog = GetCamCntrlDialogObject();
    return dialog && dialog->IsVisible() ? 1 : 0;
}

ICamCntrlDialog* CMivoraGrabber::GetCamCntrlDialogObject() const {
    return impl->camCntrlDialogObject;
}

void CMivoraGrabber::SetCamCntrlDialogObject(ICamCntrlDialog* dialog) {
    Guarded(false, [&] {
        impl->camCntrlDialogObject = nullptr;
        if (dialog) {
            impl->camCntrlDialog.Install(dialog);
        } else {
            impl->camCntrlDialog.Remove();
        }
        impl->camCntrlDialogObject = dialog;
        return true;
    });
}

void CMivoraGrabber::RegisterWindowHandle(MV_WINDOW window) {
    Guarded(false, [&] {
        const platform::MutexLock lock(impl->windowMutex);
        auto& windows = impl->windows;
        if (window && std::find(windows.begin(), windows.end(), window) == windows.end()) {
            windows.push_back(window);
        }
        return true;
    });
}

void CMivoraGrabber::UnRegisterWindowHandle(MV_WINDOW window) {
    const platform::MutexLock lock(impl->windowMutex);
    std::erase(impl->windows, window);
}

MV_WINDOW CMivoraGrabber::GetRegisteredWindow(std::uint32_t index) const {
    const platform::MutexLock lock(impl->windowMutex);
    return index < impl->windows.size() ? impl->windows[index] : nullptr;
}
