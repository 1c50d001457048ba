// cmd_value_view.h - the editor of commands
#pragma once

#include "ui/windows/value_view.h"

/// One button that carries the command's name and commits when clicked.
class CCmdValueView : public CValueView {
    DECLARE_DYNCREATE(CCmdValueView)
public:
    CCmdValueView();

    void SetFeatureName(const char* name) override;

protected:
    DECLARE_MESSAGE_MAP()
};
