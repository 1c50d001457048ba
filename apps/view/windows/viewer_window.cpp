// viewer_window.cpp - the viewer's main window
#include "apps/view/windows/viewer_window.h"

#include "apps/common/command_failure.h"
#include "apps/view/view_text.h"
#include "apps/view/windows/display_scale.h"
#include "apps/view/windows/resource.h"
#include "apps/view/windows/save_dialog.h"
#include "apps/view/windows/utf8_text.h"
#include "mivora/dialog_messages.h"

#include <afxcmn.h>

#include <algorithm>
#include <utility>

namespace {

constexpr const wchar_t* kTitle = L"Mivora View";
constexpr const wchar_t* kClass = L"MivoraViewWindow";
constexpr UINT kNewPicture = WM_APP + 1;
constexpr UINT kControlNews = WM_APP + 2;
constexpr UINT kCamerasChanged = WM_APP + 3;
constexpr UINT_PTR kCountTimer = 1;
constexpr UINT kCountMs = 250;
constexpr UINT kImageId = 1;
constexpr UINT kHistogramId = 2;
constexpr UINT kStatusId = 3;

// The widest text expected in each part of the status line; the first part takes the remaining
// space.
constexpr const wchar_t* kWidest[kStatusParts] = {L"Camera with a name: live",
                                                  L"(8888, 8888)  R 888  G 888  B 888",
                                                  L"8888 x 8888  Bayer  88 bit",
                                                  L"Fit (88.8 %)",
                                                  L"88888888 frames",
                                                  L"8888.8 frames/s",
                                                  L"88888 errors"};

std::string StageText(const ViewState& state) {
    switch (state.stage) {
    case ViewStage::kStarting:
        return "Starting";
    case ViewStage::kFailed:
        return "The grabber cannot be used";
    case ViewStage::kNoCamera:
        return "No camera; looking for one";
    case ViewStage::kWaiting:
        return "Waiting for " + (state.camera.empty() ? "the camera" : state.camera);
    case ViewStage::kOpen:
        return state.camera + ": stopped";
    case ViewStage::kSnapping:
        return state.camera + ": snapping";
    case ViewStage::kLive:
        return state.camera + ": live";
    }
    return {};
}

} // namespace

BEGIN_MESSAGE_MAP(CViewerWindow, CWnd)
ON_WM_SIZE()
ON_WM_GETMINMAXINFO()
ON_WM_SETFOCUS()
ON_WM_TIMER()
ON_WM_CLOSE()
ON_WM_DESTROY()
ON_MESSAGE(WM_INITMENUPOPUP, &CViewerWindow::OnInitMenuPopup)
ON_MESSAGE(kNewPicture, &CViewerWindow::OnNewPicture)
ON_MESSAGE(kControlNews, &CViewerWindow::OnControlNews)
ON_MESSAGE(kCamerasChanged, &CViewerWindow::OnCamerasChanged)
ON_COMMAND_RANGE(ID_COMMAND_FIRST, ID_COMMAND_LAST, &CViewerWindow::OnMenuCommand)
END_MESSAGE_MAP()

CViewerWindow::CViewerWindow()
    : keys(::LoadAccelerators(AfxGetResourceHandle(), MAKEINTRESOURCE(IDR_VIEW_KEYS))) {}

CViewerWindow::~CViewerWindow() {
    CWnd::DestroyWindow();
}

// Creation and destruction

