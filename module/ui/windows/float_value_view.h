// float_value_view.h - the editor of floating-point numbers
#pragma once

#include "ui/windows/value_view.h"

class CFloatValueView : public CValueView {
    DECLARE_DYNCREATE(CFloatValueView)
public:
    CFloatValueView();

    /// False when the edit is missing, as for the other two.
    bool SetRange(double newMin, double newMax);
    bool SetValue(double newValue);
    bool GetValue(double& current) const;
    bool CommitOnEnter() override;

protected:
    void OnEditChanged();

    DECLARE_MESSAGE_MAP()

private:
    void TakeTyped();
    bool ShowNumber();

    double min = 0.0;
    double max = 0.0;
    double value = 0.0;
    bool updating = false; ///< the edit's text is being written, not typed
};
