// busy_marks.h - marking the feature control dialog while an acquisition is being changed
#pragma once

#include "acquisition/acquisition_host.h"

namespace pyxen {

/// Sets the acquisition marks of the dialog and clears them at the end of the scope. Any thread.
class BusyMarks {
public:
    explicit BusyMarks(IAcquisitionHost& acquisitionHost) : host(acquisitionHost) {
        host.MarkDialog(true);
    }
    ~BusyMarks() { host.MarkDialog(false); }
    BusyMarks(const BusyMarks&) = delete;
    BusyMarks& operator=(const BusyMarks&) = delete;

private:
    IAcquisitionHost& host;
};

} // namespace pyxen
