#include "feature_dialog_fixture.h"

#include "screenshot.h"
#include "ui/windows/wide_text.h"

#include <optional>
#include <utility>

FeatureDialogFixture::~FeatureDialogFixture() {
    EndGrabber();
}

void FeatureDialogFixture::OpenCamera(const std::string& ini) {
    MivoraInstallLogSink(&sink);
    grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
    MivoraInstallLogSink(nullptr);
    const std::string file = directory.Write("host.ini", ini);
    ASSERT_EQ(grabber->SetGrabberIni(file.c_str(), 0), MV_OK);
    ASSERT_EQ(grabber->Init(), MV_OK);
    ASSERT_EQ(grabber->SetActCameraIndex(0), MV_OK);
    ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
    sink.Take();
}

void FeatureDialogFixture::OpenDialog() {
    ASSERT_EQ(grabber->CamCntrlDialog(nullptr), MV_OK);
    const HWND window = static_cast<HWND>(grabber->GetRegisteredWindow(0));
    ASSERT_NE(window, nullptr);
    dialog = dynamic_cast<CKVNPyxenFeatureCtrlDialog*>(CWnd::FromHandlePermanent(window));
    ASSERT_NE(dialog, nullptr);
    SetDialog(window);
}

void FeatureDialogFixture::EndGrabber() {
    SetDialog(nullptr);
    dialog = nullptr;
    grabber.reset();
}

HWND FeatureDialogFixture::Tree() {
    return ::GetDlgItem(Control(4108), 2);
}

HWND FeatureDialogFixture::Editor() {
    return ::GetWindow(Control(4109), GW_CHILD);
}

std::wstring FeatureDialogFixture::RowText(HTREEITEM item) {
    CTreeCtrl tree;
    tree.m_hWnd = Tree();
    const std::wstring text = TreeItemText(tree, item);
    tree.m_hWnd = nullptr;
    return text;
}

HTREEITEM FeatureDialogFixture::Row(const std::wstring& path) {
    HTREEITEM item = TreeView_GetRoot(Tree());
    std::size_t start = 0;
    while (item && start < path.size()) {
        const std::size_t end = std::min(path.find(L'/', start), path.size());
        const std::wstring name = path.substr(start, end - start);
        item = TreeView_GetChild(Tree(), item);
        while (item) {
            const std::wstring text = RowText(item);
            if (text.substr(0, text.find(L'\t')) == name) {
                break;
            }
            item = TreeView_GetNextSibling(Tree(), item);
        }
        start = end + 1;
    }
    return item;
}

std::vector<std::wstring> FeatureDialogFixture::Children(const std::wstring& path) {
    std::vector<std::wstring> texts;
    for (HTREEITEM item = TreeView_GetChild(Tree(), Row(path)); item;
         item = TreeView_GetNextSibling(Tree(), item)) {
        texts.push_back(RowText(item));
    }
    return texts;
}

void FeatureDialogFixture::Select(const std::wstring& path) {
    const HTREEITEM item = Row(path);
    ASSERT_NE(item, nullptr) << NarrowText(path);
    TreeView_SelectItem(Tree(), item);
    Pump();
}

// By a double click, as a user does it, when it stands in sight.
void FeatureDialogFixture::Expand(const std::wstring& path) {
    const HTREEITEM item = Row(path);
    ASSERT_NE(item, nullptr) << NarrowText(path);
    TreeView_EnsureVisible(Tree(), item);
    CRect rect;
    TreeView_GetItemRect(Tree(), item, &rect, TRUE);
    DoubleClick(Tree(), rect.left + 3, rect.top + 3);
}

void FeatureDialogFixture::ClickButton(HWND parent, int id) {
    ::SendMessage(::GetDlgItem(parent, id), BM_CLICK, 0, 0);
    Pump();
}

std::vector<std::string> FeatureDialogFixture::DialogLog() {
    static const std::string kClass = " CKVNPyxenFeatureCtrlDialog::";
    std::vector<std::string> lines;
    for (const std::string& line : sink.Take()) {
        if (line.compare(1, kClass.size(), kClass) == 0) {
            lines.push_back(line.substr(0, 2) + line.substr(1 + kClass.size()));
        }
    }
    return lines;
}

std::vector<std::string> FeatureDialogFixture::NamesAfter(const std::vector<std::string>& lines,
                                                          const std::string& beginning) {
    std::vector<std::string> names;
    for (const std::string& line : lines) {
        if (line.compare(0, beginning.size(), beginning) == 0) {
            names.push_back(line.substr(beginning.size()));
        }
    }
    return names;
}

namespace {

/// Looks for a message box of the process on a timer, for the box has the message loop.
struct BoxWatch {
    inline static BoxWatch* current = nullptr;

    std::vector<std::pair<std::wstring, std::wstring>> seen;
    std::vector<HWND> owners;
    std::vector<bool> icons;
    std::vector<int> buttons;
    std::string picture;

    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
        ::EnumThreadWindows(::GetCurrentThreadId(), Look, 0);
    }

    static BOOL CALLBACK Look(HWND window, LPARAM) {
        const HWND text = ::GetDlgItem(window, 0xFFFF);
        const HWND ok = ::GetDlgItem(window, IDOK) ? ::GetDlgItem(window, IDOK)
                                                   : ::GetDlgItem(window, IDCANCEL);
        wchar_t name[16]{};
        ::GetClassName(window, name, 16);
        if (std::wstring(name) != L"#32770" || !text || !ok || !::IsWindowVisible(window)) {
            return TRUE;
        }
        current->seen.emplace_back(TextOf(text), TextOf(window));
        current->owners.push_back(::GetWindow(window, GW_OWNER));
        bool hasIcon = false;
        int count = 0;
        for (HWND child = ::GetWindow(window, GW_CHILD); child;
             child = ::GetWindow(child, GW_HWNDNEXT)) {
            ::GetClassName(child, name, 16);
            const bool shown = ::GetWindowLong(child, GWL_STYLE) & WS_VISIBLE;
            count += shown && std::wstring(name) == L"Button";
            hasIcon = hasIcon ||
                      (shown && ::SendMessage(child, STM_GETICON, 0, 0) ==
                                    reinterpret_cast<LPARAM>(::LoadIcon(nullptr, IDI_EXCLAMATION)));
        }
        current->icons.push_back(hasIcon);
        current->buttons.push_back(count);
        if (!current->picture.empty()) {
            ::UpdateWindow(window);
            SaveScreenshot(window, current->picture);
        }
        ::SendMessage(ok, BM_CLICK, 0, 0);
        return FALSE;
    }
};

} // namespace

FeatureDialogFixture::Box FeatureDialogFixture::CatchBox(const std::function<void()>& action,
                                                         const std::string& picture) {
    BoxWatch watch;
    watch.picture = picture;
    BoxWatch::current = &watch;
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, BoxWatch::OnTimer);
    action();
    ::KillTimer(nullptr, timer);
    BoxWatch::current = nullptr;
    EXPECT_EQ(watch.seen.size(), 1u);
    if (watch.seen.empty()) {
        return {};
    }
    Box box;
    box.text = watch.seen[0].first;
    box.caption = watch.seen[0].second;
    box.owner = watch.owners[0];
    box.hasIcon = watch.icons[0];
    box.buttons = watch.buttons[0];
    return box;
}
