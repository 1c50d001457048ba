// scripted_sdk.h - the test's hand on the scripted SDK
#pragma once

#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "tests/scripted_sdk/scripted_model.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// One type information for program and library, where that takes a mark.
#if defined(__ELF__)
#define SCRIPTED_SHARED_TYPE __attribute__((visibility("default")))
#else
#define SCRIPTED_SHARED_TYPE
#endif

namespace scripted {

/// One registration of an invalidation callback.
struct Registration {
    std::string module; ///< symbolic name: "camera0"
    std::string feature;
    void* context = nullptr;

    bool operator==(const Registration&) const = default;
};

/// The script and the record of the one scripted SDK in this process. Reached with GetSdk().
///
/// Every entry point first records its call, then runs the test's hook, then waits while the entry
/// is held, then returns the scripted failure if there is one, and else acts on the model, by the
/// rules of any SDK: it has to be started, the camera to be open for frames. All operations may be
/// called from any thread; those that hand out the model by reference may be used only while no
/// entry is called by another thread.
class SCRIPTED_SHARED_TYPE Sdk {
public:
    Sdk() = default;
    Sdk(const Sdk&) = delete;
    Sdk& operator=(const Sdk&) = delete;

    // ---- the whole ----
    /// Back to the default model: nothing recorded or scripted, not started, nothing open,
    /// announced or registered, no promise broken. Calls that are held or waiting are let go first
    /// (waits with PxnErrNotAvailable).
    virtual void Reset() = 0;
    virtual Model& Data() = 0;
    /// Changes the model while entries may be running.
    virtual void Edit(const std::function<void(Model&)>& change) = 0;
    /// Calls of PxnStartup, failed ones included, that no PxnShutdown has undone.
    virtual int StartupCount() = 0;

    // ---- what was called ----
    /// Texts as in `PxnFeatureIntSet(camera0, "Width", 640)` or
    /// `PxnCaptureFrameQueue(camera0, frame0, cb)`, in order. With prefixes only those that begin
    /// with one of them.
    virtual std::vector<std::string> Calls(const std::vector<std::string>& prefixes = {}) = 0;
    /// The same; all recorded calls are forgotten, also those that no prefix matched.
    virtual std::vector<std::string> TakeCalls(const std::vector<std::string>& prefixes = {}) = 0;
    virtual void ClearCalls() = 0;
    /// Waits until a recorded call begins with `text`; false when there is none after `timeoutMs`.
    virtual bool WaitForCall(const std::string& text, unsigned timeoutMs = 10000) = 0;

    // ---- results ----
    /// The nth call of the entry from now on, and the `count` - 1 calls after it, return `code` and
    /// do nothing else; PxnStartup counts all the same. An empty text means any entry but
    /// PxnShutdown, which returns nothing.
    virtual void Fail(const std::string& entry, PxnError code, unsigned nth = 1,
                      unsigned count = 1) = 0;
    virtual void FailAlways(const std::string& entry, PxnError code) = 0;
    /// All calls of the entry for this feature of this module return `code`.
    virtual void FailFeature(PxnHandle handle, const std::string& feature, const std::string& entry,
                             PxnError code) = 0;
    virtual void ClearFailures() = 0;
    /// Runs `hook` in every call of the entry, on the calling thread and without a lock; an empty
    /// function ends that.
    virtual void OnCall(const std::string& entry, std::function<void()> hook) = 0;
    virtual void ClearHooks() = 0;
    /// Calls of the entry stop, once recorded, until Release.
    virtual void Hold(const std::string& entry) = 0;
    virtual void Release(const std::string& entry) = 0;

    // ---- frames (by the index in their context word 2) ----
    /// Completes a frame that was queued with a callback: fills its buffer with `fill`, its size
    /// and format from the camera's features, and calls the callback on this thread once no other
    /// callback of the camera runs. False when no such frame is queued.
    virtual bool Deliver(std::uint64_t frame, std::int32_t status = PxnFrameStatusComplete,
                         std::uint64_t frameId = 0, std::uint8_t fill = 0) = 0;
    /// The same on a thread of the SDK; WaitForDeliveries waits until it has ended.
    virtual bool DeliverOnThread(std::uint64_t frame, std::int32_t status = PxnFrameStatusComplete,
                                 std::uint64_t frameId = 0, std::uint8_t fill = 0) = 0;
    virtual void WaitForDeliveries() = 0;
    /// Completes a frame that was queued without callback; ends the wait for it, which returns
    /// `code`. False when no such frame is queued.
    virtual bool Complete(std::uint64_t frame, PxnError code = PxnErrSuccess,
                          std::uint8_t fill = 0) = 0;
    /// Indices of the frames announced and not revoked, and queued and not completed, in order.
    virtual std::vector<std::uint64_t> AnnouncedFrames() = 0;
    virtual std::vector<std::uint64_t> QueuedFrames() = 0;
    /// The frame of that index, announced or queued, or null.
    virtual PxnFrame* FrameOf(std::uint64_t frame) = 0;
    virtual bool IsCapturing() = 0;
    /// Deliver for the frames of one camera.
    virtual bool DeliverFrom(std::size_t camera, std::uint64_t frame,
                             std::int32_t status = PxnFrameStatusComplete) = 0;
    /// Fills every queued frame of every camera, record and buffer, and keeps it queued: what an
    /// SDK may do with a frame from the moment it has it until it gives it back.
    virtual void WriteQueuedFrames(std::uint8_t fill) = 0;
    virtual std::size_t CountOpenCameras() = 0;

    // ---- invalidation ----
    virtual std::vector<Registration> Registrations() = 0;
    /// Calls what is registered for the feature of that module, on this thread; returns how many.
    virtual unsigned Fire(PxnHandle handle, const std::string& feature) = 0;

    // ---- callbacks that no SDK may call, on this thread ----
    /// Every frame that was queued since the last Reset: the record may be gone.
    virtual std::vector<PxnFrame*> PastFrames() = 0;
    /// Calls the callback that was queued last, with any frame.
    virtual void CallBack(PxnFrame* frame) = 0;
    /// Calls what was registered and is no longer, until the last Reset; returns how many.
    virtual unsigned FireRemoved() = 0;

    virtual ~Sdk() = default;
};

/// Where PYXEN_HOME must point to for the scripted library to be loaded.
inline std::string Home() {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), "scripted");
}

/// The script of the library that loading from Home() gives. Looked up in the library at run time,
/// so that a program needs no import of it to start.
inline Sdk& GetSdk() {
    static Sdk& sdk = []() -> Sdk& {
        static platform::SharedLibrary library;
        const std::string directory = platform::JoinPath(Home(), "Bin");
        const std::string path = platform::JoinPath(directory, platform::LibraryFileName("PxnC"));
        std::string error;
        if (!library.Load(path, true, &error)) {
            throw std::runtime_error("the scripted SDK cannot be loaded: " + error);
        }
        using Getter = Sdk* (*)();
        const auto getter = reinterpret_cast<Getter>(library.FindSymbol("ScriptedSdkInstance"));
        if (!getter) {
            throw std::runtime_error(path + " is not the scripted SDK");
        }
        return *getter();
    }();
    return sdk;
}

} // namespace scripted
