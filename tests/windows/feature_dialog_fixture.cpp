#include "feature_dialog_fixture.h"

#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "screenshot.h"
#include "ui/windows/wide_text.h"
#include "when_shown.h"

#include <algorithm>

using namespace pyxen;

FeatureDialogFixture::~FeatureDialogFixture() {
    EndGrabber();
}

std::string FeatureDialogFixture::SimulatorHome() {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), "simulator");
}

void FeatureDialogFixture::OpenCamera(const std::string& ini) {
    MivoraInstallLogSink(&LogSink());
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

void FeatureDialogFixture::OpenDialogAt(int width, int height) {
    ownDialog = std::make_shared<CKVNPyxenFeatureCtrlDialog>();
    ownDialog->SetOwnerClass(*grabber);
    ASSERT_TRUE(ownDialog->Create(IDD_FEATURE_CONTROL));
    dialog = ownDialog.get();
    SetDialog(dialog->m_hWnd);
    dialog->SetWindowPos(nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    dialog->Show();
    Pump();
}

void FeatureDialogFixture::EndGrabber() {
    SetDialog(nullptr);
    dialog = nullptr;
    ownDialog.reset();
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

std::string FeatureDialogFixture::SdkAnswer(const std::string& line) {
    using ControlFunction = std::int32_t (*)(const char*, char*, std::uint32_t);
    const auto control =
        reinterpret_cast<ControlFunction>(Grabber().Api().FindExport("PxnControl"));
    if (!control) {
        ADD_FAILURE() << "the SDK is not the simulator";
        return {};
    }
    char answer[4096]{};
    EXPECT_EQ(control(line.c_str(), answer, sizeof answer), 0) << answer;
    return answer;
}

std::int64_t FeatureDialogFixture::SdkCalls() {
    const std::string status = SdkAnswer("status");
    const std::string key = "\"calls\":";
    const std::size_t at = status.find(key);
    return at == std::string::npos ? -1 : std::stoll(status.substr(at + key.size()));
}

std::wstring FeatureDialogFixture::CatchBox(const std::wstring& caption,
                                            const std::function<void()>& action,
                                            const std::string& picture) {
    std::wstring text;
    const WhenShown shown(caption, [&](HWND window) {
        const Box box(window);
        text = box.text;
        EXPECT_EQ(box.icon, ::LoadIcon(nullptr, IDI_EXCLAMATION));
        EXPECT_EQ(::GetWindow(window, GW_OWNER), Dialog().m_hWnd);
        EXPECT_EQ(::GetDlgItem(window, IDYES), nullptr);
        if (!picture.empty()) {
            ::UpdateWindow(window);
            SaveScreenshot(window, picture);
        }
        ::SendMessage(window, WM_COMMAND, IDOK, 0);
    });
    action();
    return text;
}
