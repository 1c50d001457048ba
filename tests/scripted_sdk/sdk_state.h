// sdk_state.h - the script and the record of the scripted SDK
#pragma once

#include "platform/mutex.h"
#include "pxnc/skeleton/condition.h"
#include "pxnc/skeleton/entry_call.h"
#include "tests/scripted_sdk/scripted_sdk.h"

#include <list>
#include <map>
#include <set>
#include <thread>
#include <vector>

namespace scripted {

class SdkState final : public Sdk {
public:
    static SdkState& Instance();
    SdkState();

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
    PxnFrame* FrameOf(std::uint64_t frame) override;
    std::vector<std::uint64_t> QueuedFrames() override;
    bool IsCapturing() override;
    bool DeliverFrom(std::size_t camera, std::uint64_t frame, std::int32_t status) override;
    void WriteQueuedFrames(std::uint8_t fill) override;
    std::size_t CountOpenCameras() override;
    std::vector<Registration> Registrations() override;
    unsigned Fire(PxnHandle handle, const std::string& feature) override;
    std::vector<PxnFrame*> PastFrames() override;
    void CallBack(PxnFrame* frame) override;
    unsigned FireRemoved() override;

    /// Records the call, runs its hook and waits while it is held. Returns the scripted failure.
    PxnError BeginCall(const skeleton::EntryCall& call) EXCLUDES(mutex);
    /// What a list entry reports as found: `count`, or the next scripted number.
    std::uint32_t ReportedCount(const char* entry, std::uint32_t count);
    void NoteQueued(PxnFrame* frame, PxnFrameCallback callback, PxnHandle camera, PxnHandle stream)
        EXCLUDES(mutex);

private:
    template <typename Use>
    friend auto WithModel(Use use);

    struct Failure {
        std::string entry;
        PxnHandle handle;
        std::string feature; // empty: any
        std::uint64_t skip;
        std::uint64_t count;
        PxnError code;
    };
    struct PastRegistration {
        PxnHandle handle;
        std::string feature;
        PxnInvalidationCallback callback;
        void* context;
    };
    /// Keeps what is registered before a call that may remove it.
    void NoteRegistrations() EXCLUDES(mutex);
    PxnError NextFailure(const skeleton::EntryCall& call) REQUIRES(mutex);
    std::vector<std::string> Matching(const std::vector<std::string>& prefixes) const
        REQUIRES(mutex);

    platform::Mutex mutex; // the model's lock
    skeleton::Condition changed;
    Model model; // not annotated, since Data() hands it out
    std::vector<std::string> calls GUARDED_BY(mutex);
    std::list<Failure> failures GUARDED_BY(mutex);
    std::map<std::string, std::function<void()>> hooks GUARDED_BY(mutex);
    std::set<std::string> held GUARDED_BY(mutex);
    std::vector<std::thread> deliveries GUARDED_BY(mutex);
    std::set<PxnFrame*> pastFrames GUARDED_BY(mutex);
    PxnFrameCallback lastCallback GUARDED_BY(mutex) = nullptr;
    PxnHandle lastCamera GUARDED_BY(mutex) = nullptr;
    PxnHandle lastStream GUARDED_BY(mutex) = nullptr;
    std::map<void*, PastRegistration> pastRegistrations GUARDED_BY(mutex); // by their context
};

/// Runs `use(model)` with the model's lock held, which may be taken again inside it. The locks of
/// frames are taken before it, never inside.
template <typename Use>
auto WithModel(Use use) {
    SdkState& sdk = SdkState::Instance();
    platform::MutexLock lock(sdk.mutex);
    return use(sdk.model);
}

} // namespace scripted