BOOL CViewerWindow::PreCreateWindow(CREATESTRUCT& create) {
    WNDCLASS windowClass = {};
    windowClass.lpfnWndProc = ::DefWindowProc;
    windowClass.hInstance = AfxGetInstanceHandle();
    windowClass.hIcon = ::LoadIcon(AfxGetResourceHandle(), MAKEINTRESOURCE(IDI_VIEW));
    windowClass.hCursor = ::LoadCursor(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kClass;
    ::RegisterClass(&windowClass); // fails harmlessly if already registered
    create.lpszClass = kClass;
    create.hMenu = ::LoadMenu(AfxGetResourceHandle(), MAKEINTRESOURCE(IDR_VIEW_MENU));
    return CWnd::PreCreateWindow(create);
}

bool CViewerWindow::Open(const AppOptions& options, IGrabberMaker& maker, int show) {
    if (!CreateEx(0, nullptr, kTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                  CW_USEDEFAULT, ScaledToDisplay(1000), ScaledToDisplay(700), nullptr, nullptr)) {
        return false;
    }
    imageView.Make(*this, kImageId, *this);
    histogramView.Make(*this, kHistogramId);
    statusLine.Create(STATUSCLASSNAME, L"", WS_VISIBLE | SBARS_SIZEGRIP, CRect(0, 0, 0, 0), this,
                      kStatusId);
    statusLine.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(DisplayFont()));
    Arrange();
    ShowWindow(show);
    UpdateWindow();
    try {
        pipe = std::make_unique<FramePipe>([this] { OnPicture(); });
        control = std::make_unique<CameraControl>(options, maker, *pipe, *this);
        script = std::make_unique<CScriptDialog>(*control);
        control->Grabber().InstCamCfgChangeMsgWnd(m_hWnd, kCamerasChanged);
        control->Run();
    } catch (const CommandFailure& failure) {
        exitStatus = 1;
        ReportFailure(failure.what());
        return false;
    }
    ShowState();
    SetTimer(kCountTimer, kCountMs, nullptr);
    return true;
}

bool CViewerWindow::OfferMessage(MSG& message) {
    if (control && OfferMessageToDialogs(control->Grabber(), message)) {
        return true;
    }
    if (script && script->m_hWnd && ::IsDialogMessage(script->m_hWnd, &message)) {
        return true;
    }
    return m_hWnd && ::TranslateAccelerator(m_hWnd, keys, &message);
}

void CViewerWindow::OnClose() {
    if (!control || control->HasEnded()) {
        DestroyWindow();
        return;
    }
    if (!isClosing) {
        isClosing = true;
        ShowWindow(SW_HIDE);
        control->End();
    }
}

void CViewerWindow::OnDestroy() {
    KillTimer(kCountTimer);
    script.reset();
    if (control) {
        control->Grabber().InstCamCfgChangeMsgWnd(nullptr, 0);
    }
    control.reset();
    pipe.reset();
    ::PostQuitMessage(exitStatus);
}

// Messages from other threads

void CViewerWindow::OnControlChanged() {
    ::PostMessage(m_hWnd, kControlNews, 0, 0);
}

void CViewerWindow::OnPicture() {
    // Only one message is pending at a time: a slow window skips to the newest picture.
    if (!isPicturePosted.exchange(true)) {
        ::PostMessage(m_hWnd, kNewPicture, 0, 0);
    }
}

LRESULT CViewerWindow::OnNewPicture(WPARAM, LPARAM) {
    isPicturePosted = false;
    if (pipe) {
        imageView.Show(pipe->Newest());
        if (showsHistogram) {
            histogramView.Show(imageView.Shown());
        }
        OnViewChanged();
    }
    return 0;
}

LRESULT CViewerWindow::OnControlNews(WPARAM, LPARAM) {
    if (!control) {
        return 0;
    }
    control->ServeWindowThread();
    if (isClosing) {
        if (control->HasEnded()) {
            DestroyWindow();
        }
        return 0;
    }
    ShowState();
    ShowFailures();
    return 0;
}

LRESULT CViewerWindow::OnCamerasChanged(WPARAM, LPARAM) {
    if (control) {
        control->CamerasChanged();
    }
    return 0;
}

void CViewerWindow::OnTimer(UINT_PTR id) {
    if (id == kCountTimer) {
        ShowCounts();
    } else {
        CWnd::OnTimer(id);
    }
}

// Display

void CViewerWindow::OnSize(UINT, int, int) {
    Arrange();
}

void CViewerWindow::OnGetMinMaxInfo(MINMAXINFO* info) {
    info->ptMinTrackSize = {ScaledToDisplay(860), ScaledToDisplay(420)};
}

void CViewerWindow::OnSetFocus(CWnd*) {
    imageView.SetFocus();
}

