// player.h - a session from a trace, without its camera
#pragma once

#include "pxnc/trace/session_match.h"
#include "pxnc/trace/trace_reader.h"
#include "pxnc/trace/value_store.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sdktrace {

/// Answers the calls of each of the host's threads with the results in the trace, one after the
/// other, and makes the callbacks of the SDK's threads at their times.
///
/// A callback is made when all calls of the host that precede it in the trace have been made, and
/// as much later as it was then. A call of the host returns when the callbacks that precede its end
/// have been made. A call that differs from the trace is reported on standard error, once; from
/// then on all calls fail with PxnErrOther, and no callback is made. The trace tells nothing of
/// control commands that the host leaves out or adds.
///
/// Whether a frame is queued again while the acquisition is being stopped depends on time: queueing
/// inside a frame callback is no difference, made or left out. So does whether an asynchronous snap
/// is ended by a thread of its own or by the thread that stops it, which flushes as well: the end
/// may come on either thread.
///
/// Any thread.
class Player {
public:
    static constexpr std::chrono::milliseconds kPatience{1000};

    /// Null with a reason in `problem` when the file cannot be played back. Two threads that wait
    /// for each other because this session interleaves them differently go on after `patience`.
    static std::unique_ptr<Player> Open(const std::string& path, std::string& problem,
                                        std::chrono::milliseconds patience = kPatience);
    /// Waits for callbacks that are running. No call may be running.
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    const LibraryVersion& Version() const { return trace.libraryVersion; }
    PxnError Call(Entry entry, const Words& words) noexcept;
    /// True when the whole session was as in the trace; otherwise the difference has been reported.
    bool Finish() noexcept;

private:
    using Time = std::chrono::steady_clock::time_point;
    using Lock = std::unique_lock<std::mutex>;

    /// The events of one thread.
    struct Thread {
        std::uint32_t number = 0; // in the trace
        std::vector<std::size_t> events;
        std::size_t next = 0;
        bool isHost = true;
        bool isBound = false; // to a thread of this process
        bool isInFrameCallback = false;
        bool isStopMoved = false; // the end of a snap that the trace has on another thread
    };

    Player(std::string file, Trace traced, std::chrono::milliseconds patienceToHave);

    void Start();
    PxnError Play(Entry entry, const Words& words, Lock& lock);
    PxnError PlayControl(const Words& words);
    /// The next command of that text, or else the last; null when there is none.
    const Event* FindControl(const std::string& command);
    /// The trace's thread that this thread of the process is; null when it matches none.
    Thread* FindThread(Entry entry, const std::vector<Value>& now);
    bool IsNextCall(const Thread& thread, Entry entry, const std::vector<Value>& now) const;
    bool IsNextEntry(const Thread& thread, Entry entry) const;
    /// The thread ends a snap that in the trace ends on a thread of its own.
    void TakeOverStop(Thread& thread, Entry entry, const std::vector<Value>& now);
    /// True for a flush that the thread of a snap's end does not have in the trace. Leaves out one
    /// that is in the trace only.
    bool IsOtherFlush(Thread& thread, Entry entry);
    /// The thread's next event; null at its end.
    const Event* Next(const Thread& thread) const;
    void Advance(Thread& thread);
    void FindOpen(bool ofHost);
    /// Leaves out calls that queue a frame again.
    void SkipQueueing(Thread& thread);
    void PlayCallback(Thread& thread, Lock& lock);
    bool Invoke(const Event& begin, Lock& lock);
    /// Body of the threads that stand for those of the SDK.
    void PlayThread(Thread& thread);
    bool WaitForTurn(std::size_t event, Lock& lock);
    void WaitForCallbacksBefore(std::size_t end, std::uint64_t beginTime, Lock& lock);
    bool IsDoneBefore(std::size_t event, bool ofHost) const { return open[ofHost] >= event; }
    void Differ(const Thread* thread, const std::string& what);
    void DifferAtCall(const Thread* thread, Entry entry, const std::vector<Value>& now);

    const std::string path;
    const std::chrono::milliseconds patience;
    Trace trace;
    std::deque<Thread> threads;
    std::vector<Thread*> threadOf; // by event; null: not played back in its turn
    const unsigned id;             // no other player of the process has it

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Time> doneAt; // by event
    // The first event that is not yet done, [0] of the SDK's threads, [1] of the host's.
    std::size_t open[2] = {0, 0};
    SessionMatch match;
    ValueStore store;
    std::size_t nextControl = 0;
    bool differs = false;
    std::vector<std::thread> playing;
};

} // namespace sdktrace
