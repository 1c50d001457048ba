// acquisition_insides.h - the acquisition of a grabber, which no interface gives out
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"

#include <memory>

/// A friend of both classes.
struct AcquisitionInsides {
    static pyxen::Acquisition& Of(CMivoraKVNPyxenClass& grabber) { return grabber.acquisition; }
    static pyxen::ConversionHelpers& Helpers(CMivoraKVNPyxenClass& grabber) {
        return grabber.acquisition.helpers;
    }
    /// One of the two events that every snap resets.
    static std::unique_ptr<platform::Event>& Event(CMivoraKVNPyxenClass& grabber, int index) {
        return grabber.acquisition.acquisitionEvents[index];
    }
    static std::unique_ptr<platform::Event>& StopEvent(CMivoraKVNPyxenClass& grabber) {
        return grabber.acquisition.stopEvent;
    }
};
