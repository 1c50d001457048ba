// player.cpp - a session from a trace, without its camera
#include "pxnc/trace/player.h"

#include "platform/printable_text.h"
#include "pxnc/trace/event_text.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <exception>
#include <map>
#include <thread>
#include <utility>

namespace sdktrace {
namespace {

/// How much longer than in the trace a call waits for callbacks. Two threads that wait for each
/// other because this session interleaves them differently go on after it.
constexpr std::chrono::seconds kPatience{1};

/// Which thread of a player's trace this thread is.
struct Binding {
    unsigned player = 0;
    void* thread = nullptr;
};
thread_local Binding binding;

std::atomic<unsigned> players{0};

std::string SecondsText(std::uint64_t nanoseconds) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.6f s", static_cast<double>(nanoseconds) * 1e-9);
    return text.data();
}

std::string BeginText(const Event& begin) {
    return EventText(Identity::kAddress, Detail::kShort).Begin(begin);
}

/// "script /tmp/a" is the same command as "script b/a".
bool IsSameCommand(const std::string& left, const std::string& right) {
    const std::size_t blank = left.find(' ');
    return left == right ||
           (blank != std::string::npos && left.substr(0, blank + 1) == right.substr(0, blank + 1) &&
            FileNameOf(left.substr(blank + 1)) == FileNameOf(right.substr(blank + 1)));
}

} // namespace

Player::Player(std::string file, Trace traced)
    : path(std::move(file)),
      trace(std::move(traced)),
      threadOf(trace.events.size()),
      id(++players),
      doneAt(trace.events.size()) {
    std::map<std::uint32_t, Thread*> byNumber;
    for (std::size_t i = 0; i < trace.events.size(); ++i) {
        const Event& event = trace.events[i];
        if (event.entry == Entry::kPxnControl) {
            continue;
        }
        Thread*& thread = byNumber[event.thread];
        if (!thread) {
            thread = &threads.emplace_back();
            thread->number = event.thread;
            thread->isHost = !IsCallback(event);
        }
        thread->events.push_back(i);
        threadOf[i] = thread;
    }
    FindOpen(false);
    FindOpen(true);
}

std::unique_ptr<Player> Player::Open(const std::string& path, std::string& problem) {
    Trace trace;
    if (!ReadTrace(path, trace, problem)) {
        problem = "cannot play back " + path + ": " + problem;
        return nullptr;
    }
    if (!trace.hasBeginning) {
        problem = "cannot play back " + path +
                  ": its beginning has been overwritten; it wants a bigger file";
        return nullptr;
    }
    std::unique_ptr<Player> player(new Player(path, std::move(trace)));
    player->Start();
    return player;
}

void Player::Start() {
    for (Thread& thread : threads) {
        if (!thread.isHost) {
            std::thread([this, &thread] { PlayThread(thread); }).detach();
        }
    }
}

PxnError Player::Call(Entry entry, const Words& words) noexcept {
    try {
        Lock lock(mutex);
        return entry == Entry::kPxnControl ? PlayControl(words) : Play(entry, words, lock);
    } catch (const std::exception&) {
        return PxnErrResources;
    }
}

PxnError Player::Play(Entry entry, const Words& words, Lock& lock) {
    if (differs) {
        return PxnErrOther;
    }
    const std::vector<Value> now = ValuesOf(entry, words);
    Thread* const thread = FindThread(entry, now);
    if (thread && thread->isInFrameCallback) {
        if (entry != Entry::kPxnCaptureFrameQueue) {
            SkipQueueing(*thread);
        } else if (!IsNextCall(*thread, entry, now)) {
            return PxnErrSuccess;
        }
    }
    if (!thread || !IsNextCall(*thread, entry, now)) {
        DifferAtCall(thread, entry, now);
        return PxnErrOther;
    }
    const Event& begin = *Next(*thread);
    match.Learn(entry, begin.values, now);
    Advance(*thread);
    const Event* next = Next(*thread);
    for (; next && next->type == RecordType::kCallbackBegin && !differs; next = Next(*thread)) {
        PlayCallback(*thread, lock);
    }
    if (!differs && (!next || next->type != RecordType::kCallEnd)) {
        Differ(thread, "the trace ends inside " + BeginText(begin));
    }
    if (!differs && thread->isHost) {
        WaitForCallbacksBefore(thread->events[thread->next], begin.time, lock);
    }
    if (differs) {
        return PxnErrOther;
    }
    store.StoreResults(entry, words, next->result, next->values);
    Advance(*thread);
    return next->result;
}

