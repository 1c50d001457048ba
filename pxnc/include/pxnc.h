/* pxnc.h - the Korvane Pyxen camera SDK's C interface
 *
 * A camera maker's library implements the 55 functions below (pxnc_entries.h
 * lists them for macros); hosts load it at run time and resolve every function
 * by name. Plain C on x86-64. `pyxen-tool sdk-check` checks a library against
 * what is stated here.
 *
 * Results
 *  - Every function but PxnShutdown returns 0 for success or a negative
 *    PxnErrorCode. The numbers in the comments below are these codes.
 *  - Checks are made in this order, and the first that fails decides: the
 *    library is not started (-2); not a handle of a suitable module (-4); an
 *    argument is missing (-7); the size of the record is wrong (-8); there is no
 *    such feature (-3); it has another type (-10); it, or the handle, cannot be
 *    read or written (-6); the value is outside the limits (-11). A call that is
 *    not allowed inside a callback (-15) is refused after handle, arguments and
 *    rights were found in order. The state of a frame or camera is looked at
 *    last.
 *  - An argument is missing when it is a null pointer, be it a name, a path, a
 *    frame, a callback or a place for a result, unless its function allows that.
 *    After a failure places for results hold nothing useful.
 *  - `size` is the caller's sizeof of the record, 0 is as wrong as any other.
 *  - List functions: with a null array and capacity 0 they only store the number
 *    of elements in `found`. An array that is too short is filled as far as it
 *    goes, `found` says how many there are, and the result is -9. Elements
 *    beyond `found` are left alone. A null array with a capacity, or a null
 *    `found`, is a missing argument. `size` is checked when only counting, too.
 *    The number may change between two calls.
 *
 * Memory
 *  - Texts, in records or by themselves, belong to the SDK and live until the
 *    last shutdown. The names of enumeration entries are one pointer for each
 *    distinct name, so they may be compared as pointers.
 *  - What the host passes in is used during the call only. Frames are the
 *    exception.
 *
 * Startup
 *  - Startups are counted, and one that failed counts too: each PxnStartup is
 *    undone by one PxnShutdown.
 *  - Inside any callback PxnStartup returns -15 and does not count, and
 *    PxnShutdown does nothing.
 *
 * Threads and callbacks
 *  - Every function may be called from any thread at any time. The SDK calls
 *    back without holding a lock.
 *  - The frame callbacks of one camera never overlap, over all its streams.
 *  - Inside a frame or chunk callback these return -15, since they would wait
 *    for it: PxnCameraOpen, PxnCameraClose, PxnFrameRevoke, PxnFrameRevokeAll,
 *    PxnCaptureStart, PxnCaptureEnd, PxnCaptureFrameWait, PxnCaptureQueueFlush.
 *    Everything else is allowed, queueing above all.
 *  - Inside an invalidation callback everything is allowed but startup and
 *    shutdown.
 *  - Features that starting or stopping an acquisition or a capture locks or
 *    unlocks are reported first: their invalidation callbacks have returned, or
 *    one second has passed, when PxnCaptureStart, PxnCaptureEnd or the command
 *    returns. Calls from inside a callback do not wait for that.
 *
 * Frames
 *  - A frame is announced, then any number of times queued and handed back, and
 *    finally revoked. It is handed back once for each time it was queued, either
 *    filled (its callback is called, waits for it end) or flushed.
 *  - From queueing until it has come back (callback, wait, flush, revocation of
 *    all frames, close, last shutdown) the frame and its buffer belong to the
 *    SDK. A frame that is announced and not queued is never written.
 *  - A frame that is not announced cannot be queued (-3), nor can a queued one
 *    (-33). Revoking a queued frame is refused (-27). Announcing an announced
 *    frame updates it.
 *  - Frame and capture functions take the handle of a camera opened with full
 *    access, which stands for its first stream, or of one of its streams. They
 *    return -6 for one opened for reading and -4 for every other module.
 *
 * Vanished cameras
 *  - The handles of a camera that has gone (camera, local device, streams)
 *    return -4. Flushing, revoking, ending a capture, unregistering and closing
 *    still do their work and return -4 afterwards. No frame callback follows.
 *  - Waits for its frames end with -30 or -12.
 */
