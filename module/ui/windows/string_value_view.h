// string_value_view.h - the editor of texts
#pragma once

#include "ui/windows/value_view.h"

#include <string>

class CStringValueView : public CValueView {
    DECLARE_DYNCREATE(CStringValueView)
public:
    CStringValueView();

    /// Shows the text (UTF-8). False when the edit is missing, as for the other.
    bool SetText(const char* text);
    bool GetText(std::string& text) const;
    bool CommitOnEnter() override;
    /// Whether the edit's text is being written, not typed.
    bool IsUpdating() const { return updating; }

private:
    bool updating = false;
};