const Event* Player::FindControl(const std::string& command) {
    const Event* found = nullptr;
    for (std::size_t i = 0; i < trace.events.size(); ++i) {
        const Event& event = trace.events[i];
        const bool isIt = event.entry == Entry::kPxnControl &&
                          event.type == RecordType::kCallBegin && event.partner != Event::kNone &&
                          !event.values.empty() && IsSameCommand(event.values[0].text, command);
        if (isIt && i >= nextControl) {
            nextControl = i + 1;
            return &event;
        }
        found = isIt ? &event : found;
    }
    return found;
}

PxnError Player::PlayControl(const Words& words) {
    const auto* const command = ToPointer<const char>(words[0]);
    const Event* const traced = FindControl(command ? command : "");
    Value answer;
    answer.type = Value::Type::kText;
    answer.text = "the trace has no such command";
    std::vector<Value> results{{}, answer};
    PxnError result = PxnErrNotImplemented;
    if (traced) {
        results = trace.events[traced->partner].values;
        result = trace.events[traced->partner].result;
    }
    store.StoreResults(Entry::kPxnControl, words, result, results);
    return result;
}

Player::Thread* Player::FindThread(Entry entry, const std::vector<Value>& now) {
    if (binding.player == id) {
        return static_cast<Thread*>(binding.thread);
    }
    for (Thread& thread : threads) {
        if (thread.isHost && !thread.isBound && IsNextCall(thread, entry, now)) {
            thread.isBound = true;
            binding = {id, &thread};
            return &thread;
        }
    }
    return nullptr;
}

bool Player::IsNextCall(const Thread& thread, Entry entry, const std::vector<Value>& now) const {
    const Event* const next = Next(thread);
    return next && next->type == RecordType::kCallBegin && next->entry == entry &&
           match.Matches(entry, next->values, now);
}

const Event* Player::Next(const Thread& thread) const {
    return thread.next < thread.events.size() ? &trace.events[thread.events[thread.next]] : nullptr;
}

void Player::Advance(Thread& thread) {
    doneAt[thread.events[thread.next++]] = std::chrono::steady_clock::now();
    FindOpen(thread.isHost);
    changed.notify_all();
}

void Player::FindOpen(bool ofHost) {
    std::size_t& first = open[ofHost];
    while (first < trace.events.size() &&
           (!threadOf[first] || threadOf[first]->isHost != ofHost || doneAt[first] != Time{})) {
        ++first;
    }
}

void Player::SkipQueueing(Thread& thread) {
    const Event* next = Next(thread);
    while (next && next->entry == Entry::kPxnCaptureFrameQueue) {
        Advance(thread);
        next = Next(thread);
    }
}

void Player::PlayCallback(Thread& thread, Lock& lock) {
    const Event& begin = *Next(thread);
    const bool isFrame = begin.entry == Entry::kFrameCallback;
    Advance(thread);
    thread.isInFrameCallback = isFrame;
    if (!Invoke(begin, lock)) {
        Differ(&thread, "the session has nothing to receive " + BeginText(begin));
    }
    if (isFrame) {
        SkipQueueing(thread);
    }
    thread.isInFrameCallback = false;
    if (differs) {
        return;
    }
    const Event* const next = Next(thread);
    if (!next) {
        Differ(&thread, "the trace ends inside " + BeginText(begin));
    } else if (next->type != RecordType::kCallbackEnd) {
        Differ(&thread, "the trace has " + BeginText(*next) + " inside " + BeginText(begin) +
                            ", the module leaves it out");
    } else {
        Advance(thread);
    }
}

