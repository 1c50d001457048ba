// commands.cpp - the lines of the control interface
#include "pxnc/simulator/commands.h"

#include "platform/printable_text.h"
#include "pxnc/simulator/script.h"
#include "pxnc/simulator/sdk.h"
#include "pxnc/skeleton/clock.h"
#include "pxnc/skeleton/condition.h"
#include "pxnc/skeleton/number_text.h"
#include "pxnc_entries.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

namespace pxsim {
namespace {

/// A refused command; the reason is the answer.
struct Refusal {
    PxnError code;
    std::string reason;
};

using Words = std::vector<std::string>;

constexpr std::uint32_t kLongestMs = 24 * 60 * 60 * 1000;
constexpr const char* kUpToADay = "a number of milliseconds up to a day";
constexpr const char* kClockUsage = "clock stop|start|next, clock advance MS";

[[noreturn]] void Refuse(PxnError code, const std::string& reason) {
    throw Refusal{code, reason};
}

std::int64_t Number(const std::string& word) {
    std::int64_t value = 0;
    if (!skeleton::ParseInt(word, value)) {
        Refuse(PxnErrBadParameter, "\"" + word + "\" is not a number");
    }
    return value;
}

std::uint64_t Count(const std::string& word) {
    const std::int64_t value = Number(word);
    if (value < 0) {
        Refuse(PxnErrBadParameter, "\"" + word + "\" is negative");
    }
    return static_cast<std::uint64_t>(value);
}

std::uint32_t AtMost(std::uint32_t most, const std::string& word, const char* what) {
    const std::uint64_t value = Count(word);
    if (value > most) {
        Refuse(PxnErrBadParameter, "\"" + word + "\" is not " + what);
    }
    return static_cast<std::uint32_t>(value);
}

PxnError Code(const std::string& word) {
    const std::int64_t value = Number(word);
    if (value < -1000 || value > 1000) {
        Refuse(PxnErrBadParameter, "\"" + word + "\" is not a result code");
    }
    return static_cast<PxnError>(value);
}

std::uint64_t CallNumber(const std::string& word) {
    const std::uint64_t call = Count(word);
    if (call == 0) {
        Refuse(PxnErrBadParameter, "calls are counted from 1");
    }
    return call;
}

bool IsEntryName(const std::string& word) {
#define PXSIM_ENTRY_NAME(name) #name,
    static constexpr std::string_view kNames[] = {PXN_ENTRIES(PXSIM_ENTRY_NAME)};
#undef PXSIM_ENTRY_NAME
    return std::find(std::begin(kNames), std::end(kNames), word) != std::end(kNames);
}

// "any" means all entry points.
const std::string& Entry(const std::string& word) {
    if (word != "any" && !IsEntryName(word)) {
        Refuse(PxnErrNotFound, "no entry point \"" + word + "\"");
    }
    return word;
}

/// The entry points that return lists.
const std::string& ListEntry(const std::string& word) {
    static constexpr std::string_view kLists[] = {
        "PxnCamerasList",         "PxnFeaturesList",
        "PxnFeatureListSelected", "PxnFeatureIntValidValueSetQuery",
        "PxnInterfacesList",      "PxnFeatureEnumRangeQuery",
        "PxnTransportLayersList"};
    if (std::find(std::begin(kLists), std::end(kLists), Entry(word)) == std::end(kLists)) {
        Refuse(PxnErrBadParameter, "\"" + word + "\" does not return a list");
    }
    return word;
}

std::shared_ptr<Simulator> Running() {
    std::shared_ptr<Simulator> simulator = TheSdk().Current();
    if (!simulator) {
        Refuse(PxnErrApiNotStarted, "the SDK is not started");
    }
    return simulator;
}

Camera& CameraOf(Simulator& simulator, const std::string& id) {
    Camera* camera = simulator.FindCamera(id);
    if (!camera) {
        Refuse(PxnErrNotFound, "no camera \"" + id + "\"");
    }
    return *camera;
}

FrameFault FaultOf(const std::string& word) {
    static constexpr std::array<std::pair<const char*, FrameFault>, 5> kKinds{
        {{"incomplete", FrameFault::kIncomplete},
         {"small", FrameFault::kTooSmall},
         {"late", FrameFault::kLate},
         {"drop", FrameFault::kDropped},
         {"duplicate", FrameFault::kDuplicate}}};
    for (const auto& [name, fault] : kKinds) {
        if (word == name) {
            return fault;
        }
    }
    Refuse(PxnErrBadParameter, "\"" + word + "\" is not a kind of frame fault");
}

std::string JoinFrom(const Words& words, std::size_t first) {
    std::string line = words[first];
    for (std::size_t i = first + 1; i < words.size(); ++i) {
        line += " " + words[i];
    }
    return line;
}

std::string SetPlugged(const Words& words, bool plugged) {
    const std::shared_ptr<Simulator> simulator = Running();
    if (!simulator->SetPlugged(CameraOf(*simulator, words[1]), plugged)) {
        Refuse(PxnErrAlready, plugged ? "already plugged" : "already unplugged");
    }
    return "ok";
}

std::string SetFrameFaults(const Words& words) {
    const FrameFault fault = FaultOf(words[1]);
    std::vector<std::uint64_t> frames;
    std::istringstream numbers(words[2]);
    for (std::string number; std::getline(numbers, number, ',');) {
        frames.push_back(Count(number));
    }
    for (const std::uint64_t frame : frames) {
        Faults::Instance().SetFrameFault(fault, frame);
    }
    return "ok";
}

std::string SetFeature(const Words& words) {
    const std::shared_ptr<Simulator> simulator = Running();
    Camera& camera = CameraOf(*simulator, words[1]);
    platform::MutexLock lock(camera.ValueMutex());
    Feature* feature = camera.Find(words[2].c_str());
    if (!feature) {
        Refuse(PxnErrNotFound, "no feature \"" + words[2] + "\"");
    }
    const std::string value = JoinFrom(words, 3);
    PxnError result = WriteAsText(*feature, value);
    if (result == PxnErrInvalidAccess) {
        // A feature that a host may not write at present can still change by itself.
        result = feature->PutText(value) ? PxnErrSuccess : PxnErrInvalidValue;
    }
    if (result != PxnErrSuccess) {
        Refuse(result, "the feature cannot have the value \"" + value + "\"");
    }
    return "ok";
}

template <typename Action>
void ForEachPort(Simulator& simulator, Action action) {
    for (const auto& camera : simulator.Cameras()) {
        for (std::size_t port = 0; Uart* uart = camera->Registers().Port(port); ++port) {
            action(*uart);
        }
    }
}

std::string SetUartFault(const Words& words) {
    const std::shared_ptr<Simulator> simulator = Running();
    const std::uint64_t port = Count(words[1]);
    Uart::Fault fault = Uart::Fault::kNone;
    if (words[2] == "stuck") {
        fault = Uart::Fault::kStuck;
    } else if (words[2] == "slow") {
        fault = Uart::Fault::kSlow;
    } else if (words[2] != "ok") {
        Refuse(PxnErrBadParameter, "\"" + words[2] + "\" is not stuck, slow or ok");
    }
    bool any = false;
    for (const auto& camera : simulator->Cameras()) {
        if (words.size() > 3 && !camera->HasId(words[3].c_str())) {
            continue;
        }
        if (Uart* uart = camera->Registers().Port(port)) {
            uart->SetFault(fault);
            any = true;
        }
    }
    if (!any) {
        Refuse(PxnErrNotFound, "no camera has port " + words[1]);
    }
    return "ok";
}

std::string Trigger(const Words& words) {
    const std::shared_ptr<Simulator> simulator = Running();
    if (const PxnError result = CameraOf(*simulator, words[1]).LineTrigger();
        result != PxnErrSuccess) {
        Refuse(result, "the camera is not waiting for a line trigger");
    }
    return "ok";
}

std::string SetAccess(const Words& words) {
    static constexpr std::array<std::pair<const char*, std::uint32_t>, 4> kAccess{
        {{"full", PxnAccessModeFull | PxnAccessModeRead},
         {"read", PxnAccessModeRead},
         {"none", 0},
         {"unknown", PxnAccessModeUnknown}}};
    const std::shared_ptr<Simulator> simulator = Running();
    Camera& camera = CameraOf(*simulator, words[1]);
    for (const auto& [name, access] : kAccess) {
        if (words[2] == name) {
            camera.SetPermittedAccess(access);
            simulator->RaiseCameraEvent(access == 0 ? "Unreachable" : "Reachable", camera);
            return "ok";
        }
    }
    Refuse(PxnErrBadParameter, "\"" + words[2] + "\" is not full, read, none or unknown");
}

std::string RaiseInterfaceEvent(const Words& words) {
    const std::shared_ptr<Simulator> simulator = Running();
    const char* type = words[2] == "detected"  ? "Detected"
                       : words[2] == "missing" ? "Missing"
                                               : nullptr;
    if (!type) {
        Refuse(PxnErrBadParameter, "\"" + words[2] + "\" is not detected or missing");
    }
    if (!simulator->RaiseInterfaceEvent(type, words[1])) {
        Refuse(PxnErrNotFound, "no interface \"" + words[1] + "\"");
    }
    return "ok";
}

std::string FrameAge(const Words&) {
    const std::optional<skeleton::Clock::time_point> taken = AcquisitionEngine::CurrentFrameTime();
    if (!taken) {
        Refuse(PxnErrInvalidCall, "no frame callback is running on this thread");
    }
    return std::to_string((skeleton::Clock::now() - *taken).count());
}

std::string Script(const Words& words) {
    std::string answer;
    if (const std::int32_t result = RunScriptFile(words[1], answer); result != PxnErrSuccess) {
        Refuse(result, answer);
    }
    return answer;
}

/// Sums over all cameras and streams.
struct Totals {
    explicit Totals(const Simulator& simulator) {
        for (const auto& camera : simulator.Cameras()) {
            opened += camera->OpenedCount();
            closed += camera->ClosedCount();
            openCameras += camera->OpenHandleCount();
            for (const auto& stream : camera->Streams()) {
                Add(stream->Engine());
            }
        }
    }

