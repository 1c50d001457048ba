// device_finder_fixture.h - the device finder over the scripted SDK's cameras
#pragma once

#include "list_rows.h"
#include "test_host.h"
#include "tests/module/sdk/loaded_api.h"
#include "ui/windows/kvn_pyxen_device_finder_dialog.h"
#include "when_shown.h"

#include <functional>
#include <string>
#include <vector>

/// Three cameras: "Left" (free), "Middle" (in use), "Right" (no access known).
class DeviceFinder : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        sdk.Data().system.Put(scripted::IntFeature("EventInterfaceDiscovery", 0, 0, 0xFFFF));
        auto& layer = sdk.Data().transportLayers[0];
        layer.Put(scripted::StringFeature("TLDisplayName", "GigE Vision"));
        sdk.Data().cameras = {Camera("left", "Left", 1 | 2), Camera("middle", "Middle", 2),
                              Camera("right", "Right", 4)};
    }

    static scripted::Camera Camera(const std::string& id, const std::string& name,
                                   std::uint32_t access) {
        scripted::Camera camera;
        camera.id = id;
        camera.extendedId = "ext-" + id;
        camera.name = name;
        camera.modelName = "Model A";
        camera.serial = "SN-" + id;
        camera.permittedAccess = access;
        return camera;
    }
    void Plug(const scripted::Camera& camera) {
        sdk.Edit([&](scripted::Model& model) { model.cameras.push_back(camera); });
        Discover();
    }
    void Unplug(const std::string& id) {
        sdk.Edit([&](scripted::Model& model) {
            std::erase_if(model.cameras,
                          [&](const scripted::Camera& camera) { return camera.id == id; });
        });
        Discover();
    }
    /// As the SDK tells of a change: one call of the callback.
    void Discover(const char* feature = "EventCameraDiscovery") {
        EXPECT_EQ(sdk.Fire(PXN_SYSTEM_HANDLE, feature), 1u);
        host.Pump();
    }

    /// Shows the dialog with `id` preselected; `drive` works with it while it is open. Answers
    /// what the dialog ended with and leaves the chosen identifier in `chosen`.
    INT_PTR Run(const std::string& id, const std::function<void()>& drive) {
        return RunWithLog(sink, id, drive);
    }
    /// The same, with its lines in another sink.
    INT_PTR RunWithLog(ILogSink& log, const std::string& id, const std::function<void()>& drive) {
        CKVNPyxenDeviceFinderDialog finder(api, &log, &host.Frame());
        finder.SetSelectedId(id);
        current = &finder;
        INT_PTR ending = 0;
        {
            const WhenShown shown(L"Device Finder", [&](HWND window) {
                dialog = window;
                list = GetDlgItem(window, 7000);
                host.SetDialog(window);
                host.Pump();
                drive();
                host.SetDialog(nullptr);
            });
            ending = finder.DoModal();
        }
        chosen = finder.GetSelectedId();
        current = nullptr;
        return ending;
    }
    const std::string& Selected() const { return current->GetSelectedId(); }
    void Push(int button) { host.Click(GetDlgItem(dialog, button), 5, 5); }
    void ClickRow(int row) {
        const CRect rect = RectOf(list, row);
        host.Click(list, rect.left + 10, (rect.top + rect.bottom) / 2);
    }
    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (int row = 0; row < RowCount(list); ++row) {
            names.push_back(RowOf(list, row)[0]);
        }
        return names;
    }
    bool IsOpen() const { return IsWindowVisible(dialog) != FALSE; }

    HostWindow host;
    HWND dialog = nullptr;
    HWND list = nullptr;
    std::string chosen;

private:
    const CKVNPyxenDeviceFinderDialog* current = nullptr;
};
