// The feature control dialog on a simulated camera, as it looks.
#include "feature_dialog_fixture.h"
#include "platform/file_system.h"
#include "screenshot.h"

namespace {

std::string SimulatorHome() {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), "simulator");
}

class FeatureDialogLooks : public FeatureDialogFixture {
protected:
    FeatureDialogLooks() : FeatureDialogFixture(SimulatorHome()) {
        OpenCamera();
        OpenDialog();
        Pump();
    }

    void Keep(const std::string& name) {
        ::UpdateWindow(Dialog().m_hWnd);
        Pump();
        SaveScreenshot(Dialog().m_hWnd, "feature-control-" + name);
    }
};

TEST_F(FeatureDialogLooks, ShowsEveryKindOfFeature) {
    Keep("modules");
    Expand(L"Camera/ImageFormatControl");
    Select(L"Camera/ImageFormatControl/Width");
    Keep("integer");
    Select(L"Camera/ImageFormatControl/PixelFormat");
    Keep("enumeration");
}

} // namespace
