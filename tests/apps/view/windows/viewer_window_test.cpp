// viewer_window_test.cpp - tests of the viewer's window
#include "apps/common/picture.h"
#include "apps/view/windows/resource.h"
#include "tests/apps/view/windows/viewer_fixture.h"
#include "tests/windows/screenshot.h"
#include "tests/windows/window_pixels.h"

#include <set>

namespace {

COLORREF ColourOf(std::uint32_t pixel) {
    return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
}

class LiveImage : public ViewerTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(LiveImage, IsOnTheScreenPixelByPixel) {
    OpenLive(GetParam());
    SaveScreenshot(window, std::string("viewer-") + GetParam());
    Choose(ID_VIEW_ONE_TO_ONE);
    StopLive();
    const ShownFrame& shown = Shown();
    const Picture picture = MakePicture(shown.frame->layout, shown.frame->bytes.data(), true);
    ASSERT_EQ(picture.width, 320u);
    ASSERT_EQ(picture.height, 240u);
    const WindowPixels screen(window.ImageView());
    const ClientRect place = window.ImageView().Geometry().Place();
    int different = 0;
    std::set<std::uint32_t> colours;
    for (int y = 0; y < 240; ++y) {
        for (int x = 0; x < 320; ++x) {
            const std::uint16_t* const sample =
                &picture.samples[static_cast<std::size_t>(y * 320 + x) * picture.channels];
            const unsigned shift = picture.bits - 8;
            const bool isGrey = picture.channels == 1;
            const COLORREF wanted = RGB(sample[0] >> shift, sample[isGrey ? 0 : 1] >> shift,
                                        sample[isGrey ? 0 : 2] >> shift);
            different += screen.At(place.left + x, place.top + y) != wanted;
            colours.insert(wanted);
        }
    }
    EXPECT_EQ(different, 0);
    EXPECT_GT(colours.size(), 1u) << "an image that shows nothing proves nothing";
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, LiveImage,
                         ::testing::Values("Mono", "Bayer", "Yuv", "Twelve"),
                         [](const auto& camera) { return std::string(camera.param); });

class Viewer : public ViewerTest {};

TEST_F(Viewer, NamesCameraFormatAndZoom) {
    OpenLive("Twelve");
    EXPECT_EQ(TextOf(window), L"Twelve - Mivora View");
    EXPECT_EQ(window.StatusText(kStatusFormat), L"320 x 240  Mono  12 bit");
    EXPECT_EQ(window.StatusText(kStatusZoom).substr(0, 5), L"Fit (");
    PumpUntil([this] { return window.StatusText(kStatusRate).substr(0, 3) != L"0.0"; });
    EXPECT_EQ(window.StatusText(kStatusErrors), L"no errors");
}

TEST_F(Viewer, CountsFramesInError) {
    OpenLive("Mono");
    std::string answer;
    ASSERT_EQ(sdk.Run("frame-random 1 50 incomplete", answer), 0) << answer;
    PumpUntil([this] {
        const std::wstring errors = window.StatusText(kStatusErrors);
        return errors != L"no errors" && errors != L"1 error" && !errors.empty();
    });
}

TEST_F(Viewer, StopsAndStarts) {
    OpenLive("Mono");
    StopLive();
    const auto stopped = window.ImageView().Shown();
    Choose(ID_IMAGES_START);
    WaitForStatus(kStatusCamera, L"Mono: live");
    PumpUntil([&] { return window.ImageView().Shown() != stopped; });
}

TEST_F(Viewer, SnapsOneImage) {
    OpenLive("Bayer");
    StopLive();
    const auto before = window.ImageView().Shown();
    Choose(ID_IMAGES_SNAP);
    PumpUntil([&] { return window.ImageView().Shown() != before; });
    WaitForStatus(kStatusFrames, L"1 frame");
    WaitForStatus(kStatusCamera, L"Bayer: stopped");
}

TEST_F(Viewer, ZoomsByMenu) {
    OpenLive("Mono");
    Choose(ID_VIEW_ONE_TO_ONE);
    WaitForStatus(kStatusZoom, L"100 %");
    Choose(ID_VIEW_ZOOM_IN);
    WaitForStatus(kStatusZoom, L"150 %");
    Choose(ID_VIEW_ZOOM_OUT);
    Choose(ID_VIEW_ZOOM_OUT);
    WaitForStatus(kStatusZoom, L"67 %");
    Choose(ID_VIEW_FIT);
    PumpUntil([this] { return window.StatusText(kStatusZoom).substr(0, 5) == L"Fit ("; });
}

TEST_F(Viewer, ZoomsByWheelAtThePointer) {
    OpenLive("Mono");
    Choose(ID_VIEW_ONE_TO_ONE);
    for (int i = 0; i < 5; ++i) {
        Choose(ID_VIEW_ZOOM_IN); // larger than the window
    }
    StopLive();
    CImageView& view = window.ImageView();
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    ASSERT_TRUE(view.Geometry().PixelAt(203, 151, x, y));
    POINT point = {203, 151};
    ClientToScreen(view, &point);
    SendMessage(view, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(point.x, point.y));
    EXPECT_EQ(window.StatusText(kStatusZoom), L"800 %");
    std::uint32_t zoomedX = 0;
    std::uint32_t zoomedY = 0;
    ASSERT_TRUE(view.Geometry().PixelAt(203, 151, zoomedX, zoomedY));
    EXPECT_EQ(zoomedX, x);
    EXPECT_EQ(zoomedY, y);
    const WindowPixels screen(view);
    EXPECT_EQ(screen.At(203, 151), ColourOf(Shown().image.pixels[y * 320 + x]));
    SaveScreenshot(window, "viewer-zoomed");
}

TEST_F(Viewer, IsMovedByDragging) {
    OpenLive("Mono");
    StopLive();
    Choose(ID_VIEW_ONE_TO_ONE);
    for (int i = 0; i < 8; ++i) {
        Choose(ID_VIEW_ZOOM_IN);
    }
    CImageView& view = window.ImageView();
    const ClientRect before = view.Geometry().Place();
    SendMessage(view, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(100, 100));
    SendMessage(view, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(90, 120));
    SendMessage(view, WM_LBUTTONUP, 0, MAKELPARAM(90, 120));
    SendMessage(view, WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
    EXPECT_EQ(view.Geometry().Place().left, before.left - 10);
    EXPECT_EQ(view.Geometry().Place().top, before.top + 20);
    SendMessage(view, WM_KEYDOWN, VK_RIGHT, 1);
    EXPECT_EQ(view.Geometry().Place().left, before.left - 42);
}

TEST_F(Viewer, ReadsThePixelUnderThePointer) {
    OpenLive("Bayer");
    StopLive();
    Choose(ID_VIEW_ONE_TO_ONE);
    CImageView& view = window.ImageView();
    const ClientRect place = view.Geometry().Place();
    SendMessage(view, WM_MOUSEMOVE, 0, MAKELPARAM(place.left + 13, place.top + 57));
    const unsigned value = Shown().frame->bytes[57 * 320 + 13];
    EXPECT_EQ(window.StatusText(kStatusPixel), L"(13, 57)  B " + std::to_wstring(value));
    SendMessage(view, WM_MOUSEMOVE, 0, MAKELPARAM(place.left - 3, place.top + 57));
    EXPECT_EQ(window.StatusText(kStatusPixel), L"");
}

TEST_F(Viewer, ShowsTheHistogram) {
    OpenLive("Bayer");
    Choose(ID_VIEW_HISTOGRAM);
    StopLive();
    SaveScreenshot(window, "viewer-histogram");
    RECT client{};
    GetClientRect(window, &client);
    RECT image{};
    GetClientRect(window.ImageView(), &image);
    EXPECT_EQ(image.right, client.right - CHistogramView::Width());
    const HWND pane = GetDlgItem(window, 2);
    ASSERT_TRUE(IsWindowVisible(pane));
    const WindowPixels pixels(pane);
    EXPECT_GT(pixels.Count({0, 0, pixels.Width(), pixels.Height()}, RGB(240, 80, 80)), 0);
    Choose(ID_VIEW_HISTOGRAM);
    EXPECT_FALSE(IsWindowVisible(pane));
}

TEST_F(Viewer, HasKeysForItsMenu) {
    OpenLive("Mono");
    SetFocus(window.ImageView());
    PostMessage(window.ImageView(), WM_KEYDOWN, VK_F6, 1);
    WaitForStatus(kStatusCamera, L"Mono: stopped");
    PostMessage(window.ImageView(), WM_KEYDOWN, VK_F5, 1);
    WaitForStatus(kStatusCamera, L"Mono: live");
}

TEST_F(Viewer, GreysWhatCannotBeDoneNow) {
    OpenLive("Mono");
    const HMENU images = GetSubMenu(GetMenu(window), 2);
    const auto isGrey = [images](UINT id) {
        return (GetMenuState(images, id, MF_BYCOMMAND) & MF_GRAYED) != 0;
    };
    SendMessage(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(images), 2);
    EXPECT_TRUE(isGrey(ID_IMAGES_START));
    EXPECT_TRUE(isGrey(ID_IMAGES_SNAP));
    EXPECT_FALSE(isGrey(ID_IMAGES_STOP));
    StopLive();
    SendMessage(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(images), 2);
    EXPECT_FALSE(isGrey(ID_IMAGES_START));
    EXPECT_FALSE(isGrey(ID_IMAGES_SNAP));
    EXPECT_TRUE(isGrey(ID_IMAGES_STOP));
}

TEST_F(Viewer, WaitsForItsCameraAndGoesOn) {
    OpenLive("Yuv");
    std::string answer;
    ASSERT_EQ(sdk.Run("unplug Yuv", answer), 0) << answer;
    WaitForStatus(kStatusCamera, L"Waiting for Yuv");
    SaveScreenshot(window, "viewer-waiting");
    const auto last = window.ImageView().Shown();
    ASSERT_EQ(sdk.Run("plug Yuv", answer), 0) << answer;
    WaitForStatus(kStatusCamera, L"Yuv: live");
    PumpUntil([&] { return window.ImageView().Shown() != last; });
}

} // namespace
