// sweep_gate.cpp - counts the calls and says which of them fails
#include "tests/sweep/gate/sweep_gate.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/mutex.h"
#include "platform/shared_library.h"
#include "tests/sweep/gate/library_behind.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace sweep {
namespace {

int Number(const char* variable) {
    return std::atoi(platform::GetEnvironment(variable).c_str());
}

std::string CallName(const char* entry, const CallObject& object) {
    std::ostringstream name;
    name << entry;
    if (object.feature) {
        name << '(' << object.feature << ')';
    } else if (object.address != 0) {
        name << "(0x" << std::hex << object.address << ')';
    }
    return name.str();
}

/// From `enter` to `leave`.
class HookedScope {
public:
    explicit HookedScope(const GateHooks& gateHooks) : hooks(gateHooks) {
        if (hooks.enter) {
            hooks.enter();
        }
    }
    ~HookedScope() {
        if (hooks.leave) {
            hooks.leave();
        }
    }
    HookedScope(const HookedScope&) = delete;
    HookedScope& operator=(const HookedScope&) = delete;

private:
    const GateHooks& hooks;
};

/// The order in force and the calls since it was given.
class Gate {
public:
    // Never destroyed: threads of the SDK may come late.
    static Gate& Instance() {
        alignas(Gate) static unsigned char memory[sizeof(Gate)];
        static Gate* const gate = new (memory) Gate;
        return *gate;
    }

    void Give(const GateOrder* newOrder) {
        const platform::MutexLock lock(mutex);
        isCounting = newOrder;
        order = newOrder ? *newOrder : GateOrder{};
        calls = newOrder ? 0 : calls;
    }
    std::uint32_t Calls() {
        const platform::MutexLock lock(mutex);
        return calls;
    }
    Verdict Count(const char* entry, const CallObject& object) {
        const platform::MutexLock lock(mutex);
        if (isReporting) {
            names.push_back(CallName(entry, object));
            if (order.call && names.back() != order.call) {
                return {};
            }
        }
        if (!isCounting || ++calls != order.nth) {
            return {};
        }
        return {order.code, order.isDone};
    }
    void Report(std::FILE* file) {
        const platform::MutexLock lock(mutex);
        std::fprintf(file, "%d\n", order.nth != 0 && calls >= order.nth ? 1 : 0);
        for (const std::string& name : names) {
            std::fprintf(file, "%s\n", name.c_str());
        }
    }
    void SetHooks(const GateHooks* newHooks) { hooks = newHooks ? *newHooks : GateHooks{}; }
    const GateHooks& Hooks() const { return hooks; }

private:
    Gate() {
        const std::string programHooks = platform::GetEnvironment(kGateHooks);
        if (!programHooks.empty()) {
            SetHooks(reinterpret_cast<const GateHooks*>(
                static_cast<std::uintptr_t>(std::stoull(programHooks))));
        }
        const HookedScope scope(hooks);    // what the gate allocates is not the program's
        platform::KeepThisLibraryLoaded(); // a host unloads it at every end of its use
        if (!platform::GetEnvironment(kGateReport).empty()) {
            callToFail = platform::GetEnvironment(kGateCall);
            const GateOrder fromEnvironment{static_cast<std::uint32_t>(Number(kGateNth)),
                                            Number(kGateCode), Number(kGateIsDone) != 0,
                                            callToFail.empty() ? nullptr : callToFail.c_str()};
            Give(&fromEnvironment);
            isReporting = true;
        }
    }

    platform::Mutex mutex;
    bool isCounting GUARDED_BY(mutex) = false;
    GateOrder order GUARDED_BY(mutex);
    std::uint32_t calls GUARDED_BY(mutex) = 0;
    bool isReporting = false; // a program; names allocate, which a test may have refused
    std::string callToFail;
    std::vector<std::string> names GUARDED_BY(mutex);
    GateHooks hooks; // set while nobody calls
};

struct ReportAtTheEnd {
    // A gate that no call has made would be made at the end, within a library that is unloaded.
    ReportAtTheEnd() { Gate::Instance(); }
    ~ReportAtTheEnd() {
        const std::string path = platform::GetEnvironment(kGateReport);
        if (std::FILE* const file = path.empty() ? nullptr : std::fopen(path.c_str(), "w")) {
            Gate::Instance().Report(file);
            std::fclose(file);
        }
    }
};

const ReportAtTheEnd report;

} // namespace

LibraryBehind::LibraryBehind() {
    const SdkVisit visit;
    const std::string path = platform::GetEnvironment(kGateLibrary);
    std::string error;
    bool isComplete = library.Load(path, true, &error);
#define SWEEP_ENTRY(entry)                                                                         \
    entry = reinterpret_cast<decltype(entry)>(library.FindSymbol(#entry));                         \
    isComplete = isComplete && entry;
    PXN_ENTRIES(SWEEP_ENTRY)
#undef SWEEP_ENTRY
    if (!isComplete) {
        std::fprintf(stderr, "sweep gate: no camera SDK in %s: %s\n", path.c_str(), error.c_str());
        std::abort();
    }
    control = reinterpret_cast<decltype(control)>(library.FindSymbol("PxnControl"));
}

const LibraryBehind& LibraryBehind::Instance() {
    alignas(LibraryBehind) static unsigned char memory[sizeof(LibraryBehind)];
    static const LibraryBehind* const behind = new (memory) LibraryBehind;
    return *behind;
}

SdkVisit::SdkVisit() {
    if (Gate::Instance().Hooks().enter) {
        Gate::Instance().Hooks().enter();
    }
}

SdkVisit::~SdkVisit() {
    if (Gate::Instance().Hooks().leave) {
        Gate::Instance().Hooks().leave();
    }
}

Verdict BeginCall(const char* entry, const CallObject& object) {
    if (Gate::Instance().Hooks().write) {
        Gate::Instance().Hooks().write();
    }
    return Gate::Instance().Count(entry, object);
}

} // namespace sweep

extern "C" {
PXN_API void SweepGiveGateOrder(const sweep::GateOrder* order);
PXN_API std::uint32_t SweepCountGateCalls();
PXN_API void SweepSetGateHooks(const sweep::GateHooks* hooks);
PXN_API std::int32_t PxnControl(const char* command, char* answer, std::uint32_t answerSize);
}

void SweepGiveGateOrder(const sweep::GateOrder* order) {
    sweep::Gate::Instance().Give(order);
}

std::uint32_t SweepCountGateCalls() {
    return sweep::Gate::Instance().Calls();
}

void SweepSetGateHooks(const sweep::GateHooks* hooks) {
    sweep::Gate::Instance().SetHooks(hooks);
}

std::int32_t PxnControl(const char* command, char* answer, std::uint32_t answerSize) {
    const auto control = sweep::LibraryBehind::Instance().control;
    return control ? control(command, answer, answerSize) : PxnErrNotImplemented;
}
