// The dialog in which the user picks a camera.
#include "device_finder_fixture.h"

#include "res/resource.h"
#include "screenshot.h"

using namespace pyxen;

namespace {

/// What an icon looks like on a white ground.
std::vector<COLORREF> Drawn(HICON icon, int size) {
    CBitmap bitmap;
    EXPECT_TRUE(bitmap.Attach(::CreateBitmap(size, size, 1, 32, nullptr)));
    CDC dc;
    EXPECT_TRUE(dc.CreateCompatibleDC(nullptr));
    CBitmap* const before = dc.SelectObject(&bitmap);
    ::PatBlt(dc, 0, 0, size, size, WHITENESS);
    EXPECT_TRUE(::DrawIconEx(dc, 0, 0, icon, size, size, 0, nullptr, DI_NORMAL));
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            pixels.push_back(::GetPixel(dc, x, y));
        }
    }
    dc.SelectObject(before);
    return pixels;
}

std::string State(const std::string& name, const std::string& access) {
    return "1 CDeviceFinderListCtrl::AddOrUpdateCamera: state of camera " + name + " is [" +
           access + "]";
}

std::string New(const std::string& name, const std::string& id) {
    return "1 CDeviceFinderListCtrl::AddOrUpdateCamera: New camera: " + name + "(id=" + id + ")";
}

std::string Removed(const std::string& id) {
    return "1 CDeviceFinderListCtrl::RemoveCameraFromList: camera " + id + " was removed.";
}

const char kCameraEvent[] =
    "1 CKVNPyxenDeviceFinderDialog::OnDiscoveryCameraEventCallback: handle = 1000000000000001, "
    "feature = EventCameraDiscovery";
const char kInterfaceEvent[] =
    "1 CKVNPyxenDeviceFinderDialog::OnDiscoveryInterfaceEventCallback: handle = 1000000000000001, "
    "feature = EventInterfaceDiscovery";

TEST_F(DeviceFinder, ListsEveryCameraWithItsConnection) {
    Run("", [&] {
        ASSERT_EQ(RowCount(list), 3);
        EXPECT_EQ(RowOf(list, 0),
                  (Row{L"Left", L"SN-left", L"if-eth0", L"GigE Vision", L"Korvane"}));
        EXPECT_EQ(RowOf(list, 1),
                  (Row{L"Middle", L"SN-middle", L"if-eth0", L"GigE Vision", L"Korvane"}));
        EXPECT_EQ(RowOf(list, 2),
                  (Row{L"Right", L"SN-right", L"if-eth0", L"GigE Vision", L"Korvane"}));
        for (int row = 0; row < 3; ++row) {
            EXPECT_EQ(DataOf(list, row), row);
        }
        EXPECT_EQ(SelectedRow(list), -1);
        SaveScreenshot(dialog, "finder-three-cameras");
        Push(IDCANCEL);
    });
    EXPECT_EQ(sink.Take(), (Texts{New("Left", "ext-left"), State("Left", "Full Read "),
                                  New("Middle", "ext-middle"), State("Middle", " Read "),
                                  New("Right", "ext-right"), State("Right", "  Unknown")}));
}

