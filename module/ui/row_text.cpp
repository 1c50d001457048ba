// row_text.cpp - the columns in a tree row's text
#include "ui/row_text.h"

namespace pyxen {

std::vector<std::wstring_view> SplitRow(std::wstring_view text) {
    std::vector<std::wstring_view> columns;
    std::size_t tab = text.find(L'\t');
    while (tab != std::wstring_view::npos) {
        columns.push_back(text.substr(0, tab));
        text.remove_prefix(tab + 1);
        tab = text.find(L'\t');
    }
    columns.push_back(text);
    return columns;
}

} // namespace pyxen
