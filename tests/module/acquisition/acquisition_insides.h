// acquisition_insides.h - the events of a grabber's acquisition, which no interface gives out
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"

#include <memory>

/// Defines Reach(Tag) as the pointer to a private member. An explicit instantiation may name it.
template <typename Tag, typename Tag::Member kMember>
struct PrivateMember {
    friend typename Tag::Member Reach(Tag) { return kMember; }
};

struct AcquisitionOfGrabber {
    using Member = Acquisition CMivoraKVNPyxenClass::*;
    friend Member Reach(AcquisitionOfGrabber tag);
};
template struct PrivateMember<AcquisitionOfGrabber, &CMivoraKVNPyxenClass::acquisition>;

struct EventsOfAcquisition {
    using Member = std::unique_ptr<platform::Event> (Acquisition::*)[2];
    friend Member Reach(EventsOfAcquisition tag);
};
template struct PrivateMember<EventsOfAcquisition, &Acquisition::acquisitionEvents>;

struct StopEventOfAcquisition {
    using Member = std::unique_ptr<platform::Event> Acquisition::*;
    friend Member Reach(StopEventOfAcquisition tag);
};
template struct PrivateMember<StopEventOfAcquisition, &Acquisition::stopEvent>;

/// One of the two events that every snap resets.
inline std::unique_ptr<platform::Event>& AcquisitionEvent(CMivoraKVNPyxenClass& grabber,
                                                          int index) {
    return (grabber.*Reach(AcquisitionOfGrabber()).*Reach(EventsOfAcquisition()))[index];
}
inline std::unique_ptr<platform::Event>& StopEvent(CMivoraKVNPyxenClass& grabber) {
    return grabber.*Reach(AcquisitionOfGrabber()).*Reach(StopEventOfAcquisition());
}
