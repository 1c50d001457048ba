// The device finder's list of cameras, without its dialog.
#include "device_finder_fixture.h"

#include "ui/device_row.h"

using namespace pyxen;

namespace {

using DeviceFinderList = DeviceFinder;

/// A window with a list that tells it of what the user does.
class Listener : public CWnd {
public:
    static constexpr UINT kMessage = WM_APP + 77;

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == kMessage) {
            told.push_back(wParam);
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }

    std::vector<WPARAM> told;
};

TEST_F(DeviceFinderList, NeedsItsWindow) {
    CDeviceFinderListCtrl unborn;
    EXPECT_EQ(unborn.AddOrUpdateCamera({}, {}), -1);
    EXPECT_FALSE(unborn.RemoveCameraFromList("ext-left"));
}

TEST_F(DeviceFinderList, BringsItsColumnsInOrder) {
    CDeviceFinderListCtrl made;
    ASSERT_TRUE(
        made.Create(LVS_REPORT | WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 100), &host.Frame(), 1));
    for (int column = 0; column < 7; ++column) {
        made.InsertColumn(column, L"Old", LVCFMT_RIGHT, 33);
    }
    made.SetExtendedStyle(LVS_EX_CHECKBOXES);
    made.Initialise(&sink);
    EXPECT_EQ(made.GetHeaderCtrl()->GetItemCount(), 5);
    const int resolution = CClientDC(&made).GetDeviceCaps(LOGPIXELSX);
    EXPECT_EQ(made.GetColumnWidth(0), MulDiv(210, resolution, 96));
    EXPECT_EQ(made.GetColumnWidth(4), MulDiv(100, resolution, 96));
    EXPECT_TRUE(made.GetExtendedStyle() & LVS_EX_CHECKBOXES);
    PxnCameraInfo camera{};
    EXPECT_EQ(made.AddOrUpdateCamera(camera, {}), 0);
    camera.cameraIdExtended = "second";
    EXPECT_EQ(made.AddOrUpdateCamera(camera, {}), 1);
    EXPECT_EQ(made.AddOrUpdateCamera(camera, {}), 1);
    ASSERT_NE(made.GetCameraId(1), nullptr);
    EXPECT_EQ(*made.GetCameraId(1), "second");
    EXPECT_EQ(made.GetCameraId(2), nullptr);
    EXPECT_EQ(made.GetCameraId(-1), nullptr);
    EXPECT_FALSE(made.RemoveCameraFromList("third"));
    EXPECT_TRUE(made.RemoveCameraFromList(""));
    EXPECT_FALSE(made.RemoveCameraFromList(""));
    EXPECT_EQ(*made.GetCameraId(0), "second");
}

TEST_F(DeviceFinderList, TellsItsParentWhatTheUserWants) {
    Listener parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, L"", WS_CHILD | WS_VISIBLE, 0, 0, 400, 200,
                                host.Frame(), nullptr));
    CDeviceFinderListCtrl made;
    ASSERT_TRUE(made.Create(LVS_REPORT | WS_CHILD | WS_VISIBLE, CRect(0, 0, 400, 200), &parent, 1));
    made.Initialise(nullptr);
    EXPECT_EQ(made.AddOrUpdateCamera({}, {}), 0);
    made.SetFocus();
    const CRect rect = RectOf(made, 0);
    const auto useAll = [&] {
        host.Press(VK_SPACE);
        host.Click(made, rect.left + 10, rect.top + 5);
        EXPECT_EQ(parent.told, std::vector<WPARAM>{});
        host.DoubleClick(made, rect.left + 10, rect.top + 5);
        host.RightClick(made, rect.left + 10, rect.top + 5);
        host.Press(VK_RETURN);
    };
    useAll();
    EXPECT_EQ(parent.told, std::vector<WPARAM>{}); // nobody has asked for it
    made.SetNotification(Listener::kMessage);
    useAll();
    EXPECT_EQ(parent.told, (std::vector<WPARAM>{0, 1, 0}));
}

TEST_F(DeviceFinderList, KeepsItsImagesLongerThanItsWindow) {
    CDeviceFinderListCtrl made;
    ASSERT_TRUE(
        made.Create(LVS_REPORT | WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 100), &host.Frame(), 1));
    made.Initialise(nullptr);
    const HIMAGELIST images = ListView_GetImageList(made, LVSIL_STATE);
    made.DestroyWindow();
    EXPECT_EQ(ImageList_GetImageCount(images), 2); // the object destroys them, and only once
}

} // namespace
