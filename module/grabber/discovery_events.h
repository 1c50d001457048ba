// discovery_events.h - the SDK's camera discovery events, told to every initialised grabber
#pragma once

class CMivoraKVNPyxenClass;

/// One registration on the SDK's system handle for all grabbers of an SDK library.
///
/// The SDK cannot tell apart the registrations of several grabbers when one is released: it drops
/// the newest. So the first grabber registers and the last one releases, in whichever order and on
/// whichever threads they come and go.
namespace DiscoveryEvents {

/// From now on InvalidationCallback of the grabber is called for discovery events, on SDK threads.
/// Does nothing when the SDK refuses or memory is out. The grabber's SDK access is valid.
void Register(CMivoraKVNPyxenClass& grabber);

/// Ends what Register began and waits for a running call, except from inside it. Does nothing for
/// a grabber that is not registered.
void Release(CMivoraKVNPyxenClass& grabber);

} // namespace DiscoveryEvents
