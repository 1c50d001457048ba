// marked_dialog.h - a feature control dialog that keeps the marks of acquisitions
#pragma once

#include "mivora/cam_cntrl_dialog.h"
#include "mivora/grabber.h"
#include "platform/mutex.h"

#include <cstdint>
#include <utility>
#include <vector>

/// Keeps how it is marked.
class MarkedDialog : public ICamCntrlDialog {
public:
    using Marks = std::vector<std::pair<bool, bool>>;

    /// The grabber has and destroys the dialog from then on.
    static MarkedDialog* GiveTo(CMivoraGrabber& grabber) {
        auto* const dialog = new MarkedDialog(grabber);
        Holder::Give(grabber, dialog);
        return dialog;
    }

    void Show() override {}
    void Hide() override {}
    bool IsVisible() const override { return false; }
    void Update(uint32_t) override {}
    void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) override {
        const platform::MutexLock lock(mutex);
        marks.emplace_back(suppressBufferFormat, suppressSync);
        modes.push_back(grabber.GetAcquisitionState());
    }

    Marks Take() {
        const platform::MutexLock lock(mutex);
        return std::exchange(marks, {});
    }
    /// The mode of the acquisition at each call.
    std::vector<uint32_t> TakeModes() {
        const platform::MutexLock lock(mutex);
        return std::exchange(modes, {});
    }

private:
    /// Reaches what a grabber keeps for its module.
    struct Holder : CMivoraGrabber {
        static void Give(CMivoraGrabber& grabber, ICamCntrlDialog* dialog) {
            (grabber.*(&Holder::SetCamCntrlDialogObject))(dialog);
        }
    };

    explicit MarkedDialog(CMivoraGrabber& owner) : grabber(owner) {}

    CMivoraGrabber& grabber;
    platform::Mutex mutex;
    Marks marks GUARDED_BY(mutex);
    std::vector<uint32_t> modes GUARDED_BY(mutex);
};
