// list_rows.h - what a list view in report mode shows
#pragma once

#include <afxcmn.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// The texts of a row of the device finder.
using Row = std::vector<std::wstring>;

inline Row RowOf(HWND list, int row) {
    Row texts;
    for (int column = 0; column < 5; ++column) {
        wchar_t text[256] = L"";
        ListView_GetItemText(list, row, column, text, 256);
        texts.emplace_back(text);
    }
    return texts;
}

inline int RowCount(HWND list) {
    return ListView_GetItemCount(list);
}

inline int SelectedRow(HWND list) {
    return ListView_GetNextItem(list, -1, LVNI_SELECTED);
}

inline LPARAM DataOf(HWND list, int row) {
    LVITEM item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    EXPECT_TRUE(ListView_GetItem(list, &item));
    return item.lParam;
}

/// The number of a row's state image.
inline UINT StateImageOf(HWND list, int row) {
    return ListView_GetItemState(list, row, LVIS_STATEIMAGEMASK) >> 12;
}

inline CRect RectOf(HWND list, int row) {
    CRect rect;
    ListView_GetItemRect(list, row, &rect, LVIR_LABEL);
    return rect;
}
