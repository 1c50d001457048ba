// recording_observer.h - the owner of a value editor that remembers what it was told
#pragma once

#include "ui/windows/value_view.h"

#include <functional>
#include <vector>

class RecordingObserver : public CValueView::IObserver {
public:
    void OnValueChanged(bool accepted) override {
        told.push_back(accepted);
        if (then) {
            then();
        }
    }

    std::vector<bool> told;
    std::function<void()> then;
};
