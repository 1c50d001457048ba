// frame_wait.cpp - how long no frame has come, why, and what the stream counted meanwhile
#include "apps/common/frame_wait.h"

#include "apps/common/session.h"
#include "platform/clock.h"

namespace {

constexpr std::uint64_t kNanosecondsPerMs = 1000000;

} // namespace

FrameWait::FrameWait(Session& waitingSession)
    : FrameWait(waitingSession,
                [&waitingSession] { return waitingSession.Log().ReceiveErrors(); }) {}

void FrameWait::Begin() {
    packetsBefore = ReadPacketStatistics(session.OptionalServices());
    BeginWaiting();
}

void FrameWait::OnFrame() {
    BeginWaiting();
    hasFrame = true;
}

void FrameWait::BeginWaiting() {
    lastFrame = platform::MonotonicNanoseconds();
    errorsBefore = countErrors();
    hasFrame = false;
}

void FrameWait::End() {
    packets += PacketsOfThisRun();
}

std::uint64_t FrameWait::WaitedMs() const {
    return (platform::MonotonicNanoseconds() - lastFrame) / kNanosecondsPerMs;
}

NoFrameCause FrameWait::FindCause() {
    NoFrameFacts facts;
    facts.waitedMs = WaitedMs();
    facts.incomplete = countErrors() - errorsBefore;
    if (!hasFrame) {
        facts.startErrors =
            session.ErrorsInSpiteOfSuccess(); // of the start, the last that was checked
    }
    facts.packets = PacketsOfThisRun();
    return FindNoFrameCause(session.OptionalServices(), facts);
}

PacketStatistics FrameWait::PacketsOfThisRun() {
    return StatisticsSince(packetsBefore, ReadPacketStatistics(session.OptionalServices()));
}
