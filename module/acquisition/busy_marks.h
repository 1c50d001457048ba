// busy_marks.h - tells the feature control dialog that an acquisition is being changed
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"

/// Sets the acquisition marks of a dialog and clears them at the end of the scope. Without a
/// dialog nothing happens. Any thread.
class CMivoraKVNPyxenClass::BusyMarks {
public:
    explicit BusyMarks(ICamCntrlDialog* dialogToMark) : dialog(dialogToMark) {
        if (dialog) {
            dialog->SetAcquisitionMarks(true, false);
        }
    }
    ~BusyMarks() {
        if (dialog) {
            dialog->SetAcquisitionMarks(false, false);
        }
    }
    BusyMarks(const BusyMarks&) = delete;
    BusyMarks& operator=(const BusyMarks&) = delete;

private:
    ICamCntrlDialog* const dialog;
};
