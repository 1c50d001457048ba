// player_test.cpp - a session from a trace, without its camera
#include "pxnc/trace/player.h"

#include "tests/pxnc/trace/trace_fixture.h"

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace trace_tests {
namespace {

using sdktrace::Player;

/// A host with one frame and a callback that counts.
struct PlayerHost {
    static void PXN_CALL OnFrame(PxnHandle, PxnHandle, PxnFrame* frame) {
        ids.push_back(frame->frameId);
        if (inCallback) {
            inCallback(frame);
        }
    }
    static void PXN_CALL OnChange(PxnHandle, const char* name, void* context) {
        changes.push_back(std::string(name) + "/" + static_cast<const char*>(context));
    }
    static std::vector<std::uint64_t> ids;
    static std::vector<std::string> changes;
    static std::function<void(PxnFrame*)> inCallback;
};
std::vector<std::uint64_t> PlayerHost::ids;
std::vector<std::string> PlayerHost::changes;
std::function<void(PxnFrame*)> PlayerHost::inCallback;

class PlayerTest : public TraceTest {
protected:
    PlayerTest() {
        PlayerHost::ids.clear();
        PlayerHost::changes.clear();
        PlayerHost::inCallback = nullptr;
    }

    /// Plays what has been traced. The player is kept, as its threads may outlive the test.
    Player& Play() {
        recorder->Finish();
        std::string problem;
        auto player = Player::Open(path, problem);
        EXPECT_TRUE(player) << problem;
        static std::vector<std::unique_ptr<Player>> players;
        return *players.emplace_back(std::move(player));
    }
    static std::string Finish(Player& player) {
        testing::internal::CaptureStderr();
        const bool isSame = player.Finish();
        const std::string errors = testing::internal::GetCapturedStderr();
        EXPECT_EQ(isSame, errors.empty());
        return errors;
    }
    void Run(const char* command, PxnError result = 0) {
        Call(Entry::kPxnFeatureCommandRun, result, PXN_SYSTEM_HANDLE, command);
    }
    /// The end of an asynchronous snap with a mark for its result.
    void EndSnap(PxnError result, bool isFlushed) {
        Run("AcquisitionStop");
        Call(Entry::kPxnCaptureEnd, result, PXN_SYSTEM_HANDLE);
        if (isFlushed) {
            Call(Entry::kPxnCaptureQueueFlush, 0, PXN_SYSTEM_HANDLE);
        }
        Call(Entry::kPxnFrameRevokeAll, 0, PXN_SYSTEM_HANDLE);
    }
    static void ExpectRun(Player& player, const char* command) {
        EXPECT_EQ(player.Call(Entry::kPxnFeatureCommandRun, ToWords(PXN_SYSTEM_HANDLE, command)),
                  0);
    }
    static void ExpectEnd(Player& player, PxnError result, bool isFlushed) {
        const auto words = ToWords(PXN_SYSTEM_HANDLE);
        ExpectRun(player, "AcquisitionStop");
        EXPECT_EQ(player.Call(Entry::kPxnCaptureEnd, words), result);
        if (isFlushed) {
            EXPECT_EQ(player.Call(Entry::kPxnCaptureQueueFlush, words), 0);
        }
        EXPECT_EQ(player.Call(Entry::kPxnFrameRevokeAll, words), 0);
    }
    /// Traces a session of an SDK thread that hands `count` frames over, each of which is queued
    /// again inside.
    void TraceFrames(std::uint64_t count) {
        FilledFrame filled;
        const auto callback = reinterpret_cast<PxnFrameCallback>(std::uintptr_t{0x10});
        Call(Entry::kPxnFrameAnnounce, 0, PXN_SYSTEM_HANDLE, &filled.frame, 112u);
        Call(Entry::kPxnCaptureFrameQueue, 0, PXN_SYSTEM_HANDLE, &filled.frame, callback);
        const auto words = ToWords(PXN_SYSTEM_HANDLE);
        const std::uint64_t start = recorder->BeginCall(Entry::kPxnCaptureEnd, words);
        std::thread([&] {
            for (std::uint64_t i = 0; i < count; ++i) {
                filled.frame.frameId = i;
                const auto frame = ToWords(callback, nullptr, nullptr, &filled.frame);
                const auto call = recorder->BeginCallback(Entry::kFrameCallback, frame);
                Call(Entry::kPxnCaptureFrameQueue, 0, PXN_SYSTEM_HANDLE, &filled.frame, callback);
                recorder->EndCallback(call, Entry::kFrameCallback, 0);
            }
        }).join();
        recorder->EndCall(start, Entry::kPxnCaptureEnd, words, -25);
    }
    /// The host's side of TraceFrames.
    static void Capture(Player& player, PxnFrame& frame) {
        EXPECT_EQ(player.Call(Entry::kPxnFrameAnnounce, ToWords(PXN_SYSTEM_HANDLE, &frame, 112u)),
                  0);
        EXPECT_EQ(player.Call(Entry::kPxnCaptureFrameQueue,
                              ToWords(PXN_SYSTEM_HANDLE, &frame, &PlayerHost::OnFrame)),
                  0);
        EXPECT_EQ(player.Call(Entry::kPxnCaptureEnd, ToWords(PXN_SYSTEM_HANDLE)), -25);
    }
};

TEST_F(PlayerTest, AnswersInOrder) {
    std::int64_t value = 640;
    Call(Entry::kPxnFeatureIntGet, 0, PXN_SYSTEM_HANDLE, "Width", &value);
    value = 320;
    Call(Entry::kPxnFeatureIntGet, 0, PXN_SYSTEM_HANDLE, "Width", &value);
    Call(Entry::kPxnFeatureIntGet, -6, PXN_SYSTEM_HANDLE, "Width", &value);
    Player& player = Play();
    EXPECT_EQ(player.Version(), kLibrary);
    const auto words = ToWords(PXN_SYSTEM_HANDLE, "Width", &value);
    EXPECT_EQ(player.Call(Entry::kPxnFeatureIntGet, words), 0);
    EXPECT_EQ(value, 640);
    EXPECT_EQ(player.Call(Entry::kPxnFeatureIntGet, words), 0);
    EXPECT_EQ(value, 320);
    EXPECT_EQ(player.Call(Entry::kPxnFeatureIntGet, words), -6);
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, NamesTheFirstDifferenceAndFailsFromThereOn) {
    Call(Entry::kPxnFeatureCommandRun, 0, PXN_SYSTEM_HANDLE, "Start");
    Call(Entry::kPxnFeatureCommandRun, 0, PXN_SYSTEM_HANDLE, "Stop");
    Player& player = Play();
    const auto run = [&](const char* name) {
        return player.Call(Entry::kPxnFeatureCommandRun, ToWords(PXN_SYSTEM_HANDLE, name));
    };
    EXPECT_EQ(run("Start"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(run("Halt"), PxnErrOther);
    EXPECT_EQ(run("Stop"), PxnErrOther);
    EXPECT_FALSE(player.Finish());
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(errors.find("PxnC: " + path + " differs: thread "), 0u) << errors;
    EXPECT_NE(errors.find(": the trace has PxnFeatureCommandRun(handle=system, name=\"Stop\"), the "
                          "module calls PxnFeatureCommandRun(handle=system, name=\"Halt\")\n"),
              std::string::npos)
        << errors;
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST_F(PlayerTest, NamesWhatIsLeftAndWhatIsTooMuch) {
    Call(Entry::kPxnShutdown, 0);
    Player& left = Play();
    EXPECT_NE(Finish(left).find("the session ends here, the trace has PxnShutdown()"),
              std::string::npos);
    Begin(1, false);
    Call(Entry::kPxnShutdown, 0);
    Player& more = Play();
    more.Call(Entry::kPxnShutdown, {});
    testing::internal::CaptureStderr();
    more.Call(Entry::kPxnShutdown, {});
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "the trace has no call here, the module calls PxnShutdown()"),
              std::string::npos);
}

TEST_F(PlayerTest, EndsWhereTheTraceEnds) {
    recorder->BeginCall(Entry::kPxnCameraClose, ToWords(PXN_SYSTEM_HANDLE));
    Player& player = Play();
    testing::internal::CaptureStderr();
    EXPECT_EQ(player.Call(Entry::kPxnCameraClose, ToWords(PXN_SYSTEM_HANDLE)), PxnErrOther);
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "the trace ends inside PxnCameraClose(camera=system)"),
              std::string::npos);
}

TEST_F(PlayerTest, TakesNoEndOfAnotherFunction) {
    PxnCameraInfo cameras[1]{};
    std::uint32_t found = 1;
    const auto listing = ToWords(cameras, 1u, &found, 80u);
    PxnInterfaceInfo interfaces[1]{};
    const auto words = ToWords(interfaces, 1u, &found, 40u);
    recorder->EndCall(recorder->BeginCall(Entry::kPxnInterfacesList, words), Entry::kPxnCamerasList,
                      listing, 0);
    Player& player = Play();
    testing::internal::CaptureStderr();
    EXPECT_EQ(player.Call(Entry::kPxnInterfacesList, words), PxnErrOther);
    EXPECT_NE(
        testing::internal::GetCapturedStderr().find("the trace ends inside PxnInterfacesList("),
        std::string::npos);
}

TEST_F(PlayerTest, HandsFramesOverBeforeTheCallThatWaitedForThem) {
    TraceFrames(20);
    Player& player = Play();
    FilledFrame host;
    host.frame.frameId = 999;
    PlayerHost::inCallback = [&](PxnFrame* frame) {
        EXPECT_EQ(frame, &host.frame);
        EXPECT_EQ(player.Call(Entry::kPxnCaptureFrameQueue,
                              ToWords(PXN_SYSTEM_HANDLE, frame, &PlayerHost::OnFrame)),
                  0);
    };
    Capture(player, host.frame);
    ASSERT_EQ(PlayerHost::ids.size(), 20u);
    for (std::uint64_t i = 0; i < 20; ++i) {
        EXPECT_EQ(PlayerHost::ids[i], i);
    }
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, TakesQueueingInsideFrameCallbacksAsItComes) {
    TraceFrames(4);
    Player& player = Play();
    FilledFrame host;
    PlayerHost::inCallback = [&](PxnFrame* frame) {
        for (std::uint64_t i = 0; i < frame->frameId; ++i) { // none, one, two, three times
            EXPECT_EQ(player.Call(Entry::kPxnCaptureFrameQueue,
                                  ToWords(PXN_SYSTEM_HANDLE, frame, &PlayerHost::OnFrame)),
                      0);
        }
    };
    Capture(player, host.frame);
    EXPECT_EQ(PlayerHost::ids.size(), 4u);
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, MakesCallbacksInsideCallsOnTheSameThread) {
    const auto callback = reinterpret_cast<PxnInvalidationCallback>(std::uintptr_t{0x10});
    const auto context = reinterpret_cast<void*>(std::uintptr_t{0x20});
    Call(Entry::kPxnFeatureInvalidationRegister, 0, PXN_SYSTEM_HANDLE, "Width", callback, context);
    const auto words = ToWords(PXN_SYSTEM_HANDLE, "Height", std::int64_t{3});
    const auto set = recorder->BeginCall(Entry::kPxnFeatureIntSet, words);
    const auto change = recorder->BeginCallback(
        Entry::kInvalidationCallback, ToWords(callback, PXN_SYSTEM_HANDLE, "Width", context));
    recorder->EndCallback(change, Entry::kInvalidationCallback, 0);
    recorder->EndCall(set, Entry::kPxnFeatureIntSet, words, 0);
    Player& player = Play();
    char text[] = "mine";
    EXPECT_EQ(player.Call(Entry::kPxnFeatureInvalidationRegister,
                          ToWords(PXN_SYSTEM_HANDLE, "Width", &PlayerHost::OnChange,
                                  static_cast<void*>(text))),
              0);
    EXPECT_EQ(PlayerHost::changes.size(), 0u);
    EXPECT_EQ(player.Call(Entry::kPxnFeatureIntSet, words), 0);
    EXPECT_EQ(PlayerHost::changes, std::vector<std::string>{"Width/mine"});
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, FindsTheThreadsByTheirFirstCalls) {
    const auto run = [this](const char* name) {
        std::thread([&] {
            Call(Entry::kPxnFeatureCommandRun, name[0] == 'A' ? 0 : -6, PXN_SYSTEM_HANDLE, name);
            Call(Entry::kPxnFeatureCommandRun, 0, PXN_SYSTEM_HANDLE, "End");
        }).join();
    };
    run("A");
    run("B");
    Player& player = Play();
    for (const auto& [name, result] : {std::pair("B", -6), std::pair("A", 0)}) {
        std::thread([&, wanted = result, text = name] {
            const auto call = [&](const char* command) {
                return player.Call(Entry::kPxnFeatureCommandRun,
                                   ToWords(PXN_SYSTEM_HANDLE, command));
            };
            EXPECT_EQ(call(text), wanted);
            EXPECT_EQ(call("End"), 0);
        }).join();
    }
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, TakesTheEndOfAnAsynchronousSnapFromEitherThread) {
    // In the trace the thread of the snap ends the first, whoever stops it the second one.
    Run("AcquisitionStart");
    std::thread([&] { EndSnap(-25, false); }).join();
    Run("AcquisitionStart");
    EndSnap(-24, true);
    Run("End");
    Player& player = Play();
    ExpectRun(player, "AcquisitionStart");
    ExpectEnd(player, -25, true);
    ExpectRun(player, "AcquisitionStart");
    std::thread([&] { ExpectEnd(player, -24, false); }).join();
    ExpectRun(player, "End");
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, TakesTheEndsOfAsynchronousSnapsInTheirOrder) {
    Run("AcquisitionStart");
    EndSnap(-25, true);
    Run("AcquisitionStart");
    std::thread([&] { EndSnap(-24, false); }).join();
    Run("End");
    Player& player = Play();
    for (const PxnError result : {-25, -24}) {
        ExpectRun(player, "AcquisitionStart");
        std::thread([&] { ExpectEnd(player, result, false); }).join();
    }
    ExpectRun(player, "End");
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, TakesNoOtherFlushAndNoOtherStop) {
    Run("AcquisitionStart");
    EndSnap(0, false);
    Run("End");
    Player& flushing = Play();
    ExpectRun(flushing, "AcquisitionStart");
    testing::internal::CaptureStderr();
    const auto words = ToWords(PXN_SYSTEM_HANDLE);
    ExpectRun(flushing, "AcquisitionStop");
    EXPECT_EQ(flushing.Call(Entry::kPxnCaptureEnd, words), 0);
    EXPECT_EQ(flushing.Call(Entry::kPxnCaptureQueueFlush, words), PxnErrOther);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    Begin(1, true);
    Run("AcquisitionStart");
    Run("End");
    Player& stopping = Play();
    ExpectRun(stopping, "AcquisitionStart");
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        stopping.Call(Entry::kPxnFeatureCommandRun, ToWords(PXN_SYSTEM_HANDLE, "AcquisitionStop")),
        PxnErrOther);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PlayerTest, CallsNothingThatTheHostHasNotPassedForIt) {
    const auto callback = reinterpret_cast<PxnInvalidationCallback>(std::uintptr_t{0x10});
    const auto other = reinterpret_cast<PxnInvalidationCallback>(std::uintptr_t{0x20});
    const auto place = [](std::uintptr_t address) {
        return reinterpret_cast<void*>(address);
    };
    for (const auto& [calledBack, context] :
         {std::pair(other, place(0x20)), std::pair(callback, place(0x10)),
          std::pair(callback, place(0)), std::pair(other, place(0x10))}) {
        Begin(1, true);
        Call(Entry::kPxnFeatureInvalidationRegister, 0, PXN_SYSTEM_HANDLE, "Width", callback,
             place(0x20));
        const auto words = ToWords(PXN_SYSTEM_HANDLE, "Height", std::int64_t{3});
        const auto set = recorder->BeginCall(Entry::kPxnFeatureIntSet, words);
        recorder->EndCallback(
            recorder->BeginCallback(Entry::kInvalidationCallback,
                                    ToWords(calledBack, PXN_SYSTEM_HANDLE, "Width", context)),
            Entry::kInvalidationCallback, 0);
        recorder->EndCall(set, Entry::kPxnFeatureIntSet, words, 0);
        Player& player = Play();
        char text[] = "mine";
        EXPECT_EQ(player.Call(Entry::kPxnFeatureInvalidationRegister,
                              ToWords(PXN_SYSTEM_HANDLE, "Width", &PlayerHost::OnChange,
                                      static_cast<void*>(text))),
                  0);
        testing::internal::CaptureStderr();
        EXPECT_EQ(player.Call(Entry::kPxnFeatureIntSet, words), PxnErrOther);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(
                      "the session has nothing to receive InvalidationCallback("),
                  std::string::npos);
    }
    EXPECT_EQ(PlayerHost::changes.size(), 0u);
}

