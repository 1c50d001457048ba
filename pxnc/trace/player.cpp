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

bool IsAcquisitionStop(Entry entry, const std::vector<Value>& arguments) {
    return entry == Entry::kPxnFeatureCommandRun && arguments.size() > 1 &&
           arguments[1].text == "AcquisitionStop";
}

/// "script /tmp/a" is the same command as "script b/a".
bool IsSameCommand(const std::string& left, const std::string& right) {
    const std::size_t blank = left.find(' ');
    return left == right ||
           (blank != std::string::npos && left.substr(0, blank + 1) == right.substr(0, blank + 1) &&
            FileNameOf(left.substr(blank + 1)) == FileNameOf(right.substr(blank + 1)));
}

} // namespace

Player::Player(std::string file, Trace traced, std::chrono::milliseconds patienceToHave)
    : path(std::move(file)),
      patience(patienceToHave),
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

Player::~Player() {
    {
        const Lock lock(mutex);
        differs = true; // so that no further callback is made
        changed.notify_all();
    }
    for (std::thread& thread : playing) {
        thread.join();
    }
}

std::unique_ptr<Player> Player::Open(const std::string& path, std::string& problem,
                                     std::chrono::milliseconds patience) {
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
    std::unique_ptr<Player> player(new Player(path, std::move(trace), patience));
    player->Start();
    return player;
}

void Player::Start() {
    for (Thread& thread : threads) {
        if (!thread.isHost) {
            playing.emplace_back([this, &thread] { PlayThread(thread); });
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
    if (thread && thread->isStopMoved && IsOtherFlush(*thread, entry)) {
        return PxnErrSuccess;
    }
    if (thread && IsAcquisitionStop(entry, now) && !IsNextCall(*thread, entry, now)) {
        TakeOverStop(*thread, entry, now);
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
    if (!differs &&
        (!next || next->partner == Event::kNone || &trace.events[next->partner] != &begin)) {
        Differ(thread, "the trace ends inside " + BeginText(begin));
    }
    if (!differs && thread->isHost) {
        WaitForCallbacksBefore(thread->events[thread->next], begin.time, lock);
    }
    if (differs) {
        return PxnErrOther;
    }
    store.StoreResults(entry, words, next->result, next->values);
    if (next->result == PxnErrSuccess) {
        match.Forget(entry, begin.values);
    }
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
        const Event& end = trace.events[traced->partner];
        results = end.values.empty() ? results : end.values;
        result = end.result;
    }
    store.StoreResults(Entry::kPxnControl, words, result, results);
    return result;
}

Player::Thread* Player::FindThread(Entry entry, const std::vector<Value>& now) {
    if (binding.player == id) {
        return static_cast<Thread*>(binding.thread);
    }
    // A thread of its own may end a snap that in the trace ends on the thread that stops it.
    const bool isStop = IsAcquisitionStop(entry, now);
    Thread* found = nullptr;
    for (Thread& thread : threads) {
        if (thread.isHost && (isStop || !thread.isBound) && IsNextCall(thread, entry, now) &&
            (!found || thread.events[thread.next] < found->events[found->next])) {
            found = &thread;
        }
    }
    if (found) {
        found->isStopMoved = found->isBound;
        found->isBound = true;
        binding = {id, found};
    }
    return found;
}

bool Player::IsNextCall(const Thread& thread, Entry entry, const std::vector<Value>& now) const {
    const Event* const next = Next(thread);
    return next && next->type == RecordType::kCallBegin && next->entry == entry &&
           match.Matches(entry, next->values, now);
}

bool Player::IsNextEntry(const Thread& thread, Entry entry) const {
    const Event* const next = Next(thread);
    return next && next->entry == entry;
}

void Player::TakeOverStop(Thread& thread, Entry entry, const std::vector<Value>& now) {
    for (Thread& other : threads) {
        if (other.isHost && !other.isBound && IsNextCall(other, entry, now)) {
            for (const std::size_t event : other.events) {
                threadOf[event] = &thread;
            }
            thread.events.insert(thread.events.begin() + static_cast<std::ptrdiff_t>(thread.next),
                                 other.events.begin(), other.events.end());
            thread.isStopMoved = true;
            other.events.clear();
            other.isBound = true;
            return;
        }
    }
}

bool Player::IsOtherFlush(Thread& thread, Entry entry) {
    constexpr Entry kFlush = Entry::kPxnCaptureQueueFlush;
    if (entry == Entry::kPxnFrameRevokeAll) {
        thread.isStopMoved = false;
        for (int record = 0; record < 2 && IsNextEntry(thread, kFlush); ++record) {
            Advance(thread); // its beginning, its end
        }
    }
    return entry == kFlush && IsNextEntry(thread, Entry::kPxnFrameRevokeAll);
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
    if (values.empty()) {
        return false; // it was too big
    }
    auto* const handle = ToPointer<void>(values[1].word);
    switch (begin.entry) {
    case Entry::kFrameCallback: {
        const auto callback = match.Current(Pointee::kFrameCallback, values[0].word);
        const auto word = match.Current(Pointee::kFrame, values[3].word);
        if (callback.value_or(0) == 0 || word.value_or(0) == 0) {
            return false;
        }
        auto* const frame = ToPointer<PxnFrame>(*word);
        store.StoreFrame(*frame, values[3]);
        lock.unlock();
        reinterpret_cast<PxnFrameCallback> (*callback)(handle, ToPointer<void>(values[2].word),
                                                       frame);
        break;
    }
    case Entry::kInvalidationCallback: {
        const auto callback = match.Current(Pointee::kInvalidationCallback, values[0].word);
        const auto context = match.Current(Pointee::kInvalidationContext, values[3].word);
        if (callback.value_or(0) == 0 || !context) {
            return false;
        }
        const char* const name = store.Keep(values[2]);
        lock.unlock();
        reinterpret_cast<PxnInvalidationCallback> (*callback)(handle, name,
                                                              ToPointer<void>(*context));
        break;
    }
    default: {
        const auto callback = match.Current(Pointee::kChunkCallback, values[0].word);
        const auto context = match.Current(Pointee::kChunkContext, values[2].word);
        if (callback.value_or(0) == 0 || !context) {
            return false;
        }
        lock.unlock();
        try {
            reinterpret_cast<PxnChunkAccessCallback> (*callback)(handle, ToPointer<void>(*context));
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
    const auto limit = patience + std::chrono::nanoseconds(trace.events[end].time - beginTime);
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
