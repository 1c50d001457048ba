// frame_taker.cpp - takes the frames of an acquisition from the host's ring
#include "apps/serve/frame_taker.h"

#include "apps/common/command_failure.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/clock.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace {

/// How long an order to end waits at most.
constexpr std::uint64_t kFrameSliceMs = 20;
constexpr std::uint64_t kCountsEveryNs = 200000000;
constexpr std::size_t kRateSamples = 6; // over a second

} // namespace

FrameTaker::FrameTaker(Session& grabbingSession, ContinuousGrab& startedGrab,
                       FrameHolder& frameHolder, StateBoard& stateBoard)
    : session(grabbingSession),
      grab(startedGrab),
      holder(frameHolder),
      board(stateBoard),
      before(startedGrab.Account()) {}

FrameTaker::~FrameTaker() {
    isEnding = true;
    thread.Join();
}

void FrameTaker::Start() {
    const auto take = [](void* self) {
        static_cast<FrameTaker*>(self)->TakeAll();
    };
    thread = platform::Thread::Start(take, this, 0);
    if (!thread.IsJoinable()) {
        throw CommandFailure("cannot start a thread for frames");
    }
}

void FrameTaker::Record(std::shared_ptr<RunningRecording> newRecording) {
    const platform::MutexLock lock(mutex);
    recording = std::move(newRecording);
}

void FrameTaker::StopRecording() {
    const platform::MutexLock lock(mutex);
    recording.reset();
    const std::uint64_t present = turn;
    while (turn == present && !hasEnded) {
        turned.WaitFor(mutex, static_cast<std::uint32_t>(kFrameSliceMs));
    }
}

std::string FrameTaker::Failure() const {
    const platform::MutexLock lock(mutex);
    return failure;
}

void FrameTaker::TakeAll() noexcept {
    std::string problem;
    try {
        while (!isEnding) {
            const std::shared_ptr<RunningRecording> current = NextRecording();
            TakeOne(current.get());
        }
    } catch (const std::exception& thrown) {
        problem = thrown.what();
    }
    const platform::MutexLock lock(mutex);
    failure.swap(problem);
    hasEnded = true;
    turned.NotifyAll();
}

std::shared_ptr<RunningRecording> FrameTaker::NextRecording() {
    const platform::MutexLock lock(mutex);
    ++turn;
    turned.NotifyAll();
    if (recording && recording->HasAll()) {
        recording.reset();
    }
    return recording;
}

void FrameTaker::TakeOne(RunningRecording* current) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    const bool isWanted = holder.IsWanted(begin);
    std::vector<std::uint8_t>* const recorded =
        current ? current->NextBuffer(grab.Layout().Size()) : nullptr;
    if (isWanted && buffer.empty()) {
        buffer = holder.TakeBuffer();
    }
    std::vector<std::uint8_t>* const copy = recorded ? recorded : isWanted ? &buffer : nullptr;
    TakenFrame frame;
    const FrameResult result = grab.TakeFrame(kFrameSliceMs, copy, frame);
    const std::uint64_t now = platform::MonotonicNanoseconds();
    if (result != FrameResult::kNone) {
        ++taken;
        damaged += result == FrameResult::kDamaged ? 1 : 0;
        if (result == FrameResult::kTaken && isWanted) {
            if (recorded) {
                buffer = *recorded;
            }
            holder.Publish(grab.Layout(), std::exchange(buffer, {}), now);
        }
        if (current) {
            current->Add(result, frame, grab.Layout());
        }
    }
    if (now - lastCounts >= kCountsEveryNs) {
        lastCounts = now;
        KeepCounts(now);
    }
}

void FrameTaker::KeepCounts(std::uint64_t now) {
    FrameAccount account = before;
    FrameAccount run;
    run.sdk.reset(); // known at the end
    run.delivered = session.Events().Frames();
    run.completed = run.delivered;
    run.lost = session.Grabber().GetLostBufferCount();
    run.taken = taken;
    run.damaged = damaged;
    account += run;
    account.inError = grab.ReceiveErrors();
    const std::uint64_t done = run.taken + run.lost;
    const std::uint64_t waiting = run.delivered - std::min(run.delivered, done);
    std::shared_ptr<const FrameTiming> timing = std::make_shared<FrameTiming>(grab.Timing());
    const double rate = RateAt(now);
    board.Change([&](ServeState& state) {
        state.account = account;
        state.waitingFrames = waiting;
        state.rate = rate;
        state.timing.swap(timing); // the old one is freed after the lock
    });
}

double FrameTaker::RateAt(std::uint64_t now) {
    samples.push_back({now, taken});
    if (samples.size() > kRateSamples) {
        samples.pop_front();
    }
    const RateSample& first = samples.front();
    const double seconds = static_cast<double>(now - first.time) / 1e9;
    return seconds > 0 ? static_cast<double>(taken - first.frames) / seconds : 0;
}
