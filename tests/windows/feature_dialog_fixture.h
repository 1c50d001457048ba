// feature_dialog_fixture.h - the feature control dialog of a grabber
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"
#include "res/resource.h"
#include "test_host.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"
#include "ui/windows/feature_control_dialog.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A grabber on the SDK below `sdkHome`, and its dialog as the user has it before them.
class FeatureDialogFixture : public TestHost {
protected:
    explicit FeatureDialogFixture(const std::string& sdkHome) : home("PYXEN_HOME", sdkHome) {}
    ~FeatureDialogFixture() override;

    /// Where the simulator is.
    static std::string SimulatorHome();

    /// Where the grabber writes its lines; outlives it.
    virtual ILogSink& LogSink() { return sink; }
    /// Initialises a grabber with that ini file and opens camera 0.
    void OpenCamera(const std::string& ini = "");
    /// Opens the dialog; what it posted to itself is not handled yet.
    void OpenDialog();
    /// Makes a dialog of the test's own, which gets that size before it is first shown.
    void OpenDialogAt(int width, int height);
    /// Hands the grabber over to nobody: it ends, and its dialog with it.
    void EndGrabber();

    CMivoraKVNPyxenClass& Grabber() { return *grabber; }
    CKVNPyxenFeatureCtrlDialog& Dialog() { return *dialog; }
    HWND Control(int id) { return ::GetDlgItem(Dialog().m_hWnd, id); }
    HWND Tree();
    /// The window of the value editor, null when there is none.
    HWND Editor();
    HWND EditorControl(int id) { return ::GetDlgItem(Editor(), id); }
    std::wstring Description() { return TextOf(Control(7003)); }

    /// A row by the names of the rows above it and its own: "Camera/AnalogControl/Gain"; the root
    /// for an empty text. Null when there is none.
    HTREEITEM Row(const std::wstring& path);
    std::wstring RowText(const std::wstring& path) { return RowText(Row(path)); }
    std::wstring RowText(HTREEITEM item);
    std::vector<std::wstring> Children(const std::wstring& path);
    /// Selects a row, having its parents expanded.
    void Select(const std::wstring& path);
    void Expand(const std::wstring& path);
    void ClickButton(HWND parent, int id);

    /// The log lines so far that begin with the dialog's name, less that beginning.
    std::vector<std::string> DialogLog();
    /// All log lines of that kind, in order, less the texts before the name.
    static std::vector<std::string> NamesAfter(const std::vector<std::string>& lines,
                                               const std::string& beginning);

    /// Tells the simulator, which must be the SDK, what a camera or its user does.
    void SdkControl(const std::string& line) { SdkAnswer(line); }
    /// The same, and what it answers.
    std::string SdkAnswer(const std::string& line);
    /// How often the simulator's entry points have been called.
    std::int64_t SdkCalls();

    /// Runs `action`, during which a message box with that caption is to appear: it must belong to
    /// the dialog, carry an icon and one button, which is pressed. Answers its text. A picture of
    /// it is kept when named.
    std::wstring CatchBox(const std::wstring& caption, const std::function<void()>& action,
                          const std::string& picture = "");

    support::EnvironmentGuard home;
    support::TemporaryDirectory directory;
    support::RecordingSink sink;

private:
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::shared_ptr<CKVNPyxenFeatureCtrlDialog> ownDialog;
    CKVNPyxenFeatureCtrlDialog* dialog = nullptr;
};
