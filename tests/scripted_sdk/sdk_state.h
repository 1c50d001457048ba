// sdk_state.h - the scripted SDK behind its entry points
#pragma once

#include "tests/scripted_sdk/scripted_sdk.h"

#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <unordered_set>
#include <vector>

namespace scripted {

/// What an entry point was asked to do.
struct Call {
    const char* entry;
    PxnHandle handle = nullptr;
    const char* feature = nullptr;
    std::string arguments; ///< as recorded, without the parentheses
};

class SdkState final : public Sdk {
public:
    using Lock = std::unique_lock<std::mutex>;
    using Action = std::function<PxnError(Lock&)>;

    static SdkState& Instance();

    void Reset() override;
    Model& Data() override { return model; }
    void Edit(const std::function<void(Model&)>& change) override;
    int StartupCount() override;
    std::vector<std::string> Calls(const std::vector<std::string>& prefixes) override;
    std::vector<std::string> TakeCalls(const std::vector<std::string>& prefixes) override;
    void ClearCalls() override;
    bool WaitForCall(const std::string& text, unsigned timeoutMs) override;
    void Fail(const std::string& entry, PxnError code, unsigned nth, unsigned count) override;
    void FailAlways(const std::string& entry, PxnError code) override;
    void FailFeature(PxnHandle handle, const std::string& feature, const std::string& entry,
                     PxnError code) override;
    void ClearFailures() override;
    void OnCall(const std::string& entry, std::function<void()> hook) override;
    void ClearHooks() override;
    void Hold(const std::string& entry) override;
    void Release(const std::string& entry) override;
    bool Deliver(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                 std::uint8_t fill) override;
    bool DeliverOnThread(std::uint64_t frame, std::int32_t status, std::uint64_t frameId,
                         std::uint8_t fill) override;
    void WaitForDeliveries() override;
    bool Complete(std::uint64_t frame, PxnError code, std::uint8_t fill) override;
    std::vector<std::uint64_t> AnnouncedFrames() override;
    std::vector<std::uint64_t> QueuedFrames() override;
    bool IsCapturing() override;
    std::vector<Registration> Registrations() override;
    unsigned Fire(PxnHandle handle, const std::string& feature) override;

    /// Records the call, runs its hook, waits while it is held, and answers the scripted failure
    /// or what `action` does under the lock.
    PxnError Run(const Call& call, const Action& action);
    /// Run for entries of one feature: finds it, checks its type (PxnFeatureDataUnknown: any).
    PxnError RunFeature(const Call& call, std::uint32_t type,
                        const std::function<PxnError(Feature&)>& action);

    // For the actions; all under the lock.
    Module* FindModule(PxnHandle handle);
    bool FindCamera(PxnHandle handle, std::size_t& index);
    bool FindCamera(const std::string& id, std::size_t& index);
    /// The shared copy of a text; lives as long as the library.
    const char* Intern(const std::string& text);
    void FillCameraInfo(std::size_t index, PxnCameraInfo& info);
    void FillFeatureInfo(const Feature& feature, PxnFeatureInfo& info);
    /// What a list entry reports as found: `found`, or the next scripted number.
    std::uint32_t Found(const char* entry, std::size_t found);
    PxnError OpenCamera(const char* id, PxnHandle* camera);
    PxnError CloseCamera(PxnHandle camera, Lock& lock);
    PxnError ChangeStartups(int step);
    PxnError Announce(PxnHandle camera, const PxnFrame* frame);
    PxnError Revoke(PxnHandle camera, const PxnFrame* frame, Lock& lock);
    PxnError RevokeAll(PxnHandle camera, Lock& lock);
    PxnError StartCapture(PxnHandle camera);
    PxnError EndCapture(PxnHandle camera, Lock& lock);
    PxnError Queue(PxnHandle camera, const PxnFrame* frame, PxnFrameCallback callback);
    PxnError WaitForFrame(PxnHandle camera, const PxnFrame* frame, std::uint32_t timeout,
                          Lock& lock);
    PxnError Flush(PxnHandle camera);
    PxnError Register(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                      void* context);
    PxnError Unregister(PxnHandle handle, const char* name, PxnInvalidationCallback callback,
                        Lock& lock);

    /// "camera0", "null", or the number of a handle that is none of ours.
    std::string NameOf(PxnHandle handle);

private:
    struct Failure {
        std::string entry;
        PxnHandle handle;
        std::string feature; // empty: any
        std::uint64_t skip;
        std::uint64_t count;
        PxnError code;
    };
    struct Frame {
        PxnHandle camera = nullptr;
        PxnFrame* frame = nullptr;
        PxnFrameCallback callback = nullptr; // queued frames only
        std::uint64_t index = 0; // kept, since the module may free a frame that is still announced
    };
    struct Completed {
        PxnFrame* frame;
        PxnError code;
    };
    struct Registered {
        PxnHandle handle;
        std::string feature;
        PxnInvalidationCallback callback;
        void* context;
    };

    SdkState();
    ~SdkState() override;

    bool NextFailure(const Call& call, PxnError& code);
    std::vector<std::string> Matching(const std::vector<std::string>& prefixes) const;
    bool TakeQueued(std::uint64_t index, bool withCallback, Frame& taken);
    void FillFrame(const Frame& queued, std::int32_t status, std::uint64_t frameId,
                   std::uint8_t fill);
    void CallBack(const Frame& queued);
    bool StartDelivery(std::uint64_t index, std::int32_t status, std::uint64_t frameId,
                       std::uint8_t fill, Frame& taken);
    void WaitForFrameCallbacks(PxnHandle camera, Lock& lock);

    std::mutex mutex; // guards all below
    std::condition_variable changed;
    Model model;
    std::unordered_set<std::string> texts; // nodes never move
    std::map<std::size_t, std::vector<PxnHandle>> streamHandles;
    int startups = 0;
    std::set<std::size_t> openCameras;
    std::vector<std::string> calls;
    std::list<Failure> failures;
    std::map<std::string, std::function<void()>> hooks;
    std::set<std::string> held;
    std::vector<Frame> announced;
    std::vector<Frame> queued;
    std::vector<Completed> completed; // frames without callback, not yet waited for
    std::set<PxnHandle> capturing;
    std::map<PxnHandle, int> runningFrameCallbacks;
    int runningInvalidations = 0;
    std::vector<Registered> registrations;
    std::vector<std::thread> deliveries;
    std::uint64_t generation = 0; // counts resets, so that waits of an earlier test end
};

inline SdkState& State() {
    return SdkState::Instance();
}

} // namespace scripted
