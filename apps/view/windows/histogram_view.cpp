// histogram_view.cpp - the pane that shows the brightness histogram
#include "apps/view/windows/histogram_view.h"

#include "apps/view/windows/display_scale.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr int kPlotWidth = 256;
constexpr int kMostPlotHeight = 160;
constexpr int kMargin = 8;
constexpr COLORREF kPlotBackground = RGB(32, 32, 32);
constexpr COLORREF kGrey = RGB(208, 208, 208);
constexpr COLORREF kColours[] = {RGB(240, 80, 80), RGB(80, 210, 80), RGB(96, 144, 255)};
constexpr const wchar_t* kNames[] = {L"Red", L"Green", L"Blue"};

void DrawPlot(CDC& dc, const CRect& rect, const ChannelHistogram& histogram, COLORREF colour) {
    dc.FillSolidRect(&rect, kPlotBackground);
    const int width = rect.right - rect.left;
    const HistogramBars bars(histogram, rect.bottom - rect.top);
    constexpr int kBins = static_cast<int>(ChannelHistogram::kBins);
    for (int bin = 0; bin < kBins; ++bin) {
        const CRect column(rect.left + bin * width / kBins,
                           rect.bottom - bars.Height(static_cast<std::size_t>(bin)),
                           rect.left + (bin + 1) * width / kBins, rect.bottom);
        dc.FillSolidRect(&column, colour);
    }
}

void DrawCaption(CDC& dc, CRect rect, const wchar_t* name, const ChannelHistogram& histogram) {
    wchar_t numbers[96];
    std::swprintf(numbers, std::size(numbers), L"%u to %u, mean %.1f",
                  static_cast<unsigned>(histogram.min), static_cast<unsigned>(histogram.max),
                  histogram.mean);
    dc.DrawText(name, -1, &rect, DT_SINGLELINE | DT_LEFT | DT_VCENTER);
    dc.DrawText(numbers, -1, &rect, DT_SINGLELINE | DT_RIGHT | DT_VCENTER);
}

} // namespace

BEGIN_MESSAGE_MAP(CHistogramView, CView)
ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

int CHistogramView::Width() {
    return ScaledToDisplay(kPlotWidth) + 2 * ScaledToDisplay(kMargin);
}

bool CHistogramView::Make(CWnd& parent, UINT id) {
    return Create(nullptr, L"", WS_CHILD, CRect(0, 0, 0, 0), &parent, id) != FALSE;
}

void CHistogramView::Show(std::shared_ptr<const ShownFrame> shownFrame) {
    shown = std::move(shownFrame);
    Invalidate(FALSE);
}

void CHistogramView::OnDraw(CDC* dc) {
    CRect client;
    GetClientRect(&client);
    // Drawn to a bitmap first, so that live images do not flicker.
    CDC aside;
    CBitmap bitmap;
    if (!aside.CreateCompatibleDC(dc) ||
        !bitmap.CreateCompatibleBitmap(dc, client.right, client.bottom)) {
        return;
    }
    const int saved = aside.SaveDC();
    aside.SelectObject(&bitmap);
    Draw(aside, client);
    dc->BitBlt(0, 0, client.right, client.bottom, &aside, 0, 0, SRCCOPY);
    aside.RestoreDC(saved);
}

void CHistogramView::Draw(CDC& dc, const CRect& area) const {
    dc.FillSolidRect(&area, ::GetSysColor(COLOR_BTNFACE));
    if (!shown) {
        return;
    }
    dc.SelectObject(CFont::FromHandle(DisplayFont()));
    dc.SetTextColor(::GetSysColor(COLOR_BTNTEXT));
    dc.SetBkMode(TRANSPARENT);
    const int margin = ScaledToDisplay(kMargin);
    const int textHeight = static_cast<int>(dc.GetTextExtent(L"Mg", 2).cy) + margin / 2;
    const auto count = static_cast<int>(shown->histogram.size());
    const int room = (area.bottom - margin) / std::max(1, count) - textHeight - margin;
    const int height = std::clamp(room, 0, ScaledToDisplay(kMostPlotHeight));
    int top = margin;
    for (int i = 0; i < count; ++i) {
        const ChannelHistogram& histogram = shown->histogram[static_cast<std::size_t>(i)];
        const CRect caption(margin, top, area.right - margin, top + textHeight);
        const CRect plot(margin, caption.bottom, area.right - margin, caption.bottom + height);
        DrawCaption(dc, caption, count == 1 ? L"Grey" : kNames[i], histogram);
        DrawPlot(dc, plot, histogram, count == 1 ? kGrey : kColours[i]);
        top = plot.bottom + margin;
    }
}
