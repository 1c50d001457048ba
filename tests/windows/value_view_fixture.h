// value_view_fixture.h - value editors in a pane of the test's window
#pragma once

#include "recording_observer.h"
#include "res/resource.h"
#include "test_host.h"
#include "ui/windows/container_view.h"
#include "ui/windows/value_view.h"

#include <memory>

class ValueViewFixture : public TestHost {
protected:
    ValueViewFixture() {
        CRect client;
        Frame().GetClientRect(client);
        EXPECT_TRUE(container.Create(client, &Frame(), IDC_VALUE_CONTAINER));
    }

    /// Makes an editor; it ends with the test or with the unique pointer.
    template <class View>
    std::unique_ptr<View> Make() {
        auto view = std::make_unique<View>();
        EXPECT_TRUE(view->Create(&observer, CRect(10, 10, 300, 150), &container));
        return view;
    }

    /// What a user does: the text replaces the old one, the focus is on the control.
    void TypeInto(HWND edit, const std::wstring& text) {
        SetFocus(edit);
        SendMessage(edit, EM_SETSEL, 0, -1);
        Type(text);
    }
    void ClickButton(HWND view, int id) {
        const HWND button = GetDlgItem(view, id);
        ASSERT_NE(button, nullptr);
        Click(button, 3, 3);
    }

    RecordingObserver observer;
    CContainerView container;
};

using Told = std::vector<bool>;
