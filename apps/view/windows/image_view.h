// image_view.h - the pane that shows the image
#pragma once

#include "apps/view/frame_pipe.h"
#include "apps/view/view_geometry.h"

#include <afxwin.h>

#include <memory>

/// Shows a picture with zoom and pan: the wheel zooms at the pointer, dragging and the arrow keys
/// pan. One thread.
class CImageView : public CView {
public:
    class IObserver {
    public:
        virtual ~IObserver() = default;
        /// The pointer moved or left the image, or the visible part or zoom changed.
        virtual void OnViewChanged() = 0;
    };

    /// Creates the pane; `viewObserver` must outlive it.
    bool Make(CWnd& parent, UINT id, IObserver& viewObserver);

    void Show(std::shared_ptr<const ShownFrame> shownFrame);
    const std::shared_ptr<const ShownFrame>& Shown() const { return shown; }

    void Fit();
    void OneToOne();
    void Step(int steps);
    const ViewGeometry& Geometry() const { return geometry; }
    /// The image pixel under the pointer; false if the pointer is outside the image.
    bool PointedPixel(std::uint32_t& x, std::uint32_t& y) const;

protected:
    /// The owner deletes the view, not its window's end.
    void PostNcDestroy() override {}
    void OnDraw(CDC* dc) override;
    BOOL OnEraseBkgnd(CDC*) { return TRUE; }
    void OnSize(UINT kind, int width, int height);
    void OnLButtonDown(UINT keys, CPoint point);
    void OnLButtonUp(UINT keys, CPoint point);
    BOOL OnMouseWheel(UINT keys, short delta, CPoint point);
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    LRESULT OnMouseMove(WPARAM keys, LPARAM position);
    LRESULT OnMouseLeave(WPARAM, LPARAM);
    DECLARE_MESSAGE_MAP()

private:
    void DrawImage(CDC& dc, const VisiblePart& part) const;
    void Changed();

    IObserver* observer = nullptr;
    std::shared_ptr<const ShownFrame> shown;
    ViewGeometry geometry;
    bool isDragging = false;
    bool isPointed = false;
    CPoint pointer = {0, 0};
    int wheel = 0; ///< wheel movement that has not yet made a notch
};