#ifndef PXNC_H
#define PXNC_H

#include "pxnc_types.h"

#include <wchar.h>

/** Exports a function of the library that is built (PXNC_BUILD); nothing for
 * hosts. */
#if defined(PXNC_BUILD)
#if defined(_WIN32)
#define PXN_API __declspec(dllexport)
#else
#define PXN_API __attribute__((visibility("default")))
#endif
#else
#define PXN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- library ---- */

/** Reports the version of the SDK; allowed before the startup. -7 without `info`,
 * -8 for another size. */
PXN_API PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size);

/** Starts the library, or counts one more user of it. `configPath` is a file that
 * the SDK documents, or null for the default configuration; only the startup
 * that starts the library reads it. -3 when that file cannot be read, -29 when
 * its content is wrong. A failure counts as well and leaves the library as it
 * was; the next startup tries again. -15, not counted, inside any callback. */
PXN_API PxnError PXN_CALL PxnStartup(const wchar_t* configPath);

/** Undoes one startup. The last one closes all cameras, waits for running
 * callbacks, and makes all handles and texts invalid. Does nothing when nothing
 * is started, nor inside a callback. */
PXN_API void PXN_CALL PxnShutdown(void);

/* ---- cameras ---- */

/** Lists the cameras that are present, open or not. The list changes when cameras
 * come and go, which the system module reports as a feature change. */
PXN_API PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                         uint32_t size);

/** Describes an open camera, its local device and streams included. -4 for the
 * handle of anything else, -7 without `info`, -8 for another size. */
PXN_API PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info,
                                                     uint32_t size);

/** Describes a camera by its plain or extended identifier. -3 when it is not
 * present, -7 without `id` or `info`, -8 for another size. */
PXN_API PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size);

/** Opens a camera by its plain or extended identifier and stores its handle, which
 * PxnCameraClose makes invalid. `accessMode` is PxnAccessModeFull or
 * PxnAccessModeRead, else -7. A handle opened for reading writes nothing, runs no
 * command and moves no frames (-6). -3 when the camera is not present; -27 or -6
 * when somebody, this process included, has it so that this mode is not possible.
 * -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera);

/** Closes a camera: ends its captures, takes back its frames and registrations,
 * waits for their running callbacks (not for the one that calls it), and makes
 * the handles of the camera, its local device and its streams invalid. No
 * callback for any of them fires afterwards. -4 for the handle of anything else,
 * and of a camera that has gone, which is closed all the same. -15 inside a frame
 * or chunk callback. */
PXN_API PxnError PXN_CALL PxnCameraClose(PxnHandle camera);

/* ---- features of any module ----
 *
 * Modules are the system (PXN_SYSTEM_HANDLE), transport layers, interfaces,
 * cameras, local devices, streams and, inside a chunk callback, the chunks of a
 * frame. `name` is required; -3 when the module has no feature of that name. */

/** Lists the features of a module, always in the same order. -4 for a handle of no
 * module, -8 for another size. */
PXN_API PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features,
                                          uint32_t capacity, uint32_t* found, uint32_t size);

/** Describes one feature, with the same texts as the list. -7 without `info`, -8
 * for another size. */
PXN_API PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name,
                                              PxnFeatureInfo* info, uint32_t size);

/** Lists the features that this one selects: their values belong to its present
 * value. None for a feature that is no selector. */
PXN_API PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                                 PxnFeatureInfo* features, uint32_t capacity,
                                                 uint32_t* found, uint32_t size);

/** Stores whether the feature can be read and written now through this handle.
 * One of the two places may be null. */
PXN_API PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name,
                                                PxnBool* readable, PxnBool* writeable);

/** Reads an integer. -10 when the feature has another type, -6 when it is not
 * readable now. The same holds for the other functions of one type. */
PXN_API PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value);

/** Writes an integer. -6 when it is not writable now, -11 when the value is not
 * among those of the range, the increment and the set of valid values. */
PXN_API PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value);

/** Stores the present limits, both included. They may depend on other features.
 * Both places are required. */