TEST_F(PlayerTest, LeavesFramesAloneThatWereRevoked) {
    FilledFrame filled;
    const auto callback = reinterpret_cast<PxnFrameCallback>(std::uintptr_t{0x10});
    Call(Entry::kPxnFrameAnnounce, 0, PXN_SYSTEM_HANDLE, &filled.frame, 112u);
    Call(Entry::kPxnCaptureFrameQueue, 0, PXN_SYSTEM_HANDLE, &filled.frame, callback);
    Call(Entry::kPxnFrameRevokeAll, 0, PXN_SYSTEM_HANDLE);
    const auto words = ToWords(PXN_SYSTEM_HANDLE);
    const auto end = recorder->BeginCall(Entry::kPxnCaptureEnd, words);
    recorder->EndCallback(
        recorder->BeginCallback(Entry::kFrameCallback,
                                ToWords(callback, nullptr, nullptr, &filled.frame)),
        Entry::kFrameCallback, 0);
    recorder->EndCall(end, Entry::kPxnCaptureEnd, words, 0);
    Player& player = Play();
    FilledFrame host;
    host.frame.frameId = 999;
    const auto announced = ToWords(PXN_SYSTEM_HANDLE, &host.frame, 112u);
    EXPECT_EQ(player.Call(Entry::kPxnFrameAnnounce, announced), 0);
    EXPECT_EQ(player.Call(Entry::kPxnCaptureFrameQueue,
                          ToWords(PXN_SYSTEM_HANDLE, &host.frame, &PlayerHost::OnFrame)),
              0);
    EXPECT_EQ(player.Call(Entry::kPxnFrameRevokeAll, words), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(player.Call(Entry::kPxnCaptureEnd, words), PxnErrOther);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(host.frame.frameId, 999u);
    EXPECT_EQ(PlayerHost::ids.size(), 0u);
}

TEST_F(PlayerTest, EndsWithItsThreadsWaiting) {
    TraceFrames(2);
    recorder->Finish();
    std::string problem;
    {
        const std::unique_ptr<Player> player = Player::Open(path, problem);
        ASSERT_TRUE(player) << problem;
    }
    EXPECT_EQ(PlayerHost::ids.size(), 0u);
}

TEST_F(PlayerTest, AnswersControlCommandsOutsideTheSession) {
    char answer[8] = "first";
    Call(Entry::kPxnControl, 0, "status", answer, 8u);
    Call(Entry::kPxnShutdown, 0);
    Call(Entry::kPxnControl, -7, "status", &(answer[0] = 'F'), 8u);
    Call(Entry::kPxnControl, 0, "script /tmp/a.txt", answer, 8u);
    Player& player = Play();
    char now[64] = "";
    const auto control = [&](const char* command) {
        return player.Call(Entry::kPxnControl, ToWords(command, now, 64u));
    };
    EXPECT_EQ(control("status"), 0);
    EXPECT_STREQ(now, "first");
    EXPECT_EQ(control("status"), -7);
    EXPECT_STREQ(now, "First");
    EXPECT_EQ(control("status"), -7); // the last one again
    EXPECT_EQ(control("script b/a.txt"), 0);
    EXPECT_EQ(control("script b/b.txt"), -17);
    EXPECT_STREQ(now, "the trace has no such command");
    EXPECT_EQ(player.Call(Entry::kPxnShutdown, {}), 0);
    EXPECT_EQ(Finish(player), "");
}

TEST_F(PlayerTest, RefusesTracesThatAreNotWhole) {
    for (int i = 0; i < 3000; ++i) {
        Call(Entry::kPxnFeatureStringSet, 0, PXN_SYSTEM_HANDLE, "Name",
             std::string(900, 'x').c_str());
    }
    recorder->Finish();
    std::string problem;
    EXPECT_FALSE(Player::Open(path, problem));
    EXPECT_EQ(problem, "cannot play back " + path +
                           ": its beginning has been overwritten; it wants a bigger file");
    EXPECT_FALSE(Player::Open(directory.PathOf("none"), problem));
    EXPECT_EQ(problem.find("cannot play back " + directory.PathOf("none") + ": "), 0u);
}

} // namespace
} // namespace trace_tests