TEST_F(DeviceFinder, MarksACameraWithoutFullAccess) {
    Run("", [&] {
        EXPECT_EQ(StateImageOf(list, 0), 1u);
        EXPECT_EQ(StateImageOf(list, 1), 2u);
        EXPECT_EQ(StateImageOf(list, 2), 2u);
        for (int row = 0; row < 3; ++row) {
            EXPECT_EQ(ListView_GetItemState(list, row, LVIS_OVERLAYMASK) >> 8,
                      StateImageOf(list, row));
        }
        sdk.Edit([](scripted::Model& model) {
            model.cameras[0].permittedAccess = 2;
            model.cameras[1].permittedAccess = 7;
        });
        Discover();
        EXPECT_EQ(StateImageOf(list, 0), 2u);
        EXPECT_EQ(StateImageOf(list, 1), 1u);
        const HIMAGELIST images = ListView_GetImageList(list, LVSIL_STATE);
        EXPECT_EQ(ImageList_GetImageCount(images), 2);
        int width = 0, height = 0;
        EXPECT_TRUE(ImageList_GetIconSize(images, &width, &height));
        EXPECT_EQ(width, 16);
        EXPECT_EQ(height, 16);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, ShowsTheStateAsAnIcon) {
    Run("", [&] {
        const HIMAGELIST images = ListView_GetImageList(list, LVSIL_STATE);
        const SmallIcon expected[] = {LoadIconOfSize(7019, 16), LoadIconOfSize(7021, 16)};
        for (int index = 0; index < 2; ++index) {
            const SmallIcon shown(ImageList_GetIcon(images, index, ILD_NORMAL));
            EXPECT_EQ(Drawn(shown.get(), 16), Drawn(expected[index].get(), 16)) << index;
        }
        EXPECT_NE(Drawn(expected[0].get(), 16), Drawn(expected[1].get(), 16));
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, HasFiveColumns) {
    Run("", [&] {
        const HWND header = ListView_GetHeader(list);
        ASSERT_EQ(Header_GetItemCount(header), 5);
        const wchar_t* const texts[] = {L"Name", L"Serial Number", L"Interface", L"Transport Layer",
                                        L"Transport Layer Vendor"};
        CRect client;
        GetClientRect(list, &client);
        const HDC screen = GetDC(nullptr);
        const int resolution = GetDeviceCaps(screen, LOGPIXELSX);
        ReleaseDC(nullptr, screen);
        int widths[] = {210, 110, 150, 170, 100};
        for (int& width : widths) {
            width = MulDiv(width, resolution, 96);
        }
        widths[4] =
            std::max(widths[4], client.Width() - widths[0] - widths[1] - widths[2] - widths[3]);
        for (int column = 0; column < 5; ++column) {
            wchar_t text[64] = L"";
            HDITEM item = {};
            item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
            item.pszText = text;
            item.cchTextMax = 64;
            ASSERT_TRUE(Header_GetItem(header, column, &item));
            EXPECT_EQ(std::wstring(text), texts[column]);
            EXPECT_EQ(item.cxy, widths[column]) << column;
            EXPECT_EQ(item.fmt & HDF_JUSTIFYMASK, HDF_LEFT);
            EXPECT_TRUE(item.fmt & HDF_STRING);
            EXPECT_EQ(ListView_GetColumnWidth(list, column), widths[column]);
        }
        const DWORD styles = ListView_GetExtendedListViewStyle(list);
        EXPECT_TRUE(styles & LVS_EX_GRIDLINES);
        EXPECT_TRUE(styles & LVS_EX_FULLROWSELECT);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, HasRoomForItsHeadings) {
    Run("", [&] {
        constexpr int kMargins = 12;
        const HWND header = ListView_GetHeader(list);
        for (int column = 0; column < 5; ++column) {
            wchar_t text[64] = L"";
            HDITEM item = {};
            item.mask = HDI_TEXT | HDI_WIDTH;
            item.pszText = text;
            item.cchTextMax = 64;
            ASSERT_TRUE(Header_GetItem(header, column, &item));
            EXPECT_LE(ListView_GetStringWidth(list, text) + kMargins, item.cxy) << column;
        }
        const CRect last = RectOf(list, 2);
        CRect client;
        GetClientRect(list, &client);
        EXPECT_LT(last.bottom, client.bottom);
        EXPECT_FALSE(GetWindowLong(list, GWL_STYLE) & WS_HSCROLL); // all columns fit
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, StartsInItsListWithItsIcon) {
    Run("", [&] {
        EXPECT_EQ(GetFocus(), list);
        const int size = GetSystemMetrics(SM_CXSMICON);
        const auto icon = reinterpret_cast<HICON>(SendMessage(dialog, WM_GETICON, ICON_SMALL, 0));
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(Drawn(icon, size), Drawn(LoadIconOfSize(7032, size).get(), size));
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, ShowsPlaceholdersForWhatCannotBeRead) {
    sdk.Data().cameras.resize(1);
    sdk.FailAlways("PxnFeatureStringGet", PxnErrIO);
    Run("", [&] {
        EXPECT_EQ(RowOf(list, 0),
                  (Row{L"Left", L"SN-left", L"- unkown -", L"- unknown -", L"- unknown -"}));
        SaveScreenshot(dialog, "finder-placeholders");
        Push(IDCANCEL);
    });
    const Texts lines = sink.Take();
    ASSERT_EQ(lines.size(), 6u);
    const char* const starts[] = {
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading InterfaceID failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLDisplayName failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLModelName failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLVendorName failed."};
    for (std::size_t index = 0; index < std::size(starts); ++index) {
        EXPECT_EQ(lines[index].find(starts[index]), 0u) << lines[index];
    }
    EXPECT_EQ(lines[4], New("Left", "ext-left"));
}

TEST_F(DeviceFinder, ShowsTheModelNameOfALayerWithoutDisplayName) {
    sdk.Data().transportLayers[0].Put(scripted::StringFeature("TLDisplayName", ""));
    Run("", [&] {
        EXPECT_EQ(RowOf(list, 0)[3], L"Pyxen GigE");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, ShowsTextsOfEveryScript) {
    sdk.Data().cameras[0].name = "\xC3\x9C"
                                 "bersicht \xE5\xB7\xA6";
    Run("", [&] {
        EXPECT_EQ(RowOf(list, 0)[0], L"\u00DCbersicht \u5DE6");
        Push(IDCANCEL);
    });
}

// ---- the SDK ----

TEST_F(DeviceFinder, RegistersForDiscoveryWhileItIsOpen) {
    const auto calls = [&] {
        return sdk.TakeCalls({"PxnCamerasList", "PxnFeatureInvalidation"});
    };
    const Texts listing = {"PxnCamerasList(array, 100, 80)"};
    const Texts registering = {
        "PxnFeatureInvalidationRegister(system, \"EventInterfaceDiscovery\", cb)",
        "PxnFeatureInvalidationRegister(system, \"EventCameraDiscovery\", cb)"};
    const Texts unregistering = {
        "PxnFeatureInvalidationUnregister(system, \"EventInterfaceDiscovery\", cb)",
        "PxnFeatureInvalidationUnregister(system, \"EventCameraDiscovery\", cb)"};
    const auto joined = [](std::initializer_list<Texts> parts) {
        Texts all;
        for (const Texts& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    };
    Run("", [&] {
        EXPECT_EQ(calls(), joined({listing, registering}));
        Discover("EventInterfaceDiscovery");
        EXPECT_EQ(calls(), joined({unregistering, listing, registering}));
        Discover("EventCameraDiscovery");
        EXPECT_EQ(calls(), joined({unregistering, listing, registering}));
        EXPECT_EQ(sdk.Registrations().size(), 2u);
        Push(IDCANCEL);
    });
    EXPECT_EQ(calls(), unregistering);
    EXPECT_EQ(sdk.Registrations().size(), 0u);
}

TEST_F(DeviceFinder, TellsOfDiscoveryEvents) {
    Run("", [&] {
        sink.Take();
        const Texts update = {State("Left", "Full Read "), State("Middle", " Read "),
                              State("Right", "  Unknown")};
        Texts expected = {kInterfaceEvent};
        expected.insert(expected.end(), update.begin(), update.end());
        Discover("EventInterfaceDiscovery");
        EXPECT_EQ(sink.Take(), expected);
        expected.front() = kCameraEvent;
        Discover();
        EXPECT_EQ(sink.Take(), expected);
        Push(IDCANCEL);
    });
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(DeviceFinder, OnlyPostsInTheCallback) {
    Run("", [&] {
        sink.Take();
        sdk.ClearCalls();
        const auto waits = [&](UINT message) {
            MSG waiting{};
            return PeekMessage(&waiting, dialog, message, message, PM_NOREMOVE) != FALSE;
        };
        EXPECT_EQ(sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery"), 1u);
        EXPECT_TRUE(waits(WM_APP + 2));
        EXPECT_FALSE(waits(WM_APP + 1));
        EXPECT_EQ(sdk.Fire(PXN_SYSTEM_HANDLE, "EventInterfaceDiscovery"), 1u);
        EXPECT_TRUE(waits(WM_APP + 1));
        EXPECT_EQ(sink.Take(), Texts{});
        EXPECT_EQ(sdk.TakeCalls(), Texts{});
        host.Pump();
        EXPECT_EQ(sink.Take().size(), 8u);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, WorksWithoutALog) {
    CKVNPyxenDeviceFinderDialog finder(api, nullptr, nullptr);
    const WhenShown shown(L"Device Finder", [&](HWND window) {
        list = GetDlgItem(window, 7000);
        Unplug("left");
        EXPECT_EQ(RowCount(list), 2);
        Discover("EventInterfaceDiscovery");
        SendMessage(window, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(finder.DoModal(), IDCANCEL);
}

TEST_F(DeviceFinder, WorksWhenTheSdkTakesNoRegistration) {
    sdk.FailAlways("PxnFeatureInvalidationRegister", PxnErrInternalFault);
    EXPECT_EQ(Run("ext-middle",
                  [&] {
                      EXPECT_EQ(RowCount(list), 3);
                      EXPECT_EQ(sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery"), 0u);
                      host.Press(VK_RETURN);
                  }),
              IDOK);
    EXPECT_EQ(chosen, "ext-middle");
}

TEST_F(DeviceFinder, SurvivesEveryCallThatFails) {
    sdk.ClearCalls();
    const auto run = [&] {
        return Run("ext-middle", [&] {
            sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
            host.Pump();
            host.Press(VK_RETURN);
        });
    };
    EXPECT_EQ(run(), IDOK);
    const auto count = static_cast<unsigned>(sdk.TakeCalls().size());
    ASSERT_EQ(count, 46u);
    for (unsigned nth = 1; nth <= count; ++nth) {
        sdk.Fail("", PxnErrIO, nth);
        EXPECT_EQ(run(), IDOK) << nth;
        EXPECT_EQ(chosen, "ext-middle") << nth;
        sdk.ClearFailures();
        // What could not be unregistered now calls for a window that is gone.
        sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery");
        sdk.Fire(PXN_SYSTEM_HANDLE, "EventInterfaceDiscovery");
    }
    EXPECT_EQ(run(), IDOK);
}

// ---- beside another grabber's ----

TEST_F(DeviceFinder, FollowsEventsBesideAnotherOne) {
    CPyxenAPIAccess otherApi;
    ASSERT_TRUE(otherApi.Load(nullptr, nullptr));
    for (const bool firstGoes : {true, false}) {
        CKVNPyxenDeviceFinderDialog first(api, nullptr, &host.Frame());
        CKVNPyxenDeviceFinderDialog second(otherApi, nullptr, &host.Frame());
        ASSERT_TRUE(first.Create(IDD_DEVICE_FINDER, &host.Frame()));
        ASSERT_TRUE(second.Create(IDD_DEVICE_FINDER, &host.Frame()));
        const auto plug = [&](const std::string& name) {
            sdk.Edit(
                [&](scripted::Model& model) { model.cameras.push_back(Camera(name, name, 3)); });
            EXPECT_GE(sdk.Fire(PXN_SYSTEM_HANDLE, "EventCameraDiscovery"), 1u);
            host.Pump();
        };
        const int before = RowCount(::GetDlgItem(first, 7000));
        for (int round = 1; round <= 3; ++round) {
            plug((firstGoes ? "one" : "other") + std::to_string(round));
            EXPECT_EQ(RowCount(::GetDlgItem(first, 7000)), before + round);
            EXPECT_EQ(RowCount(::GetDlgItem(second, 7000)), before + round);
        }
        (firstGoes ? first : second).DestroyWindow();
        plug(firstGoes ? "last" : "very last");
        EXPECT_EQ(RowCount(::GetDlgItem(firstGoes ? second : first, 7000)), before + 4);
        second.DestroyWindow();
        first.DestroyWindow();
    }
    EXPECT_TRUE(sdk.Registrations().empty());
}

// ---- cameras that come and go ----

TEST_F(DeviceFinder, ShowsACameraThatIsPluggedIn) {
    Run("ext-right", [&] {
        sink.Take();
        Plug(Camera("fourth", "Fourth", 3));
        EXPECT_EQ(Names(), (Row{L"Left", L"Middle", L"Right", L"Fourth"}));
        EXPECT_EQ(DataOf(list, 3), 3);
        EXPECT_EQ(SelectedRow(list), 2);
        EXPECT_EQ(sink.Take(), (Texts{kCameraEvent, State("Left", "Full Read "),
                                      State("Middle", " Read "), State("Right", "  Unknown"),
                                      New("Fourth", "ext-fourth"), State("Fourth", "Full Read ")}));
        SaveScreenshot(dialog, "finder-fourth-plugged-in");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, RemovesTheMiddleOneAndKeepsTheOthersIdentifiers) {
    Run("ext-right", [&] {
        Plug(Camera("fourth", "Fourth", 3));
        sink.Take();
        Unplug("middle");
        EXPECT_EQ(Names(), (Row{L"Left", L"Right", L"Fourth"}));
        for (int row = 0; row < 3; ++row) {
            EXPECT_EQ(DataOf(list, row), row);
        }
        EXPECT_EQ(sink.Take(),
                  (Texts{kCameraEvent, State("Left", "Full Read "), State("Right", "  Unknown"),
                         State("Fourth", "Full Read "), Removed("ext-middle")}));
        EXPECT_EQ(Selected(), "ext-right");
        EXPECT_EQ(SelectedRow(list), 1);
        SaveScreenshot(dialog, "finder-middle-removed");
        const char* const ids[] = {"ext-left", "ext-right", "ext-fourth"};
        for (int row = 0; row < 3; ++row) {
            ClickRow(row);
            EXPECT_EQ(Selected(), ids[row]);
        }
        Plug(Camera("middle", "Middle", 3));
        EXPECT_EQ(Names(), (Row{L"Left", L"Right", L"Fourth", L"Middle"}));
        EXPECT_EQ(DataOf(list, 3), 3);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, RemovesSeveralAtOnceInTheirOrder) {
    Run("", [&] {
        Plug(Camera("fourth", "Fourth", 3));
        sink.Take();
        sdk.Edit([](scripted::Model& model) {
            std::erase_if(model.cameras,
                          [](const scripted::Camera& camera) { return camera.id != "right"; });
        });
        Discover();
        EXPECT_EQ(Names(), (Row{L"Right"}));
        EXPECT_EQ(sink.Take(),
                  (Texts{kCameraEvent, State("Right", "  Unknown"), Removed("ext-left"),
                         Removed("ext-middle"), Removed("ext-fourth")}));
        ClickRow(0);
        EXPECT_EQ(Selected(), "ext-right");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, TakesACameraOfAnotherIdentifierForAnotherOne) {
    sdk.Data().cameras[0].extendedId = "ext";
    Run("", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0].extendedId = "ext-"; });
        sink.Take();
        Discover();
        EXPECT_EQ(Names(), (Row{L"Middle", L"Right", L"Left"}));
        const Texts lines = sink.Take();
        EXPECT_EQ(lines[1], New("Left", "ext-"));
        EXPECT_EQ(lines.back(), Removed("ext"));
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, KnowsCamerasByTheirExtendedIdentifier) {
    sdk.Data().cameras[1].id = "left"; // the plain identifier is another's
    Run("left", [&] {
        EXPECT_EQ(RowCount(list), 3);
        EXPECT_EQ(SelectedRow(list), -1);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, UpdatesTheRowOfAListedCamera) {
    Run("", [&] {
        sdk.Edit([](scripted::Model& model) {
            model.cameras[1].name = "Renamed";
            model.cameras[1].serial = "SN-2";
        });
        Discover();
        EXPECT_EQ(RowOf(list, 1),
                  (Row{L"Renamed", L"SN-2", L"if-eth0", L"GigE Vision", L"Korvane"}));
        EXPECT_EQ(RowCount(list), 3);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, EmptiesItselfWhenTheCamerasCannotBeListed) {
    Run("ext-left", [&] {
        sdk.FailAlways("PxnCamerasList", PxnErrIO);
        Discover();
        EXPECT_EQ(RowCount(list), 0);
        EXPECT_EQ(Selected(), "ext-left");
        SaveScreenshot(dialog, "finder-no-cameras");
        sdk.ClearFailures();
        Discover();
        EXPECT_EQ(RowCount(list), 3);
        EXPECT_EQ(SelectedRow(list), 0);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, StartsEmptyWithoutCameras) {
    sdk.Data().cameras.clear();
    Run("ext-left", [&] {
        EXPECT_EQ(RowCount(list), 0);
        host.Press(VK_RETURN);
    });
    EXPECT_EQ(chosen, "ext-left");
}

TEST_F(DeviceFinder, StartsEmptyWithoutTheSdk) {
    api.Unload();
    sdk.ClearCalls();
    EXPECT_EQ(Run("ext-left",
                  [&] {
                      EXPECT_EQ(RowCount(list), 0);
                      host.Press(VK_RETURN);
                  }),
              IDOK);
    EXPECT_EQ(sdk.Calls(), Texts{});
    EXPECT_EQ(chosen, "ext-left");
}

// ---- selecting ----

TEST_F(DeviceFinder, SelectsTheConfiguredCamera) {
    Run("ext-middle", [&] {
        EXPECT_EQ(SelectedRow(list), 1);
        EXPECT_EQ(Selected(), "ext-middle");
        SaveScreenshot(dialog, "finder-preselected");
        Push(IDCANCEL);
    });
    Run("ext-absent", [&] {
        EXPECT_EQ(SelectedRow(list), -1);
        EXPECT_EQ(Selected(), "ext-absent");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, SelectsTheConfiguredCameraWhenItComes) {
    Run("ext-fourth", [&] {
        Plug(Camera("fourth", "Fourth", 3));
        EXPECT_EQ(SelectedRow(list), 3);
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, RemembersTheSelectedCameraEvenWhenItGoes) {
    Run("", [&] {
        ClickRow(1);
        EXPECT_EQ(Selected(), "ext-middle");
        Unplug("middle");
        EXPECT_EQ(Selected(), "ext-middle");
        EXPECT_EQ(SelectedRow(list), -1);
        Push(IDOK);
    });
    EXPECT_EQ(chosen, "ext-middle");
}

TEST_F(DeviceFinder, FollowsTheArrowKeys) {
    Run("ext-left", [&] {
        host.Press(VK_DOWN);
        EXPECT_EQ(Selected(), "ext-middle");
        host.Press(VK_END);
        EXPECT_EQ(Selected(), "ext-right");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, LeavesTheSpaceKeyToTheList) {
    Run("", [&] {
        ListView_SetItemState(list, 2, LVIS_FOCUSED, LVIS_FOCUSED);
        host.Press(VK_SPACE);
        EXPECT_TRUE(IsOpen());
        EXPECT_EQ(Selected(), "ext-right");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, KeepsTheSelectionWhenTheClickMissesTheRows) {
    Run("ext-left", [&] {
        const CRect last = RectOf(list, 2);
        host.Click(list, 30, last.bottom + 40);
        EXPECT_EQ(SelectedRow(list), -1);
        EXPECT_EQ(Selected(), "ext-left");
        Push(IDCANCEL);
    });
}

} // namespace
