#include "tree_view_fixture.h"

TreeViewFixture::TreeViewFixture() {
    Make(500, 300);
}

void TreeViewFixture::Make(int clientWidth, int clientHeight) {
    view = std::make_unique<CAttrTreeView>();
    ASSERT_TRUE(view->Create(this, CRect(0, 0, clientWidth + 1, clientHeight + 1), &Frame(),
                             IDC_ATTRIBUTE_TREE));
    root = Tree().GetRootItem();
    ASSERT_NE(root, nullptr);
    category = Insert(L"ImageFormatControl", root);
    width = Insert(L"Width\t640", category);
    height = Insert(L"Height\t480", category);
    Tree().Expand(root, TVE_EXPAND);
    Tree().Expand(category, TVE_EXPAND);
    Tree().SetNotifyCallback(this);
    Pump();
    selected.clear();
}

HTREEITEM TreeViewFixture::Insert(const wchar_t* text, HTREEITEM parent) {
    return Tree().InsertItem(text, parent, TVI_LAST);
}

void TreeViewFixture::InsertMany(int count, HTREEITEM parent) {
    Tree().SetRedraw(FALSE);
    for (int index = 0; index < count; ++index) {
        Insert((L"Row" + std::to_wstring(index) + L"\tvalue").c_str(), parent);
    }
    Tree().SetRedraw(TRUE);
}

int TreeViewFixture::ColumnWidth(int index) {
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    EXPECT_TRUE(Header_GetItem(Header(), index, &item));
    return item.cxy;
}

CRect TreeViewFixture::ColumnRect(int index) {
    CRect rect;
    EXPECT_TRUE(Header_GetItemRect(Header(), index, &rect));
    return rect;
}

CRect TreeViewFixture::PlaceOf(HWND window) {
    CRect rect;
    GetWindowRect(window, &rect);
    view->ScreenToClient(rect);
    return rect;
}

CRect TreeViewFixture::RowRect(HTREEITEM item, bool textOnly) {
    CRect rect;
    EXPECT_TRUE(Tree().GetItemRect(item, rect, textOnly));
    return rect;
}

int TreeViewFixture::TextWidth(const wchar_t* text) {
    CClientDC dc(&Tree());
    dc.SelectObject(Tree().GetFont());
    return dc.GetTextExtent(text, static_cast<int>(wcslen(text))).cx;
}

SCROLLINFO TreeViewFixture::ScrollBar(HWND window, int bar) {
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    GetScrollInfo(window, bar, &info);
    return info;
}

void TreeViewFixture::ScrollSideways(UINT code, UINT position) {
    SendMessage(*view, WM_HSCROLL, MAKEWPARAM(code, position), 0);
}
