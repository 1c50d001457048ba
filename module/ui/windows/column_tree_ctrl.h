// column_tree_ctrl.h - the tree of a column tree view
#pragma once

#include <afxcmn.h>

/// A tree whose rows are named by their first column only: elsewhere a click selects nothing. It
/// paints without flicker and tells when other rows may have come on screen. User-interface thread
/// only.
class CColumnTreeCtrl : public CTreeCtrl {
    DECLARE_DYNAMIC(CColumnTreeCtrl)
public:
    class INotifyCallback {
    public:
        /// The rows were scrolled; `value` is the scroll page times the scroll position.
        virtual void OnTreeScrolled(int value) = 0;
        /// The tree has a new size; `extent` is its client height in pixels.
        virtual void OnTreeResized(int extent) = 0;
        /// An item may have been expanded or collapsed.
        virtual void OnTreeExpanded() = 0;

    protected:
        ~INotifyCallback() = default;
    };

    /// Null tells nobody.
    void SetNotifyCallback(INotifyCallback* newCallback) { callback = newCallback; }

protected:
    void OnPaint();
    BOOL OnEraseBkgnd(CDC* dc);
    void OnSize(UINT type, int width, int height);
    void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    void OnKeyDown(UINT key, UINT repeated, UINT flags);
    void OnChar(UINT character, UINT repeated, UINT flags);
    void OnLButtonDown(UINT flags, CPoint point);
    void OnLButtonDblClk(UINT flags, CPoint point);
    LRESULT OnSetItem(WPARAM wParam, LPARAM lParam);

    DECLARE_MESSAGE_MAP()

private:
    enum class Place { kButton, kName, kElsewhere };

    Place Find(CPoint point);
    int ScrollPosition();
    void TellScrolled();
    /// Does something and tells when that has scrolled the rows.
    template <typename Action>
    void TellingScroll(const Action& action);

    INotifyCallback* callback = nullptr;
};
