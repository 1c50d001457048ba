// viewer_fixture.cpp - runs the viewer on virtual cameras
#include "tests/apps/view/windows/viewer_fixture.h"

#include "apps/view/windows/resource.h"
#include "tests/support/wait_until.h"

#include <vector>

namespace {

constexpr unsigned kPatienceMs = 60000;

std::string CameraXml(const std::string& name, const std::string& format,
                      const std::string& pattern) {
    return "  <camera kind=\"gige\" id=\"" + name + "\" extendedId=\"test|" + name + "\" model=\"" +
           name + "\" pattern=\"" + pattern +
           "\">\n"
           "    <feature name=\"Width\" value=\"320\"/>\n"
           "    <feature name=\"Height\" value=\"240\"/>\n"
           "    <feature name=\"PixelFormat\" value=\"" +
           format +
           "\"/>\n"
           "    <feature name=\"AcquisitionFrameRate\" value=\"50\"/>\n"
           "  </camera>\n";
}

} // namespace

ViewerTest::ViewerTest() {
    options.configFile = directory.Write("mivora.ini", "[Grabber_0]\n");
    directory.Write("PxnC.xml", "<PxnC>\n" + CameraXml("Mono", "Mono8", "chart") +
                                    CameraXml("Bayer", "BayerRG8", "bars") +
                                    CameraXml("Yuv", "YUV422_8", "bars") +
                                    CameraXml("Twelve", "Mono12", "gradient") + "</PxnC>\n");
    modules.SetPath(ModuleFile(options));
}

ViewerTest::~ViewerTest() {
    Close();
}

void ViewerTest::Close() {
    if (window.m_hWnd) {
        window.PostMessage(WM_CLOSE);
        PumpUntil([this] { return window.m_hWnd == nullptr; });
    }
}

void ViewerTest::OpenLive(const std::string& camera) {
    options.cameras = {camera};
    ASSERT_TRUE(window.Open(options, modules, SW_SHOW));
    SetForegroundWindow(window);
    PumpUntil([this] { return window.ImageView().Shown() != nullptr; });
    WaitForStatus(kStatusCamera, std::wstring(camera.begin(), camera.end()) + L": live");
}

void ViewerTest::Pump() {
    MSG message{};
    while (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message != WM_QUIT && !window.OfferMessage(message)) {
            TranslateMessage(&message);
            DispatchMessage(&message);
        }
    }
}

void ViewerTest::PumpUntil(const std::function<bool()>& done) {
    const ULONGLONG end = GetTickCount64() + kPatienceMs;
    Pump();
    while (!done()) {
        const ULONGLONG now = GetTickCount64();
        ASSERT_LT(now, end) << "nothing came of it";
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        Pump();
    }
}

void ViewerTest::Choose(UINT command) {
    window.PostMessage(WM_COMMAND, command);
    Pump();
}

void ViewerTest::WaitForStatus(ViewerStatus part, const std::wstring& text) {
    SCOPED_TRACE(testing::PrintToString(text));
    PumpUntil([&] { return window.StatusText(part) == text; });
}

void ViewerTest::StopLive() {
    const std::wstring camera = window.StatusText(kStatusCamera);
    Choose(ID_IMAGES_STOP);
    WaitForStatus(kStatusCamera, camera.substr(0, camera.find(L':')) + L": stopped");
    window.UpdateWindow();
}

std::string ViewerTest::TemporaryFile(const std::string& name) const {
    return directory.PathOf(name);
}

DialogDriver::DialogDriver(const std::wstring& dialogCaption, Action dialogAction)
    : caption(dialogCaption), action(std::move(dialogAction)), thread([this] { Run(); }) {}

DialogDriver::~DialogDriver() {
    thread.join();
    EXPECT_TRUE(isDone) << "no dialog " << testing::PrintToString(caption);
}

void DialogDriver::Run() {
    HWND dialog = nullptr;
    const auto isShown = [&] {
        dialog = FindWindow(MAKEINTRESOURCE(32770), caption.c_str());
        return dialog && IsWindowVisible(dialog);
    };
    if (support::WaitUntil(isShown, kPatienceMs)) {
        action(dialog);
        isDone = support::WaitUntil([&] { return !IsWindowVisible(dialog); }, kPatienceMs);
    }
}

DialogDriver::Action DialogDriver::Press(int button) {
    return [button](HWND dialog) {
        PostMessage(dialog, WM_COMMAND, static_cast<WPARAM>(button),
                    reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
    };
}

std::wstring TextOf(HWND window) {
    std::vector<wchar_t> text(static_cast<std::size_t>(GetWindowTextLength(window)) + 1);
    GetWindowText(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

std::wstring BoxText(HWND box) {
    return TextOf(GetDlgItem(box, 0xFFFF));
}
