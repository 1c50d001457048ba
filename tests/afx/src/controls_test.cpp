// controls_test.cpp - list views with headers and images, list boxes and drop-down lists
#include "tests/windows/test_host.h"

namespace {

class Lists : public TestHost {
protected:
    CRect place{0, 0, 400, 200};
};

class ListViews : public Lists {
protected:
    ListViews() {
        EXPECT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, place, &Frame(), 1));
        list.InsertColumn(0, L"First", LVCFMT_LEFT, 120);
        list.InsertColumn(1, L"Second", LVCFMT_RIGHT, 80);
    }

    CListCtrl list;
};

TEST_F(ListViews, HaveColumnsAndAHeader) {
    CHeaderCtrl* const header = list.GetHeaderCtrl();
    ASSERT_EQ(header->GetItemCount(), 2);
    EXPECT_EQ(list.GetColumnWidth(0), 120);
    wchar_t text[32] = L"";
    LVCOLUMN column = {};
    column.mask = LVCF_TEXT | LVCF_FMT;
    column.pszText = text;
    column.cchTextMax = 32;
    ASSERT_TRUE(list.GetColumn(1, &column));
    EXPECT_EQ(std::wstring(text), L"Second");
    EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_RIGHT);
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = 55;
    EXPECT_TRUE(header->SetItem(1, &item));
    EXPECT_EQ(list.GetColumnWidth(1), 55);
    item.cxy = 0;
    EXPECT_TRUE(header->GetItem(1, &item));
    EXPECT_EQ(item.cxy, 55);
    EXPECT_TRUE(list.SetColumnWidth(1, 66));
    CRect rect;
    EXPECT_TRUE(header->GetItemRect(1, rect));
    EXPECT_EQ(rect.left, 120);
    EXPECT_EQ(rect.Width(), 66);
    EXPECT_TRUE(list.DeleteColumn(0));
    EXPECT_EQ(header->GetItemCount(), 1);
    EXPECT_FALSE(list.DeleteColumn(7));
}

TEST_F(ListViews, KeepTheTextsAndDataOfTheirItems) {
    EXPECT_EQ(list.InsertItem(0, L"b"), 0);
    EXPECT_EQ(list.InsertItem(0, L"a"), 0);
    EXPECT_TRUE(list.SetItemText(1, 1, L"second"));
    EXPECT_TRUE(list.SetItemData(1, 77));
    EXPECT_EQ(list.GetItemData(1), 77u);
    EXPECT_EQ(list.GetItemData(0), 0u);
    wchar_t text[32] = L"";
    EXPECT_EQ(list.GetItemText(1, 0, text, 32), 1);
    EXPECT_EQ(std::wstring(text), L"b");
    EXPECT_EQ(list.GetItemText(1, 1, text, 32), 6);
    EXPECT_EQ(std::wstring(text), L"second");
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(list.GetItemCount(), 1);
    EXPECT_FALSE(list.DeleteItem(1));
    EXPECT_TRUE(list.DeleteAllItems());
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(ListViews, FindAnItemByItsData) {
    for (int item = 0; item < 3; ++item) {
        list.InsertItem(item, L"x");
        list.SetItemData(item, static_cast<DWORD_PTR>(item % 2));
    }
    LVFINDINFO wanted = {};
    wanted.flags = LVFI_PARAM;
    wanted.lParam = 0;
    EXPECT_EQ(list.FindItem(&wanted), 0);
    EXPECT_EQ(list.FindItem(&wanted, 0), 2);
    wanted.lParam = 5;
    EXPECT_EQ(list.FindItem(&wanted), -1);
}

TEST_F(ListViews, SelectAndShowStates) {
    list.InsertItem(0, L"a");
    list.InsertItem(1, L"b");
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), -1);
    EXPECT_TRUE(list.SetItemState(1, LVIS_SELECTED | INDEXTOSTATEIMAGEMASK(2),
                                  LVIS_SELECTED | LVIS_STATEIMAGEMASK));
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(list.GetItemState(1, LVIS_STATEIMAGEMASK), UINT{INDEXTOSTATEIMAGEMASK(2)});
    EXPECT_EQ(list.GetItemState(0, LVIS_STATEIMAGEMASK | LVIS_SELECTED), 0u);
    CRect rect;
    ASSERT_TRUE(list.GetItemRect(1, rect, LVIR_BOUNDS));
    LVHITTESTINFO hit = {};
    hit.pt = {rect.left + 20, rect.top + 3};
    EXPECT_EQ(list.HitTest(&hit), 1);
    EXPECT_TRUE(list.EnsureVisible(1, FALSE));
}

