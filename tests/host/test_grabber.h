// test_grabber.h - a minimal grabber and channel with fakes of what a module implements
#pragma once

#include "mivora/grabber.h"

#include <cstdint>
#include <new>
#include <string>
#include <vector>

/// A channel without a device that returns preset results and records its calls.
class FakeChannel : public CCmdChannel {
public:
    ~FakeChannel() override {
        if (destroyed) {
            ++*destroyed;
        }
    }

    const char* GetChannelTypeName() override { return "Fake"; }
    const char* GetConfigText() override { return "fake configuration"; }
    MV_ERRCODE SetConfig(CIniFile* ini, const char* section) override {
        const MV_ERRCODE base = CCmdChannel::SetConfig(ini, section);
        if (base != MV_OK || !ini) {
            return base;
        }
        return ini->WriteText(section, "SETTING", setting.c_str()) ? MV_OK : MV_CONFIG_NOT_SAVED;
    }
    MV_ERRCODE GetConfig(CIniFile* ini, const char* section) override {
        const MV_ERRCODE base = CCmdChannel::GetConfig(ini, section);
        if (base != MV_OK || !ini) {
            return base;
        }
        char text[64];
        ini->GetText(section, "SETTING", setting.c_str(), text, sizeof text);
        setting = text;
        return configResult;
    }
    MV_ERRCODE ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override {
        Record("ConfigDialog " + std::to_string(reinterpret_cast<std::uintptr_t>(parent)));
        if (exitCode) {
            *exitCode = dialogExit;
        }
        return result;
    }
    MV_ERRCODE Open() override { return Record("Open"); }
    MV_ERRCODE ReadByte(std::uint8_t* buffer, std::uint64_t* count) override {
        *buffer = 'r';
        *count = 1;
        return Record("ReadByte");
    }
    MV_ERRCODE WriteByte(const std::uint8_t* buffer, std::uint64_t* count) override {
        *count = 1;
        const MV_ERRCODE writeResult =
            static_cast<std::size_t>(failFrom) <= written.size() ? result : MV_OK;
        if (writeResult == MV_OK) {
            written.push_back(static_cast<char>(*buffer));
        }
        Record("WriteByte");
        return writeResult;
    }
    MV_ERRCODE ReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                          std::uint64_t* count) override {
        *buffer = 'R';
        *count = length;
        return Record("ReadBuffer");
    }
    MV_ERRCODE WriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                           std::uint64_t* count) override {
        written.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length));
        if (count) {
            *count = length;
        }
        return Record("WriteBuffer");
    }
    MV_ERRCODE Purge(std::uint32_t flags) override {
        return Record("Purge " + std::to_string(flags));
    }
    MV_ERRCODE Close() override { return Record("Close"); }
    std::uint32_t GetChannelKind() override { return MVCMD_MODULE; }

    using CCmdChannel::SetOpen;

    std::string setting = "initial";
    std::string written;
    std::vector<std::string> calls;
    MV_ERRCODE result = MV_OK;
    MV_ERRCODE configResult = MV_OK;
    int failFrom = 1000000; ///< WriteByte returns `result` from this byte on
    MV_DLG_EXITCODE dialogExit = MV_DLG_CANCEL;
    int* destroyed = nullptr;

private:
    MV_ERRCODE Record(const std::string& call) {
        calls.push_back(call);
        return result;
    }
};

/// A grabber with the channel types 0 (the host's serial channel), 1 (FakeChannel) and 2 (counted,
/// but cannot be created).
class TestGrabber : public CMivoraGrabber {
public:
    TestGrabber() : CMivoraGrabber(nullptr) {}
    explicit TestGrabber(void* moduleInstance) : CMivoraGrabber(moduleInstance) {}
    ~TestGrabber() override {
        if (!leavesChannels) {
            DeleteCmdChannelList();
        }
    }

