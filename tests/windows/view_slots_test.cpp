// view_slots_test.cpp - positions of the views' virtual operations and of what they call
#include "ui/windows/attr_tree_view.h"
#include "ui/windows/cmd_value_view.h"

#include "tests/support/virtual_table.h"

#include <gtest/gtest.h>

namespace {

/// A form with one operation of its own, which follows those of its base.
class FormAndOne : public CFormView {
public:
    virtual void Operation() = 0;
};

TEST(ViewSlots, OfValueViewsFollowTheBaseInTheirOrder) {
    using support::EntryOf;
    const int first = EntryOf(&FormAndOne::Operation);
    EXPECT_EQ(EntryOf(&CValueView::SetFeatureName), first);
    EXPECT_EQ(EntryOf(&CValueView::SetUnit), first + 1);
    EXPECT_EQ(EntryOf(&CValueView::SetNarrowUnit), first + 2);
    EXPECT_EQ(EntryOf(&CValueView::CommitOnEnter), first + 3);
    EXPECT_EQ(EntryOf(&CCmdValueView::SetFeatureName), first);
}

// A destructor takes two entries.
TEST(ViewSlots, OfObserversAreInOrder) {
    using support::EntryOf;
    EXPECT_EQ(EntryOf(&CValueView::IObserver::OnValueChanged), 2);
    EXPECT_EQ(EntryOf(&CAttrTreeView::IObserver::AttrSelected), 0);
    EXPECT_EQ(EntryOf(&CAttrTreeView::IObserver::IsAttrReadOnly), 1);
    EXPECT_EQ(EntryOf(&CColumnTreeCtrl::INotifyCallback::OnTreeScrolled), 0);
    EXPECT_EQ(EntryOf(&CColumnTreeCtrl::INotifyCallback::OnTreeResized), 1);
    EXPECT_EQ(EntryOf(&CColumnTreeCtrl::INotifyCallback::OnTreeExpanded), 2);
}

} // namespace
