// sint_value_view.h - the editor of integers
#pragma once

#include "ui/slider_scale.h"
#include "ui/windows/value_view.h"

#include <cstdint>

class CSintValueView : public CValueView {
    DECLARE_DYNCREATE(CSintValueView)
public:
    CSintValueView();

    /// False when a control is missing, as for the other two.
    bool SetRange(std::int64_t min, std::int64_t max);
    /// Shows the value, moved into the range.
    bool SetValue(std::int64_t value);
    bool GetValue(std::int64_t& value) const;
    bool CommitOnEnter() override;

protected:
    void OnHScroll(UINT code, UINT position, CScrollBar* bar);
    void OnEditChanged();

    DECLARE_MESSAGE_MAP()

private:
    bool ShowNumber();
    bool MoveSlider();

    pyxen::SliderScale scale;
    bool updating = false; ///< the edit's text is being written, not typed
};