void CViewerWindow::Arrange() {
    if (!statusLine.m_hWnd) {
        return;
    }
    statusLine.SendMessage(WM_SIZE);
    CRect client;
    GetClientRect(&client);
    CRect status;
    statusLine.GetWindowRect(&status);
    const int bottom = client.bottom - (status.bottom - status.top);
    const int histogramWidth = showsHistogram ? CHistogramView::Width() : 0;
    const int right = std::max(0, static_cast<int>(client.right) - histogramWidth);
    imageView.MoveWindow(0, 0, right, std::max(0, bottom));
    histogramView.MoveWindow(right, 0, histogramWidth, std::max(0, bottom));
    histogramView.ShowWindow(showsHistogram ? SW_SHOWNA : SW_HIDE);

    CClientDC dc(&statusLine);
    const int saved = dc.SaveDC();
    dc.SelectObject(CFont::FromHandle(DisplayFont()));
    // The last part keeps clear of the size grip.
    int edge = client.right - ::GetSystemMetrics(SM_CXVSCROLL);
    int edges[kStatusParts];
    for (int part = kStatusParts - 1; part >= 0; --part) {
        edges[part] = edge;
        const std::wstring widest = kWidest[part];
        edge -=
            static_cast<int>(dc.GetTextExtent(widest.c_str(), static_cast<int>(widest.size())).cx) +
            ScaledToDisplay(10);
    }
    dc.RestoreDC(saved);
    edges[kStatusErrors] = -1;
    statusLine.SendMessage(SB_SETPARTS, kStatusParts, reinterpret_cast<LPARAM>(edges));
}

std::wstring CViewerWindow::StatusText(ViewerStatus part) const {
    const auto length = LOWORD(::SendMessage(statusLine.m_hWnd, SB_GETTEXTLENGTH, part, 0));
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    ::SendMessage(statusLine.m_hWnd, SB_GETTEXT, part, reinterpret_cast<LPARAM>(text.data()));
    text.resize(length);
    return text;
}

void CViewerWindow::SetStatus(ViewerStatus part, const std::wstring& text) {
    if (StatusText(part) != text) { // avoids flicker
        statusLine.SendMessage(SB_SETTEXT, part, reinterpret_cast<LPARAM>(text.c_str()));
    }
}

void CViewerWindow::OnViewChanged() {
    std::wstring pixel;
    std::wstring format;
    std::wstring zoom;
    if (const auto& shown = imageView.Shown()) {
        const GrabbedFrame& frame = *shown->frame;
        std::uint32_t x = 0;
        std::uint32_t y = 0;
        if (imageView.PointedPixel(x, y)) {
            pixel = ToWide(PixelText(frame.layout, frame.bytes.data(), x, y));
        }
        format = ToWide(FormatText(frame.layout));
        zoom = ToWide(ZoomText(imageView.Geometry().Factor(), imageView.Geometry().IsFit()));
    }
    SetStatus(kStatusPixel, pixel);
    SetStatus(kStatusFormat, format);
    SetStatus(kStatusZoom, zoom);
}

void CViewerWindow::ShowCounts() {
    if (control) {
        SetStatus(kStatusFrames, ToWide(FrameCountText(pipe->Frames())));
        SetStatus(kStatusRate, ToWide(RateText(pipe->Rate())));
        SetStatus(kStatusErrors, ToWide(ErrorCountText(control->ReceiveErrors())));
    }
}

void CViewerWindow::ShowState() {
    const ViewState state = control->State();
    SetStatus(kStatusCamera, ToWide(StageText(state)));
    const std::wstring title =
        state.camera.empty() ? kTitle : ToWide(state.camera) + L" - " + kTitle;
    std::wstring before(static_cast<std::size_t>(GetWindowTextLength()) + 1, L'\0');
    before.resize(
        static_cast<std::size_t>(GetWindowText(before.data(), static_cast<int>(before.size()))));
    if (before != title) {
        SetWindowText(title.c_str());
    }
    ShowCounts();
}

void CViewerWindow::ReportFailure(const std::string& text) {
    MessageBox(ToWideLines(text).c_str(), kTitle, MB_OK | MB_ICONERROR);
}

void CViewerWindow::ShowFailures() {
    if (isReporting) {
        return; // reported once the open box is closed
    }
    isReporting = true;
    for (auto failures = control->TakeFailures(); !failures.empty();
         failures = control->TakeFailures()) {
        for (const std::string& failure : failures) {
            ReportFailure(failure);
        }
    }
    isReporting = false;
    if (control->State().stage == ViewStage::kFailed) {
        exitStatus = 1;
        PostMessage(WM_CLOSE);
    }
}

// Commands