    std::uint64_t announced = 0, revoked = 0, revokedByClose = 0, queued = 0, completed = 0,
                  flushed = 0, dropped = 0, callbacks = 0, opened = 0, closed = 0, openCameras = 0;

private:
    void Add(const AcquisitionEngine& engine) {
        const skeleton::FrameCounts& counts = engine.Counts();
        announced += counts.announced;
        revoked += counts.revoked;
        revokedByClose += counts.revokedByClose;
        queued += counts.queued;
        completed += counts.completed;
        flushed += counts.flushed;
        callbacks += counts.callbacks;
        dropped += engine.DroppedFrames();
    }
};

std::string Status(const Words&) {
    const std::shared_ptr<Simulator> simulator = Running();
    const Totals totals(*simulator);
    const skeleton::Invalidations::Counts& registrations = simulator->Changes().GetCounts();
    std::ostringstream out;
    out << "{\"calls\":" << Faults::Instance().CallCount() << ",\"announced\":" << totals.announced
        << ",\"revoked\":" << totals.revoked << ",\"revokedByClose\":" << totals.revokedByClose
        << ",\"queued\":" << totals.queued << ",\"completed\":" << totals.completed
        << ",\"flushed\":" << totals.flushed << ",\"dropped\":" << totals.dropped
        << ",\"callbacks\":" << totals.callbacks << ",\"opened\":" << totals.opened
        << ",\"closed\":" << totals.closed << ",\"openCameras\":" << totals.openCameras
        << ",\"registered\":" << registrations.registered
        << ",\"unregistered\":" << registrations.unregistered
        << ",\"unregisteredByClose\":" << registrations.unregisteredByClose
        << ",\"registrations\":" << simulator->Changes().List().size() << "}";
    return out.str();
}

bool IsCommandName(const std::string& word);

/// The line that begins with that word, to run at another time.
std::string LineFrom(const Words& words, std::size_t first) {
    if (!IsCommandName(words[first])) {
        Refuse(PxnErrBadParameter, "no command \"" + words[first] + "\"; try help");
    }
    return JoinFrom(words, first);
}

std::string RunLater(const Words& words) {
    const std::uint64_t delayMs = AtMost(kLongestMs, words[1], kUpToADay);
    const std::string line = LineFrom(words, 2);
    if (!Running()->Delayed().Add(delayMs, line)) {
        Refuse(PxnErrResources, "no thread can be started");
    }
    return "ok";
}

std::string RunAtCall(const Words& words) {
    const std::string& entry = Entry(words[1]);
    const std::uint64_t call = CallNumber(words[2]);
    Faults::Instance().RunAtCall(entry, call, LineFrom(words, 3));
    return "ok";
}

std::string NextTime() {
    const std::optional<skeleton::Clock::time_point> next = skeleton::NextTimedWait();
    if (!next) {
        return "none";
    }
    return std::to_string(
        std::max(*next - skeleton::Clock::now(), skeleton::Clock::duration::zero()).count());
}

std::string AdvanceClockBy(const std::string& word) {
    if (!skeleton::AdvanceClock(std::chrono::milliseconds(AtMost(kLongestMs, word, kUpToADay)))) {
        Refuse(PxnErrInvalidCall, "the clock is running; stop it first");
    }
    if (const std::shared_ptr<Simulator> simulator = TheSdk().Current()) {
        simulator->Delayed().WaitForDueLines();
    }
    return "ok";
}

std::string ControlClock(const Words& words) {
    const bool takesTime = words[1] == "advance";
    if (takesTime != (words.size() == 3)) {
        Refuse(PxnErrBadParameter, std::string("usage: ") + kClockUsage);
    }
    if (takesTime) {
        return AdvanceClockBy(words[2]);
    }
    if (words[1] == "next") {
        return NextTime();
    }
    if (words[1] == "stop") {
        skeleton::StopClock();
    } else if (words[1] == "start") {
        skeleton::StartClock();
    } else {
        Refuse(PxnErrBadParameter, "\"" + words[1] + "\" is not stop, start, next or advance");
    }
    return "ok";
}

std::string Help(const Words&);

struct ControlCommand {
    const char* name;
    std::size_t least; // words after the name
    std::size_t most;
    const char* usage;
    std::string (*run)(const Words&);
};

constexpr std::size_t kAnyNumber = 1000;
constexpr std::size_t kRestOfLine = 1001; // one argument, including blanks

constexpr ControlCommand kCommands[] = {
    {"plug", 1, 1, "plug ID",
     [](const Words& words) {
         return SetPlugged(words, true);
     }},
    {"unplug", 1, 1, "unplug ID",
     [](const Words& words) {
         return SetPlugged(words, false);
     }},
    {"plug-at", 2, 2, "plug-at FRAME ID",
     [](const Words& words) {
         Faults::Instance().Schedule({Count(words[1]), true, words[2]});
         return std::string("ok");
     }},
    {"unplug-at", 1, 2, "unplug-at FRAME [ID]",
     [](const Words& words) {
         Faults::Instance().Schedule(
             {Count(words[1]), false, words.size() > 2 ? words[2] : std::string()});
         return std::string("ok");
     }},
    {"after", 2, kAnyNumber, "after MS COMMAND", RunLater},
    {"at-call", 3, kAnyNumber, "at-call ENTRY N COMMAND", RunAtCall},
    {"clock", 1, 2, kClockUsage, ControlClock},
    {"fail", 3, 3, "fail ENTRY N CODE",
     [](const Words& words) {
         const std::uint64_t call = CallNumber(words[2]);
         Faults::Instance().FailCall(Entry(words[1]), call, Code(words[3]));
         return std::string("ok");
     }},
    {"fail-always", 2, 2, "fail-always ENTRY CODE",
     [](const Words& words) {
         Faults::Instance().FailAlways(Entry(words[1]), Code(words[2]));
         return std::string("ok");
     }},
    {"delay", 2, 2, "delay ENTRY MS",
     [](const Words& words) {
         Faults::Instance().Delay(Entry(words[1]), AtMost(kLongestMs, words[2], kUpToADay));
         return std::string("ok");
     }},
    {"stuck", 1, 1, "stuck ENTRY",
     [](const Words& words) {
         Faults::Instance().Stick(Entry(words[1]));
         return std::string("ok");
     }},
    {"count-change", 2, 2, "count-change ENTRY N",
     [](const Words& words) {
         Faults::Instance().ChangeCount(ListEntry(words[1]), Number(words[2]));
         return std::string("ok");
     }},
    {"frame", 2, 2, "frame incomplete|small|late|drop|duplicate N[,M...]", SetFrameFaults},
    {"frame-random", 3, 3, "frame-random SEED PERCENT KIND",
     [](const Words& words) {
         Faults::Instance().SetRandomFrames(AtMost(0xFFFFFFFF, words[1], "a number of 32 bits"),
                                            AtMost(100, words[2], "a percentage"),
                                            FaultOf(words[3]));
         return std::string("ok");
     }},
    {"trigger", 1, 1, "trigger ID", Trigger},
    {"access", 2, 2, "access ID full|read|none|unknown", SetAccess},
    {"interface-event", 2, 2, "interface-event INTERFACE detected|missing", RaiseInterfaceEvent},
    {"uart", 2, 3, "uart PORT stuck|slow|ok [ID]", SetUartFault},
    {"set", 3, kAnyNumber, "set ID FEATURE VALUE", SetFeature},
    {"leaks", 0, 0, "leaks",
     [](const Words&) {
         return TheSdk().LastLeakReport();
     }},
    {"clear", 0, 0, "clear",
     [](const Words&) {
         Faults::Instance().Clear();
         ForgetWaitingLines();
         skeleton::StartClock();
         if (const std::shared_ptr<Simulator> simulator = TheSdk().Current()) {
             ForEachPort(*simulator, [](Uart& port) { port.SetFault(Uart::Fault::kNone); });
             simulator->Delayed().Clear();
         }
         return std::string("ok");
     }},
    {"drain", 0, 0, "drain",
     [](const Words&) {
         Running()->Changes().Drain();
         return std::string("ok");
     }},
    {"script", 1, kRestOfLine, "script FILE", Script},
    {"frame-age", 0, 0, "frame-age", FrameAge},
    {"status", 0, 0, "status", Status},
    {"help", 0, 0, "help", Help},
};

bool IsCommandName(const std::string& word) {
    return std::any_of(std::begin(kCommands), std::end(kCommands),
                       [&word](const ControlCommand& command) { return word == command.name; });
}

std::string Help(const Words&) {
    std::string text;
    for (const ControlCommand& command : kCommands) {
        text += command.usage;
        text += '\n';
    }
    return text;
}

/// The line after its first word, without surrounding blanks.
std::string RestOfLine(const std::string& line) {
    constexpr const char* kBlanks = " \t\r\n";
    const std::size_t end = line.find_last_not_of(kBlanks) + 1;
    std::size_t begin = line.find_first_of(kBlanks, line.find_first_not_of(kBlanks));
    begin = line.find_first_not_of(kBlanks, begin);
    return line.substr(begin, end - begin);
}

} // namespace

std::int32_t RunCommand(const std::string& line, std::string& answer) {
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    try {
        if (words.empty()) {
            Refuse(PxnErrBadParameter, "no command; try help");
        }
        for (const ControlCommand& command : kCommands) {
            if (words[0] != command.name) {
                continue;
            }
            const std::size_t arguments = words.size() - 1;
            if (arguments < command.least || arguments > command.most) {
                Refuse(PxnErrBadParameter, std::string("usage: ") + command.usage);
            }
            if (command.most == kRestOfLine) {
                words = {words[0], RestOfLine(line)};
            }
            answer = command.run(words);
            return PxnErrSuccess;
        }
        Refuse(PxnErrBadParameter, "no command \"" + words[0] + "\"; try help");
    } catch (const Refusal& refusal) {
        answer = refusal.reason;
        return refusal.code;
    }
}

void RunUnattended(const std::string& line) {
    std::string answer;
    if (RunCommand(line, answer) < 0) {
        std::fprintf(stderr, "PxnC: %s: %s\n", platform::PrintableText(line).c_str(),
                     platform::PrintableText(answer).c_str());
    }
}

} // namespace pxsim
