// image_view.cpp - the pane that shows the image
#include "apps/view/windows/image_view.h"

#include "apps/view/windows/display_scale.h"

#include <utility>

namespace {

constexpr COLORREF kBackground = RGB(48, 48, 48);
constexpr COLORREF kText = RGB(200, 200, 200);
constexpr int kKeyStep = 32;

} // namespace

BEGIN_MESSAGE_MAP(CImageView, CView)
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_MOUSEWHEEL()
ON_WM_KEYDOWN()
ON_MESSAGE(WM_MOUSEMOVE, &CImageView::OnMouseMove)
ON_MESSAGE(WM_MOUSELEAVE, &CImageView::OnMouseLeave)
END_MESSAGE_MAP()

bool CImageView::Make(CWnd& parent, UINT id, IObserver& viewObserver) {
    observer = &viewObserver;
    return Create(nullptr, L"", WS_CHILD | WS_VISIBLE, CRect(0, 0, 0, 0), &parent, id) != FALSE;
}

void CImageView::Show(std::shared_ptr<const ShownFrame> shownFrame) {
    const ClientRect before = geometry.Place();
    shown = std::move(shownFrame);
    geometry.SetImageSize(shown ? shown->image.width : 0, shown ? shown->image.height : 0);
    if (geometry.Place() != before) {
        Changed();
    } else {
        Invalidate(FALSE);
    }
}

void CImageView::Fit() {
    geometry.Fit();
    Changed();
}

void CImageView::OneToOne() {
    geometry.SetFactor(1);
    Changed();
}

void CImageView::Step(int steps) {
    geometry.Step(steps);
    Changed();
}

bool CImageView::PointedPixel(std::uint32_t& x, std::uint32_t& y) const {
    return isPointed && geometry.PixelAt(pointer.x, pointer.y, x, y);
}

void CImageView::Changed() {
    Invalidate(FALSE);
    observer->OnViewChanged();
}

void CImageView::OnDraw(CDC* dc) {
    CRect client;
    GetClientRect(&client);
    const VisiblePart part = geometry.Visible();
    const int saved = dc->SaveDC();
    if (shown && part.image.width > 0 && part.image.height > 0) {
        DrawImage(*dc, part);
        const CRect drawn(part.client.left, part.client.top, part.client.left + part.client.width,
                          part.client.top + part.client.height);
        dc->ExcludeClipRect(&drawn);
    }
    dc->FillSolidRect(&client, kBackground);
    if (!shown) {
        dc->SelectObject(CFont::FromHandle(DisplayFont()));
        dc->SetTextColor(kText);
        dc->SetBkMode(TRANSPARENT);
        dc->DrawText(L"No image", -1, &client, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    }
    dc->RestoreDC(saved);
}

void CImageView::DrawImage(CDC& dc, const VisiblePart& part) const {
    const DisplayImage& image = shown->image;
    // Only the visible lines are passed, as an image of their own height.
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof(format.bmiHeader);
    format.bmiHeader.biWidth = static_cast<LONG>(image.width);
    format.bmiHeader.biHeight = -static_cast<LONG>(part.image.height);
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    const std::uint32_t* const pixels =
        image.pixels.data() + std::size_t{part.image.top} * image.width;
    ::SetStretchBltMode(dc, geometry.Factor() < 1 ? HALFTONE : COLORONCOLOR);
    ::SetBrushOrgEx(dc, 0, 0, nullptr);
    ::StretchDIBits(dc, part.client.left, part.client.top, part.client.width, part.client.height,
                    static_cast<int>(part.image.left), 0, static_cast<int>(part.image.width),
                    static_cast<int>(part.image.height), pixels, &format, DIB_RGB_COLORS, SRCCOPY);
}

void CImageView::OnSize(UINT, int width, int height) {
    geometry.SetClientSize(width, height);
    Changed();
}

void CImageView::OnLButtonDown(UINT, CPoint point) {
    SetFocus();
    ::SetCapture(m_hWnd);
    isDragging = true;
    pointer = point;
}

void CImageView::OnLButtonUp(UINT, CPoint) {
    if (isDragging) {
        isDragging = false;
        ::ReleaseCapture();
    }
}

LRESULT CImageView::OnMouseMove(WPARAM, LPARAM position) {
    const CPoint point(position);
    if (isDragging) {
        geometry.Pan(point.x - pointer.x, point.y - pointer.y);
        Invalidate(FALSE);
    }
    if (!isPointed) {
        TRACKMOUSEEVENT leave = {sizeof(leave), TME_LEAVE, m_hWnd, 0};
        ::TrackMouseEvent(&leave);
    }
    isPointed = true;
    pointer = point;
    observer->OnViewChanged();
    return 0;
}

LRESULT CImageView::OnMouseLeave(WPARAM, LPARAM) {
    isPointed = false;
    observer->OnViewChanged();
    return 0;
}

BOOL CImageView::OnMouseWheel(UINT, short delta, CPoint point) {
    ScreenToClient(&point);
    wheel += delta;
    const int steps = wheel / WHEEL_DELTA;
    wheel -= steps * WHEEL_DELTA;
    if (steps != 0) {
        geometry.Step(steps, point.x, point.y);
        Changed();
    }
    return TRUE;
}

void CImageView::OnKeyDown(UINT key, UINT repeat, UINT flags) {
    switch (key) {
    case VK_LEFT:
        geometry.Pan(kKeyStep, 0);
        break;
    case VK_RIGHT:
        geometry.Pan(-kKeyStep, 0);
        break;
    case VK_UP:
        geometry.Pan(0, kKeyStep);
        break;
    case VK_DOWN:
        geometry.Pan(0, -kKeyStep);
        break;
    default:
        CView::OnKeyDown(key, repeat, flags);
        return;
    }
    Changed();
}