bool Player::Invoke(const Event& begin, Lock& lock) {
    const std::vector<Value>& values = begin.values;
    const std::uint64_t callback = values.empty() ? 0 : match.Current(values[0].word);
    if (callback == 0) {
        return false;
    }
    auto* const handle = ToPointer<void>(values[1].word);
    switch (begin.entry) {
    case Entry::kFrameCallback: {
        auto* const frame = ToPointer<PxnFrame>(match.Current(values[3].word));
        if (!frame) {
            return false;
        }
        store.StoreFrame(*frame, values[3]);
        lock.unlock();
        reinterpret_cast<PxnFrameCallback>(callback)(handle, ToPointer<void>(values[2].word),
                                                     frame);
        break;
    }
    case Entry::kInvalidationCallback: {
        const char* const name = store.Keep(values[2]);
        auto* const context = ToPointer<void>(match.Current(values[3].word));
        lock.unlock();
        reinterpret_cast<PxnInvalidationCallback>(callback)(handle, name, context);
        break;
    }
    default: {
        auto* const context = ToPointer<void>(match.Current(values[2].word));
        lock.unlock();
        try {
            reinterpret_cast<PxnChunkAccessCallback>(callback)(handle, context);
        } catch (...) {
            // The result in the trace says so.
        }
    }
    }
    lock.lock();
    return true;
}

void Player::PlayThread(Thread& thread) {
    try {
        Lock lock(mutex);
        binding = {id, &thread};
        while (thread.next < thread.events.size() &&
               WaitForTurn(thread.events[thread.next], lock)) {
            PlayCallback(thread, lock);
        }
    } catch (const std::exception&) {
        Lock lock(mutex);
        Differ(&thread, "out of memory");
    }
}

bool Player::WaitForTurn(std::size_t event, Lock& lock) {
    changed.wait(lock, [&] { return differs || IsDoneBefore(event, true); });
    std::size_t last = event;
    while (last > 0 && !(threadOf[last] && threadOf[last]->isHost)) {
        --last;
    }
    const auto pause = std::chrono::nanoseconds(trace.events[event].time - trace.events[last].time);
    const Time due =
        (doneAt[last] == Time{} ? std::chrono::steady_clock::now() : doneAt[last]) + pause;
    changed.wait_until(lock, due, [&] { return differs; });
    return !differs;
}

void Player::WaitForCallbacksBefore(std::size_t end, std::uint64_t beginTime, Lock& lock) {
    const auto limit = kPatience + std::chrono::nanoseconds(trace.events[end].time - beginTime);
    changed.wait_for(lock, limit, [&] { return differs || IsDoneBefore(end, false); });
}

void Player::Differ(const Thread* thread, const std::string& what) {
    if (differs) {
        return;
    }
    differs = true;
    std::string where;
    if (thread) {
        const Event* const next = Next(*thread);
        where = "thread " + std::to_string(thread->number) +
                (next ? " at " + SecondsText(next->time) : "") + ": ";
    }
    std::fprintf(stderr, "PxnC: %s\n",
                 platform::PrintableText(path + " differs: " + where + what).c_str());
    changed.notify_all();
}

void Player::DifferAtCall(const Thread* thread, Entry entry, const std::vector<Value>& now) {
    const std::string call = EventText(Identity::kAddress, Detail::kShort).Begin(entry, now);
    const Event* const next = thread ? Next(*thread) : nullptr;
    if (!thread) {
        Differ(nullptr, "in the trace no more threads begin, the module begins one with " + call);
    } else if (!next || !IsBegin(*next)) {
        Differ(thread, "the trace has no call here, the module calls " + call);
    } else {
        Differ(thread, "the trace has " + BeginText(*next) + ", the module calls " + call);
    }
}

bool Player::Finish() noexcept {
    try {
        // At the end of a process a thread that held the mutex may be gone.
        const Lock lock(mutex, std::try_to_lock);
        if (!lock.owns_lock()) {
            return !differs;
        }
        for (const Thread& thread : threads) {
            const Event* const next = Next(thread);
            if (thread.isHost && next) {
                Differ(&thread, "the session ends here, the trace has " +
                                    (IsBegin(*next) ? BeginText(*next) : "no end"));
            }
        }
    } catch (const std::exception&) {
        return false;
    }
    return !differs;
}

} // namespace sdktrace
