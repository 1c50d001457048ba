// library.h - what stands between the host and an SDK in this process
#pragma once

#include "platform/shared_library.h"
#include "pxnc.h"
#include "pxnc/trace/callbacks.h"
#include "pxnc/trace/player.h"
#include "pxnc/trace/recorder.h"
#include "pxnc_entries.h"

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

namespace sdktrace {

using ControlFunction = std::int32_t (*)(const char* command, char* answer,
                                         std::uint32_t answerSize);

/// The functions of the SDK behind; null while there is none.
struct SdkFunctions {
#define PXN_TRACE_MEMBER(name) decltype(&::name) name = nullptr;
    PXN_ENTRIES(PXN_TRACE_MEMBER)
#undef PXN_TRACE_MEMBER
    ControlFunction control = nullptr;
};

/// Set up once, from the environment, by the first call of the process (docs/sdk-trace.md has the
/// variables), and never torn down: threads of the SDK may be inside until the end. Any thread.
class Library {
public:
    static Library& Instance();

    /// The SDK behind, or null when the session is played back or nothing could be loaded.
    const SdkFunctions* Behind() const { return isReady && !player ? &functions : nullptr; }
    /// What plays a trace back, or null.
    Player* GetPlayer() const { return player.get(); }
    /// What traces, or null.
    Recorder* GetRecorder() const { return recorder.get(); }
    /// The file version of the library behind, or that of the trace.
    const LibraryVersion& Version() const { return version; }

    /// Ends the trace, and reports when a session that is played back was left early. True when
    /// nothing differed. Any number of times.
    bool Finish() noexcept;

private:
    Library() noexcept;

    bool SetUp(std::string& problem);
    bool LoadBehind(const std::string& home, std::string& problem);
    bool BeginTrace(const std::string& path, std::string& problem);

    platform::SharedLibrary behind;
    SdkFunctions functions;
    LibraryVersion version;
    std::unique_ptr<Recorder> recorder;
    std::unique_ptr<Player> player;
    bool isReady = false;
};

/// Passes a call on, or plays it back, and traces it.
template <typename Function, typename... Arguments>
std::int32_t Pass(Entry entry, Function SdkFunctions::*function, Arguments... arguments) noexcept {
    Library& library = Library::Instance();
    Recorder* const recorder = library.GetRecorder();
    const Words words = ToWords(arguments...);
    const std::uint64_t call = recorder ? recorder->BeginCall(entry, words) : 0;
    std::int32_t result = PxnErrNotInitialized;
    if (Player* const player = library.GetPlayer()) {
        result = player->Call(entry, ToWords(Substitute(arguments)...));
    } else if (const SdkFunctions* const sdk = library.Behind()) {
        if constexpr (std::is_void_v<decltype((sdk->*function)(arguments...))>) {
            (sdk->*function)(Substitute(arguments)...);
            result = PxnErrSuccess;
        } else {
            result = (sdk->*function)(Substitute(arguments)...);
        }
    }
    if (recorder) {
        recorder->EndCall(call, entry, words, result);
    }
    return result;
}

} // namespace sdktrace