TEST_F(ListViews, KeepTheirExtendedStylesAndImages) {
    list.SetExtendedStyle(LVS_EX_GRIDLINES);
    list.SetExtendedStyle(list.GetExtendedStyle() | LVS_EX_FULLROWSELECT);
    EXPECT_EQ(list.GetExtendedStyle(), DWORD{LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT});
    CImageList images;
    ASSERT_TRUE(images.Create(16, 16, ILC_COLOR32 | ILC_MASK, 5, 4));
    EXPECT_EQ(images.Add(LoadIcon(nullptr, IDI_INFORMATION)), 0);
    EXPECT_EQ(images.Add(LoadIcon(nullptr, IDI_ERROR)), 1);
    EXPECT_EQ(images.GetImageCount(), 2);
    EXPECT_EQ(list.SetImageList(&images, LVSIL_STATE), nullptr);
    EXPECT_EQ(ListView_GetImageList(list, LVSIL_STATE), images.GetSafeHandle());
    CImageList* const before = list.SetImageList(nullptr, LVSIL_STATE);
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(before->GetSafeHandle(), images.GetSafeHandle());
    EXPECT_TRUE(images.DeleteImageList());
    EXPECT_FALSE(images.DeleteImageList());
}

TEST_F(Lists, KeepTheTextsOfAListBox) {
    CListBox box;
    ASSERT_TRUE(box.Create(WS_CHILD | WS_VISIBLE, place, &Frame(), 1));
    EXPECT_EQ(box.AddString(L"one"), 0);
    EXPECT_EQ(box.AddString(L"three"), 1);
    EXPECT_EQ(box.GetCount(), 2);
    EXPECT_EQ(box.GetCurSel(), LB_ERR);
    EXPECT_EQ(box.SetCurSel(1), 1);
    EXPECT_EQ(box.GetCurSel(), 1);
    box.SetItemData(1, 33);
    EXPECT_EQ(box.GetItemData(1), 33u);
    EXPECT_EQ(box.GetTextLen(1), 5);
    wchar_t text[16] = L"";
    EXPECT_EQ(box.GetText(1, text), 5);
    EXPECT_EQ(std::wstring(text), L"three");
    EXPECT_EQ(box.SetCurSel(2), LB_ERR);
    box.ResetContent();
    EXPECT_EQ(box.GetCount(), 0);
}

TEST_F(Lists, KeepTheTextsOfADropDownList) {
    CComboBox list;
    ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST, place, &Frame(), 1));
    EXPECT_EQ(list.AddString(L"one"), 0);
    EXPECT_EQ(list.AddString(L"three"), 1);
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetCurSel(), CB_ERR);
    EXPECT_EQ(list.SetCurSel(1), 1);
    EXPECT_EQ(list.GetCurSel(), 1);
    EXPECT_EQ(TextOf(list), L"three");
    list.SetItemData(0, 33);
    EXPECT_EQ(list.GetItemData(0), 33u);
    EXPECT_EQ(list.FindStringExact(-1, L"three"), 1);
    EXPECT_EQ(list.FindStringExact(-1, L"thre"), CB_ERR);
    EXPECT_EQ(list.GetLBTextLen(1), 5);
    wchar_t text[16] = L"";
    EXPECT_EQ(list.GetLBText(1, text), 5);
    EXPECT_EQ(std::wstring(text), L"three");
    list.ResetContent();
    EXPECT_EQ(list.GetCount(), 0);
}

} // namespace