    MV_ERRCODE OpenActCamera() override {
        open = 1;
        return MV_OK;
    }
    std::uint32_t IsCameraOpen() override { return open; }
    MV_ERRCODE CloseActCamera() override {
        ++closes;
        const MV_ERRCODE result = CMivoraGrabber::CloseActCamera();
        if (closeResult == MV_OK) {
            open = 0;
        }
        return closeResult == MV_OK ? result : closeResult;
    }
    MV_ERRCODE SelectCameraDialog(MV_WINDOW, MV_DLG_EXITCODE*) override { return MV_OK; }
    void* GetFrameBuffer(std::uint64_t index) override {
        return index < sizeof buffers ? &buffers[index] : nullptr;
    }
    MV_ERRCODE RefreshCameraList() override { return MV_OK; }
    MV_ERRCODE Snap(std::uint32_t mode) override {
        state = mode;
        return MV_OK;
    }
    std::uint32_t GetAcquisitionState() override { return state; }
    MV_ERRCODE StopSnap() override {
        state = 0;
        return MV_OK;
    }
    MV_ERRCODE GrabberConfigDialog(MV_WINDOW, MV_DLG_EXITCODE*) override { return MV_OK; }
    void GetTimerMicroseconds(std::uint64_t* exposure, std::uint64_t* interval) override {
        *exposure = GetExposureValue();
        *interval = GetIntervalValue();
    }
    void SetTimerMicroseconds(std::uint64_t exposure, std::uint64_t interval) override {
        ChangeTimerTB(static_cast<std::uint32_t>(exposure), static_cast<std::uint32_t>(interval),
                      GetTimerEnabled());
    }
    std::uint32_t GetNumCmdChannelTypes() override { return 3; }
    CCmdChannel* CreateCmdChannel(std::uint32_t type) override {
        if (type == 0) {
            return CreateCmdSerialInstance();
        }
        if (type == 1) {
            auto* const channel = new (std::nothrow) FakeChannel;
            if (!channel) {
                return nullptr;
            }
            channel->destroyed = &destroyedChannels;
            channel->configResult = newChannelConfigResult;
            return channel;
        }
        return nullptr;
    }
    void DeleteCmdChannel(CCmdChannel* channel) override {
        if (channel && channel->GetChannelKind() == MVCMD_SERIAL) {
            DeleteCmdSerialInstance(channel);
        } else {
            delete channel;
        }
    }
    void SetAcquisitionState(std::uint32_t value) override { state = value; }
    CMivoraCamera* CreateCamera() override { return new CMivoraCamera; }

    /// Fills the camera list with cameras of these ids, with one mode each.
    void MakeCameras(const std::vector<std::uint32_t>& ids) {
        DeleteInternalList();
        CMivoraCamera* first = nullptr;
        CMivoraCamera* last = nullptr;
        for (const std::uint32_t id : ids) {
            CMivoraCamera* const camera = CreateCamera();
            camera->SetCameraUniqueID(id);
            camera->SetCameraName(("camera " + std::to_string(id)).c_str());
            camera->SetPrev(last);
            (last ? last->SetNext(camera) : void(first = camera));
            camera->BuildGfxModeList(this);
            last = camera;
        }
        SetFirstCamera(first);
    }

    FakeChannel* AddFakeChannel() {
        auto* const channel = static_cast<FakeChannel*>(CreateCmdChannel(1));
        AddCmdChannel(channel);
        return channel;
    }

    using CMivoraGrabber::DeleteInternalList;
    using CMivoraGrabber::GetCamCntrlDialogObject;
    using CMivoraGrabber::GetExposureValue;
    using CMivoraGrabber::GetIntervalValue;
    using CMivoraGrabber::GetSavedExposure;
    using CMivoraGrabber::GetSavedInterval;
    using CMivoraGrabber::GetSavedTimeBase;
    using CMivoraGrabber::GetTimeBase;
    using CMivoraGrabber::GetTimerEnabled;
    using CMivoraGrabber::GetTimerMode;
    using CMivoraGrabber::SetCamCntrlDialogObject;
    using CMivoraGrabber::SetDriverName;
    using CMivoraGrabber::SetDriverVersion;
    using CMivoraGrabber::SetExposureValue;
    using CMivoraGrabber::SetIntervalValue;
    using CMivoraGrabber::SetSavedExposure;
    using CMivoraGrabber::SetSavedInterval;
    using CMivoraGrabber::SetSavedTimeBase;
    using CMivoraGrabber::SetTimeBase;
    using CMivoraGrabber::StoreActCameraIndex;

    std::uint32_t open = 0;
    std::uint32_t state = 0;
    int closes = 0;
    MV_ERRCODE closeResult = MV_OK;
    MV_ERRCODE newChannelConfigResult = MV_OK;
    bool leavesChannels = false; ///< leaves its channels to the base class destructor
    int destroyedChannels = 0;
    char buffers[16] = {};
};

/// Installs a sink for the grabbers that are created in a scope.
class InstalledSink {
public:
    explicit InstalledSink(ILogSink* sink) : former(MivoraInstalledLogSink()) {
        MivoraInstallLogSink(sink);
    }
    ~InstalledSink() { MivoraInstallLogSink(former); }
    InstalledSink(const InstalledSink&) = delete;
    InstalledSink& operator=(const InstalledSink&) = delete;

private:
    ILogSink* const former;
};
