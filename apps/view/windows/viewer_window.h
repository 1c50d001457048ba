// viewer_window.h - the viewer's main window
#pragma once

#include "apps/view/camera_control.h"
#include "apps/view/frame_pipe.h"
#include "apps/view/windows/histogram_view.h"
#include "apps/view/windows/image_view.h"
#include "apps/view/windows/script_dialog.h"

#include <afxwin.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>

/// Parts of the status line.
enum ViewerStatus : int {
    kStatusCamera,
    kStatusPixel,
    kStatusFormat,
    kStatusZoom,
    kStatusFrames,
    kStatusRate,
    kStatusErrors,
    kStatusParts,
};

/// Shows a camera's live images, with menus for the grabber's operations. The window's thread never
/// waits for the camera, except while it runs one of the grabber's dialogs.
class CViewerWindow : public CWnd, public IControlListener, public CImageView::IObserver {
public:
    CViewerWindow();
    ~CViewerWindow() override;

    /// Creates the window, loads the grabber module and starts the camera. Shows failures in a
    /// message box and returns false.
    bool Open(const AppOptions& options, IGrabberMaker& maker, int show);
    /// Offers a message to the dialogs and to this window's accelerators; true if it was handled.
    bool OfferMessage(MSG& message);
    /// The program's exit status, once the window is closed.
    int ExitStatus() const { return exitStatus; }

    std::wstring StatusText(ViewerStatus part) const;
    CImageView& ImageView() { return imageView; }

protected:
    BOOL PreCreateWindow(CREATESTRUCT& create) override;
    void OnSize(UINT kind, int width, int height);
    void OnGetMinMaxInfo(MINMAXINFO* info);
    void OnSetFocus(CWnd* before);
    void OnTimer(UINT_PTR id);
    void OnClose();
    void OnDestroy();
    LRESULT OnInitMenuPopup(WPARAM menu, LPARAM);
    LRESULT OnNewPicture(WPARAM, LPARAM);
    LRESULT OnControlNews(WPARAM, LPARAM);
    LRESULT OnCamerasChanged(WPARAM, LPARAM);
    void OnMenuCommand(UINT id);
    DECLARE_MESSAGE_MAP()

private:
    // Called on other threads.
    void OnControlChanged() override;
    void OnPicture();

    void OnViewChanged() override;

    bool IsEnabled(UINT id) const;
    void Arrange();
    void SetStatus(ViewerStatus part, const std::wstring& text);
    void ShowCounts();
    void ShowState();
    void ShowFailures();
    void SaveImage();
    void ShowAbout();
    void ReportFailure(const std::string& text);

    CImageView imageView;
    CHistogramView histogramView;
    CWnd statusLine;
    HACCEL keys = nullptr;
    bool showsHistogram = false;
    bool isClosing = false;
    bool isReporting = false; // a message box for failures is open
    int exitStatus = 0;
    std::atomic<bool> isPicturePosted{false};

    std::unique_ptr<FramePipe> pipe;
    std::unique_ptr<CameraControl> control;
    std::unique_ptr<CScriptDialog> script;
};
