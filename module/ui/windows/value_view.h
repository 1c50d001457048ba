// value_view.h - what all value editors have in common
#pragma once

#include "ui/windows/small_icon.h"

#include <afxext.h>

#include <string_view>
#include <vector>

/// A form that edits one value: its name, the controls, the unit, and buttons to apply and to
/// revert. It never talks to a camera, and whoever made it destroys and deletes it, which the
/// observer may do in the middle of OnValueChanged. User-interface thread only.
class CValueView : public CFormView {
    DECLARE_DYNCREATE(CValueView)
public:
    class IObserver {
    public:
        virtual ~IObserver() = default;
        /// The user committed (true) or abandoned (false) an edit. May delete the view.
        virtual void OnValueChanged(bool accepted) = 0;
    };

    CValueView();

    /// Makes the visible form in `rect` of `parent`. False when an icon or the form is missing.
    bool Create(IObserver* newObserver, const RECT& rect, CWnd* parent);

    /// Shows the name (UTF-8).
    virtual void SetFeatureName(const char* name);
    /// Shows the unit, where the form has a place for it.
    virtual void SetUnit(const wchar_t* unit);
    /// As SetUnit, with a narrow text (UTF-8).
    virtual void SetNarrowUnit(const char* unit);
    /// The Enter key: commits when the focus is on a control that holds the value. True when it
    /// did; the view may be gone then.
    virtual bool CommitOnEnter();

protected:
    explicit CValueView(UINT templateId);
    using CFormView::Create;
    /// The owner deletes the view, not its window's end.
    void PostNcDestroy() override {}

    HWND Control(int id) const { return ::GetDlgItem(m_hWnd, id); }
    bool HasFocus(int id) const;
    /// Writes a text (UTF-8) into a control; false when the control is missing.
    bool ShowText(int id, std::string_view text);
    /// Tells the observer. Nothing of the view may be touched afterwards.
    void Tell(bool accepted) { observer->OnValueChanged(accepted); }
    void OnApply() { Tell(true); }
    void OnSize(UINT type, int width, int height);

    DECLARE_MESSAGE_MAP()

private:
    void OnRevert() { Tell(false); }
    void MakeIconButton(int id, HICON icon);
    void RememberPlaces();
    void FitControls(int width);

    struct Place {
        HWND control;
        CRect rect; ///< where the template puts it
    };

    IObserver* observer = nullptr;
    std::vector<Place> places; ///< empty until the form stands
    const pyxen::SmallIcon applyIcon;
    const pyxen::SmallIcon revertIcon;
};