PXN_API PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                                  int64_t* max);

/** Stores the present distance of valid values, counted from the minimum; at
 * least 1. */
PXN_API PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                                      int64_t* increment);

/** Lists the only valid values in ascending order, by the rules of lists. -21 when
 * range and increment alone decide. */
PXN_API PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                          int64_t* buffer, uint32_t capacity,
                                                          uint32_t* setSize);

/** Reads a float in the unit that its description names. -6 when it is not
 * readable now. */
PXN_API PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value);

/** Writes a float. -6 when it is not writable now, -11 outside the range. The
 * device may take the nearest value it is capable of. */
PXN_API PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value);

/** Stores the present limits, both included. They may depend on other features.
 * Both places are required. */
PXN_API PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                                    double* max);

/** Stores the name of the present entry, which belongs to the SDK. -6 when it is
 * not readable now. */
PXN_API PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value);

/** Selects an entry by name. -6 when the feature is not writable now, -11 for an
 * entry that does not exist or is not available now. */
PXN_API PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value);

/** Lists the names of all entries, available or not, by the rules of lists. The
 * pointers are those that PxnFeatureEnumGet stores. */
PXN_API PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name,
                                                   const char** entries, uint32_t capacity,
                                                   uint32_t* found);

/** Stores whether an entry can be selected at present, other things permitting. -3
 * for an unknown entry, -7 without `entry` or `available`. */
PXN_API PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name,
                                                    const char* entry, PxnBool* available);

/** Stores the number of an entry, available or not. -3 for an unknown entry, -7
 * without `entry` or `value`. */
PXN_API PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                              int64_t* value);

/** Stores the name of the first entry with that number, available or not. -3 when
 * there is none. */
PXN_API PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                                 const char** entry);

/** Describes an entry, available or not. -8 for another size, -3 for an unknown
 * entry. */
PXN_API PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name,
                                                 const char* entry, PxnFeatureEnumEntry* info,
                                                 uint32_t size);

/** Reads a text. `sizeFilled` is its length with the terminator; a null buffer
 * with size 0 asks for that alone. A buffer that is too small gets as much as
 * fits, terminated, and the result is -9. A null buffer with a size is a missing
 * argument. -6 when the feature is not readable now. */
PXN_API PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                              uint32_t bufferSize, uint32_t* sizeFilled);

/** Writes a text of at most the greatest length; null is a missing argument. -6
 * when it is not writable now, -11 when it is too long. */
PXN_API PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name,
                                              const char* value);

/** Stores the greatest length of the text in bytes, not counting the terminator.
 * A text that is read is not longer. */
PXN_API PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                         uint32_t* maxLength);

/** Reads a boolean: `value` becomes 0 or 1. -6 when the feature is not readable
 * now. */
PXN_API PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value);

/** Writes a boolean: 0 or, for every other value, 1. -6 when the feature is not
 * writable now. */
PXN_API PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value);

/** Starts a command; PxnFeatureCommandIsDone reports when it has been carried out.
 * -6 when it cannot run now. */
PXN_API PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name);

/** Stores 0 while the device carries the command out, else 1: also before the
 * first run. */
PXN_API PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name,
                                                  PxnBool* done);

/** Reads bytes by the rules of PxnFeatureStringGet, but without a terminator. -6
 * when the feature is not readable now. */
PXN_API PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                           uint32_t bufferSize, uint32_t* sizeFilled);

/** Writes `bufferSize` bytes; `buffer` is required. -6 when the feature is not
 * writable now, -11 when it takes another number of bytes. */
PXN_API PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                           uint32_t bufferSize);

/** Stores the number of bytes that PxnFeatureRawGet reads and PxnFeatureRawSet
 * takes. */
PXN_API PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name,
                                                   uint32_t* length);

/** Registers a callback for changes of a feature, by this process or not. Several
 * registrations of the same three with different contexts are kept apart and
 * called in the order of their registration. PxnFeatureInvalidationUnregister
 * undoes it, as does closing the camera. `callback` is required, `userContext`
 * may be null. */
PXN_API PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                         PxnInvalidationCallback callback,
                                                         void* userContext);