bool CViewerWindow::IsEnabled(UINT id) const {
    const ViewStage stage = control->State().stage;
    const bool isUsable = stage != ViewStage::kStarting && stage != ViewStage::kFailed;
    const bool isOpen =
        stage == ViewStage::kOpen || stage == ViewStage::kSnapping || stage == ViewStage::kLive;
    switch (id) {
    case ID_FILE_SAVE_IMAGE:
        return imageView.Shown() != nullptr;
    case ID_FILE_SAVE_CONFIG:
    case ID_CAMERA_SELECT:
    case ID_CAMERA_GRABBER:
        return isUsable;
    case ID_CAMERA_CONTROL:
    case ID_CAMERA_CHANNEL:
        return isOpen;
    case ID_IMAGES_START:
    case ID_IMAGES_SNAP:
        return stage == ViewStage::kOpen;
    case ID_IMAGES_STOP:
        return stage == ViewStage::kLive || stage == ViewStage::kSnapping;
    default:
        return true;
    }
}

LRESULT CViewerWindow::OnInitMenuPopup(WPARAM menu, LPARAM) {
    const HMENU popup = reinterpret_cast<HMENU>(menu);
    if (!control) {
        return 0;
    }
    for (int i = 0; i < ::GetMenuItemCount(popup); ++i) {
        const UINT id = ::GetMenuItemID(popup, i);
        if (id >= ID_COMMAND_FIRST && id <= ID_COMMAND_LAST) {
            ::EnableMenuItem(popup, id, IsEnabled(id) ? MF_ENABLED : MF_GRAYED);
        }
    }
    const ViewGeometry& geometry = imageView.Geometry();
    const auto check = [popup](UINT id, bool isOn) {
        ::CheckMenuItem(popup, id, isOn ? MF_CHECKED : MF_UNCHECKED);
    };
    check(ID_VIEW_FIT, geometry.IsFit());
    check(ID_VIEW_ONE_TO_ONE, !geometry.IsFit() && geometry.Factor() == 1);
    check(ID_VIEW_HISTOGRAM, showsHistogram);
    return 0;
}

void CViewerWindow::OnMenuCommand(UINT id) {
    if (!control || isClosing || !IsEnabled(id)) {
        return; // an accelerator may arrive while its menu item is disabled
    }
    switch (id) {
    case ID_FILE_SAVE_IMAGE:
        SaveImage();
        break;
    case ID_FILE_SAVE_CONFIG:
        control->SaveConfiguration();
        break;
    case ID_FILE_EXIT:
        PostMessage(WM_CLOSE);
        break;
    case ID_CAMERA_SELECT:
        control->SelectCamera(m_hWnd);
        break;
    case ID_CAMERA_CONTROL:
        control->ShowCameraControl(m_hWnd);
        break;
    case ID_CAMERA_GRABBER:
        control->ConfigureGrabber(m_hWnd);
        break;
    case ID_CAMERA_CHANNEL:
        control->ConfigureChannel(m_hWnd);
        break;
    case ID_IMAGES_START:
        control->Start();
        break;
    case ID_IMAGES_STOP:
        control->Stop();
        break;
    case ID_IMAGES_SNAP:
        control->Snap();
        break;
    case ID_VIEW_FIT:
        imageView.Fit();
        break;
    case ID_VIEW_ONE_TO_ONE:
        imageView.OneToOne();
        break;
    case ID_VIEW_ZOOM_IN:
        imageView.Step(1);
        break;
    case ID_VIEW_ZOOM_OUT:
        imageView.Step(-1);
        break;
    case ID_VIEW_HISTOGRAM:
        showsHistogram = !showsHistogram;
        histogramView.Show(imageView.Shown());
        Arrange();
        break;
    case ID_TOOLS_SCRIPT:
        script->Open(*this);
        break;
    case ID_HELP_ABOUT:
        ShowAbout();
        break;
    default:
        break;
    }
}

void CViewerWindow::SaveImage() {
    // The image as of the request; live images go on during the dialog.
    const std::shared_ptr<const ShownFrame> shown = imageView.Shown();
    const std::string path = AskForImageFile(*this);
    if (!path.empty()) {
        control->SaveImage(shown->frame, path);
    }
}

void CViewerWindow::ShowAbout() {
    std::string text = "Mivora View 1.0.0\n\nLive images from the cameras of a Mivora grabber.";
    const std::string driver = control->State().driver;
    if (!driver.empty()) {
        text += "\n\n" + driver;
    }
    MessageBox(ToWideLines(text).c_str(), L"About Mivora View", MB_OK | MB_ICONINFORMATION);
}
