// histogram_view.h - the pane that shows the brightness histogram
#pragma once

#include "apps/view/frame_pipe.h"

#include <afxwin.h>

#include <memory>

/// One plot for grey, or three for red, green and blue, each with minimum, maximum and mean. One
/// thread.
class CHistogramView : public CView {
public:
    bool Make(CWnd& parent, UINT id);
    void Show(std::shared_ptr<const ShownFrame> shownFrame);
    /// The width that suits the display, in pixels.
    static int Width();

protected:
    /// The owner deletes the view, not its window's end.
    void PostNcDestroy() override {}
    void OnDraw(CDC* dc) override;
    BOOL OnEraseBkgnd(CDC*) { return TRUE; }
    DECLARE_MESSAGE_MAP()

private:
    void Draw(CDC& dc, const CRect& area) const;

    std::shared_ptr<const ShownFrame> shown;
};
