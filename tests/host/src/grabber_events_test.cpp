// grabber_events_test.cpp - the camera control dialog and registered windows of a grabber
#include "tests/host/test_grabber.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

/// Records updates, in a list that the callback of a test shares.
class FakeDialog : public ICamCntrlDialog {
public:
    explicit FakeDialog(std::vector<std::string>& recorded) : updates(recorded) {}

    void Show() override { visible = true; }
    void Hide() override { visible = false; }
    bool IsVisible() const override { return visible; }
    void Update(std::uint32_t mask) override {
        updates.push_back("dialog " + std::to_string(mask));
    }
    void SetAcquisitionMarks(bool, bool) override {}

    bool visible = false;

private:
    std::vector<std::string>& updates;
};

TEST(CamCntrlDialog, IsNotProvidedByTheBase) {
    support::RecordingSink sink;
    const InstalledSink installed(&sink);
    TestGrabber grabber;
    EXPECT_EQ(grabber.CamCntrlDialog(nullptr), MV_NO_CAMERA);
    EXPECT_TRUE(sink.Take().empty());
    grabber.MakeCameras({1});
    grabber.StoreActCameraIndex(0);
    grabber.GetActCamera()->SetCamCntrlDlgIndex(5);
    EXPECT_EQ(grabber.CamCntrlDialog(nullptr), MV_NOT_AVAILABLE);
    EXPECT_EQ(sink.Take(), std::vector<std::string>(
                               {"0 Mivora: CamCntrlDialog: There is no camera control dialog 5"}));
}

TEST(CamCntrlDialog, IsNotifiedOfUpdatesBeforeTheCallback) {
    std::vector<std::string> updates;
    FakeDialog dialog(updates);
    TestGrabber grabber;
    grabber.UpdateCamCntrlDialogs(kMvUpdateParameters);
    grabber.SetCamCntrlDialogObject(&dialog);
    EXPECT_EQ(grabber.GetCamCntrlDialogObject(), &dialog);
    grabber.InstDialogUpdateCallBack(
        [](std::uint32_t mask, void* context) {
            static_cast<std::vector<std::string>*>(context)->push_back("callback " +
                                                                       std::to_string(mask));
        },
        &updates);
    grabber.UpdateCamCntrlDialogs(3);
    grabber.SetCamCntrlDialogObject(nullptr);
    grabber.UpdateCamCntrlDialogs(kMvUpdateTimer);
    EXPECT_EQ(grabber.GetCamCntrlDialogObject(), nullptr);
    EXPECT_EQ(updates, std::vector<std::string>({"dialog 3", "callback 3", "callback 2"}));
}

TEST(CamCntrlDialog, IsHiddenOnClosing) {
    TestGrabber grabber;
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
    EXPECT_EQ(grabber.CloseCamCntrlDialog(), MV_OK);
    std::vector<std::string> updates;
    FakeDialog dialog(updates);
    grabber.SetCamCntrlDialogObject(&dialog);
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
    dialog.Show();
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 1u);
    EXPECT_EQ(grabber.CloseCamCntrlDialog(), MV_OK);
    EXPECT_FALSE(dialog.visible);
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
}

TEST(RegisteredWindows, AreListedOnceAndInOrder) {
    TestGrabber grabber;
    int first = 0;
    int second = 0;
    grabber.RegisterWindowHandle(&first);
    grabber.RegisterWindowHandle(&second);
    grabber.RegisterWindowHandle(&first);
    grabber.RegisterWindowHandle(nullptr);
    EXPECT_EQ(grabber.GetRegisteredWindow(0), &first);
    EXPECT_EQ(grabber.GetRegisteredWindow(1), &second);
    EXPECT_EQ(grabber.GetRegisteredWindow(2), nullptr);
    grabber.UnRegisterWindowHandle(&first);
    grabber.UnRegisterWindowHandle(&first);
    EXPECT_EQ(grabber.GetRegisteredWindow(0), &second);
    EXPECT_EQ(grabber.GetRegisteredWindow(1), nullptr);
}

} // namespace