/** Removes the newest registration of the three, and waits while another thread
 * is inside that callback; it does not fire afterwards. Inside the callback
 * itself it does not wait. -3 when there is no such registration. */
PXN_API PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                           PxnInvalidationCallback callback);

/* ---- acquisition ---- */

/** Stores the bytes that the buffer of a frame needs at the present settings. For
 * cameras and streams, whatever their access; -4 for every other module. */
PXN_API PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize);

/** Makes a frame known by its address; record and buffer must stay until it is
 * revoked. Announcing an announced frame takes over its new buffer and size,
 * once the SDK no longer fills the old one. -7 for a null buffer with a size; a
 * frame of size 0 may be refused likewise. */
PXN_API PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size);

/** Undoes the announcement of a frame, after waiting for its running callback. -3
 * when it is not announced, -27 when it is queued. -15 inside a frame or chunk
 * callback. */
PXN_API PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame);

/** Undoes the announcement of all frames, queued ones included, after waiting for
 * running callbacks. -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle);

/** Begins to fill queued frames with what the camera sends; the camera itself is
 * started by its command AcquisitionStart. Starting a started capture succeeds.
 * PxnCaptureEnd undoes it. -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnCaptureStart(PxnHandle handle);

/** Fills no more frames and waits for a running callback. Frames that are queued
 * stay queued for the next start or a flush. Ending an ended capture succeeds.
 * -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle);

/** Gives an announced frame to the SDK to be filled, behind those queued before,
 * whether a capture runs or not. `callback` is called when it comes back; null
 * when the caller waits with PxnCaptureFrameWait. -3 when the frame is not
 * announced, -33 when it is queued. */
PXN_API PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                               PxnFrameCallback callback);

/** Waits until a frame has come back: 0, at once and as often as asked until it is
 * queued again; PxnFrame::receiveStatus says what came. `timeout` is in ms,
 * 0xFFFFFFFF is no limit, and -12 says that it has passed. -3 when the frame is
 * not announced. -30 when it is not queued, when no capture runs, and when one of
 * these becomes true meanwhile. -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame,
                                              uint32_t timeout);

/** Gives all queued frames back without a callback, after waiting for a running
 * one. Nothing is written into them afterwards. Frames stay announced, a capture
 * goes on. -15 inside a frame or chunk callback. */
PXN_API PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle);

/* ---- transport ---- */

/** Lists the transport layers, with or without interfaces. -8 for another size,
 * also when only counting. */
PXN_API PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                                 uint32_t* found, uint32_t size);

/** Lists the interfaces of all transport layers. An interface without cameras is
 * one, too. */
PXN_API PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                            uint32_t* found, uint32_t size);

/** Reads registers of a camera in the byte order of the device. `sizeComplete` is
 * the number of bytes read, also after a failure. -18 for modules without
 * registers, as the system is one, -32 where there is no register, -19 when only
 * the beginning could be read, -6 for registers that cannot be read. */
PXN_API PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size,
                                        char* buffer, uint32_t* sizeComplete);

/** Writes registers by the rules of PxnMemoryRead. -6 for registers that cannot be
 * written and for a camera that was opened for reading. */
PXN_API PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                         const char* buffer, uint32_t* sizeComplete);

/* ---- settings and chunks ---- */

/** Saves the values of a module's streamable features to a file that
 * PxnSettingsLoad of the same SDK reads. `settings` is reserved: null with size
 * 0, else -8, or -7 for null with a size. -20 when the file cannot be written. */
PXN_API PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path,
                                          const void* settings, uint32_t size);

/** Writes the values of a file to the features of a module, all or none. -3 when
 * the file cannot be read, -29 when it is not a settings file, -11 when a value
 * is refused, -6 when settings cannot be loaded now. */
PXN_API PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path,
                                          const void* settings, uint32_t size);

/** Calls back once, before it returns, with a handle whose features are the chunks
 * of a frame that has come back, and returns what the callback returns. -3 when
 * the frame is not announced, -25 when it has not come back since it was
 * announced or queued, -34 when it has no chunks, -35 when an exception left the
 * callback. */
PXN_API PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                             void* userContext);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* PXNC_H */
