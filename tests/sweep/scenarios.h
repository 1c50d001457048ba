// scenarios.h - the uses of a grabber that are swept
#pragma once

#include "tests/sweep/station.h"

#include <ostream>
#include <string>
#include <vector>

namespace sweep {

/// A use of a grabber. Of its parts only `swept` has failures; the others succeed.
struct Scenario {
    std::string name;
    Operations before;
    Operations swept;
    Operations after;           ///< what the host does next, whatever happened
    bool isQueuedFirst = false; ///< frames are queued before the capture is started

    friend std::ostream& operator<<(std::ostream& stream, const Scenario& scenario) {
        return stream << scenario.name;
    }
};

const std::vector<Scenario>& Scenarios();

/// That the same process works again: first without DeInit, then with it.
const Operations& UseAgain();
/// What UseAgain returns when it works. The first operation depends on the state before.
const std::vector<std::string>& ResultsOfUseAgain();

/// What all scenarios find: two cameras, with small images of a packed format, a serial port, and
/// features that are synchronised.
void FillModel(scripted::Model& model);
std::string IniText(const Scenario& scenario);
extern const char* const kSyncRules;

} // namespace sweep
