// discovery_events.h - the SDK's camera discovery events for a grabber
#pragma once

class CMivoraKVNPyxenClass;

/// Has a grabber hear of cameras that appear and disappear.
namespace pyxen::discovery_events {

/// From now on InvalidationCallback of the grabber is called for discovery events, on SDK threads.
/// Does nothing when the SDK refuses or when out of memory. The grabber's SDK access is valid.
void Register(CMivoraKVNPyxenClass& grabber);

/// Ends what Register began and waits for a running call, except from inside it. Does nothing for
/// a grabber that is not registered.
void Release(CMivoraKVNPyxenClass& grabber);

} // namespace pyxen::discovery_events
