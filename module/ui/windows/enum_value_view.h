// enum_value_view.h - the editor of enumerations and booleans
#pragma once

#include "ui/windows/value_view.h"

#include <cstdint>
#include <string>

class CEnumValueView : public CValueView {
    DECLARE_DYNCREATE(CEnumValueView)
public:
    CEnumValueView();

    /// Fills the list with the names that are not null, in order. False when the list is missing
    /// or refuses one.
    bool SetOptions(const char* const* names, std::uint32_t count);
    /// Selects the entry of that name, whatever its case; false when there is none.
    bool SelectOption(const char* name);
    /// The selected entry's name; false when nothing is selected.
    bool GetSelection(std::string& name) const;
    bool CommitOnEnter() override;
};
