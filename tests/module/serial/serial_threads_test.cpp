// serial_threads_test.cpp - several channels and the grabber over one mutex
#include "tests/module/serial/serial_fixture.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

class SerialThreadsTest : public SerialFixture {
protected:
    /// From a thread that does not hold it.
    bool IsMutexFree() {
        bool free = false;
        std::thread([&] {
            platform::Mutex& mutex = Grabber().SerialMutex();
            if (mutex.TryLock()) {
                free = true;
                mutex.Unlock();
            }
        }).join();
        return free;
    }
};

TEST_F(SerialThreadsTest, HoldsTheMutexOverAWholeWrite) {
    OpenChannel();
    SetTransmitReady();
    sdk.Hold("PxnMemoryWrite");
    std::thread writer([&] {
        uint64_t count = 0;
        EXPECT_EQ(channel->WriteBuffer(Bytes("ab"), 2, &count), MV_OK);
    });
    EXPECT_TRUE(sdk.WaitForCall(WriteBytes(0x400, "ab")));
    EXPECT_FALSE(IsMutexFree());
    sdk.Release("PxnMemoryWrite");
    writer.join();
    EXPECT_TRUE(IsMutexFree());
}

TEST_F(SerialThreadsTest, HoldsTheMutexWhileItPolls) {
    OpenChannel();
    std::thread writer([&] {
        uint64_t count = 0;
        EXPECT_EQ(channel->WriteBuffer(Bytes("ab"), 2, &count), MV_OK);
    });
    EXPECT_TRUE(support::WaitUntil([&] { return sdk.Calls({Read(0x124)}).size() > 3; }));
    EXPECT_FALSE(IsMutexFree());
    sdk.Edit([](scripted::Model& model) { model.cameras[0].SetRegister32(kBase + 0x124, 1); });
    writer.join();
}

TEST_F(SerialThreadsTest, HoldsTheMutexDuringEveryAccess) {
    SetTransmitReady();
    QueueLengths({1, 1, 1});
    std::size_t accesses = 0;
    const auto look = [&] {
        ++accesses;
        EXPECT_FALSE(IsMutexFree());
    };
    sdk.OnCall("PxnMemoryRead", look);
    sdk.OnCall("PxnMemoryWrite", look);
    uint8_t byte = 0;
    EXPECT_EQ(channel->Open(), MV_OK);
    EXPECT_EQ(channel->WriteByte(&byte, nullptr), MV_OK);
    EXPECT_EQ(channel->WriteBuffer(&byte, 1, nullptr), MV_OK);
    EXPECT_EQ(channel->ReadByte(&byte, nullptr), MV_OK);
    EXPECT_EQ(channel->ReadBuffer(&byte, 1, nullptr), MV_OK);
    EXPECT_EQ(channel->Purge(3), MV_OK);
    channel->EnumeratePorts();
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(accesses, Calls().size());
    EXPECT_EQ(accesses, 32u);
    EXPECT_TRUE(IsMutexFree());
}

TEST_F(SerialThreadsTest, GivesTheMutexAwayBetweenBytesWithADelay) {
    constexpr uint64_t kLength = 1000; // ten seconds, if nobody ended it
    OpenChannel();
    SetTransmitReady();
    SerialSettings settings = channel->GetSettings();
    settings.intercharacterDelay = 10;
    channel->SetSettings(settings);
    uint64_t count = 0;
    std::thread writer([&] {
        const std::string content(kLength, 'a');
        EXPECT_EQ(channel->WriteBuffer(Bytes(content), kLength, &count), MV_WRITE_FAILED);
    });
    EXPECT_TRUE(sdk.WaitForCall(Write(0x12C, 1)));
    {
        platform::MutexLock lock(Grabber().SerialMutex());
        sdk.FailAlways("PxnMemoryRead", PxnErrIO);
    }
    writer.join();
    EXPECT_LT(count, kLength);
    EXPECT_EQ(sdk.Calls({Write(0x12C, 1)}).size(), count);
}

TEST_F(SerialThreadsTest, ADelayedWriteCountsWhatWasSentBeforeThePortWasClosed) {
    constexpr uint64_t kLength = 1000; // ten seconds, if nobody ended it
    OpenChannel();
    SetTransmitReady();
    SerialSettings settings = channel->GetSettings();
    settings.intercharacterDelay = 10;
    channel->SetSettings(settings);
    uint64_t count = 0;
    std::thread writer([&] {
        const std::string content(kLength, 'a');
        EXPECT_EQ(channel->WriteBuffer(Bytes(content), kLength, &count), MV_WRITE_FAILED);
    });
    EXPECT_TRUE(sdk.WaitForCall(Write(0x12C, 1)));
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(channel->Open(), MV_OK);
    writer.join();
    EXPECT_GT(count, 0u);
    EXPECT_LT(count, kLength);
    EXPECT_EQ(sdk.Calls({Write(0x12C, 1)}).size(), count);
    // A closed channel keeps its rule.
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(channel->WriteBuffer(Bytes("abc"), 3, &count), MV_OK);
    EXPECT_EQ(count, 3u);
}

TEST_F(SerialThreadsTest, AChannelWithoutAGrabberDoesNotWaitForTheMutex) {
    CCmdKVNPyxen alone(nullptr, Grabber().SerialMutex());
    uint8_t byte = 0;
    const std::function<MV_ERRCODE()> operations[] = {
        [&] { return alone.Open(); },
        [&] { return alone.ReadByte(&byte, nullptr); },
        [&] { return alone.ReadBuffer(&byte, 1, nullptr); },
        [&] { return alone.WriteByte(&byte, nullptr); },
        [&] { return alone.WriteBuffer(&byte, 1, nullptr); },
        [&] { return alone.Purge(3); },
        [&] { return alone.Close(); },
    };
    std::vector<MV_ERRCODE> results;
    std::atomic<bool> haveReturned{false};
    std::thread caller;
    {
        platform::MutexLock lock(Grabber().SerialMutex());
        caller = std::thread([&] {
            for (const auto& operation : operations) {
                results.push_back(operation());
            }
            haveReturned = true;
        });
        EXPECT_TRUE(support::WaitUntil([&] { return haveReturned.load(); }));
    }
    caller.join();
    EXPECT_EQ(results,
              (std::vector<MV_ERRCODE>{MV_CHANNEL_OPEN_FAILED, MV_READ_FAILED, MV_READ_FAILED,
                                       MV_WRITE_FAILED, MV_WRITE_FAILED, MV_WRITE_FAILED, MV_OK}));
}

TEST_F(SerialThreadsTest, PreparingBuffersWaitsForPortTraffic) {
    const std::string entered = "1 CMivoraKVNPyxenClass::PrepareFrameBuffers";
    const std::string got = "1   CMivoraKVNPyxenClass::PrepareFrameBuffers: got mutex";
    OpenChannel();
    SetTransmitReady();
    sdk.Hold("PxnMemoryWrite");
    std::thread writer([&] {
        uint64_t count = 0;
        EXPECT_EQ(channel->WriteBuffer(Bytes("ab"), 2, &count), MV_OK);
    });
    EXPECT_TRUE(sdk.WaitForCall(WriteBytes(0x400, "ab")));
    std::thread preparer([&] { EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK); });
    EXPECT_TRUE(sink.WaitForLine(entered));
    const Texts lines = sink.Lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), got), 0);
    sdk.Release("PxnMemoryWrite");
    writer.join();
    preparer.join();
    EXPECT_TRUE(sink.WaitForLine(got));
}

TEST_F(SerialThreadsTest, TheSdkStaysUntilPortTrafficHasEnded) {
    OpenChannel();
    std::atomic<unsigned> reads{0};
    sdk.OnCall("PxnMemoryRead", [&] {
        if (++reads == 100) { // ends a poll that goes on
            sdk.FailAlways("PxnMemoryRead", PxnErrIO);
        }
    });
    sdk.Hold("PxnMemoryRead");
    std::thread writer([&] {
        uint64_t count = 0;
        EXPECT_EQ(channel->WriteBuffer(Bytes("ab"), 2, &count), MV_WRITE_FAILED);
    });
    EXPECT_TRUE(sdk.WaitForCall(Read(0x124)));
    std::atomic<bool> released{false};
    sdk.OnCall("PxnShutdown", [&] { EXPECT_TRUE(released); });
    std::thread closer([&] { EXPECT_EQ(Grabber().DeInit(), MV_OK); });
    EXPECT_TRUE(sdk.WaitForCall("PxnCameraClose"));
    for (int look = 0; look < 100; ++look) { // time for what must not happen
        EXPECT_FALSE(IsMutexFree());
    }
    released = true;
    sdk.Release("PxnMemoryRead");
    writer.join();
    closer.join();
    EXPECT_EQ(reads, 1u);
    EXPECT_EQ(sdk.StartupCount(), 0);
}

TEST_F(SerialThreadsTest, SettingsDoNotWaitForAStuckPort) {
    WriteIni("[Channel]\nPORTNAME=PYXENSERIALPORT1\nPARITY=Odd\n");
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("host.ini").c_str()));
    auto* const listed = static_cast<CCmdKVNPyxen*>(Grabber().CreateCmdChannel(1));
    ASSERT_NE(listed, nullptr);
    ASSERT_EQ(Grabber().AddCmdChannel(listed), MV_OK);
    listed->SetSettings(SettingsOf("PYXENSERIALPORT2"));
    ASSERT_EQ(listed->Open(), MV_OK);
    SetTransmitReady();
    sdk.Hold("PxnMemoryWrite");
    std::thread writer([&] { EXPECT_EQ(listed->WriteBuffer(Bytes("ab"), 2, nullptr), MV_OK); });
    EXPECT_TRUE(sdk.WaitForCall(WriteBytes(0x400, "ab")));

    const struct {
        const char* name;
        std::function<void()> run;
    } operations[] = {
        {"GetConfigText",
         [&] {
             EXPECT_STREQ(listed->GetConfigText(),
                          "115200 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
         }},
        {"GetSettings",
         [&] {
             EXPECT_STREQ(listed->GetSettings().portName, "PYXENSERIALPORT2");
         }},
        {"SaveGrabberConfig",
         [&] {
             EXPECT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
         }},
        {"SetConfig",
         [&] {
             EXPECT_EQ(listed->SetConfig(&ini, "Saved"), MV_OK);
         }},
        {"GetConfig",
         [&] {
             EXPECT_EQ(listed->GetConfig(&ini, "Channel"), MV_OK);
         }},
        {"SetSettings",
         [&] {
             listed->SetSettings(SettingsOf("PYXENSERIALPORT4"));
         }},
    };
    std::vector<std::thread> threads;
    std::atomic<std::size_t> returned{0};
    for (const auto& operation : operations) {
        const std::size_t before = returned;
        threads.emplace_back([&] {
            operation.run();
            ++returned;
        });
        EXPECT_TRUE(support::WaitUntil([&] { return returned > before; }, 2000)) << operation.name;
    }
    EXPECT_FALSE(IsMutexFree());
    sdk.Release("PxnMemoryWrite");
    writer.join();
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_STREQ(listed->GetSettings().portName, "PYXENSERIALPORT4");
}

TEST_F(SerialThreadsTest, SeveralThreadsMayAskForTheConfiguration) {
    const auto ask = [&] {
        for (int round = 0; round < 100; ++round) {
            EXPECT_NE(channel->GetConfigText(), nullptr);
        }
    };
    std::thread other(ask);
    ask();
    other.join();
    EXPECT_STREQ(channel->GetConfigText(), "115200 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
}

TEST_F(SerialThreadsTest, ChannelsAndBufferPreparationDoNotMix) {
    constexpr int kRounds = 40;
    constexpr uint64_t kOtherBase = 0x63000; // port 4
    CCmdKVNPyxen other(&Grabber(), Grabber().SerialMutex());
    other.SetSettings(SettingsOf("PYXENSERIALPORT4"));
    ASSERT_EQ(other.Open(), MV_OK);
    OpenChannel();
    for (const uint64_t base : {kBase, kOtherBase}) {
        Camera().SetRegister32(base + 0x124, 1);
    }
    const auto talk = [](CCmdKVNPyxen& line) {
        const std::string content(1500, 'x');
        for (int round = 0; round < kRounds; ++round) {
            uint64_t count = 0;
            EXPECT_EQ(line.WriteBuffer(Bytes(content), content.size(), &count), MV_OK);
            EXPECT_EQ(count, content.size());
            uint8_t byte = 0;
            EXPECT_EQ(line.ReadBuffer(&byte, 1, &count), MV_OK);
            EXPECT_STRNE(line.GetConfigText(), "");
        }
    };
    std::thread first([&] { talk(*channel); });
    std::thread second([&] { talk(other); });
    for (int round = 0; round < kRounds; ++round) {
        EXPECT_EQ(Grabber().PrepareFrameBuffers(round % 2 == 0 ? 3 : 1), MV_OK);
    }
    first.join();
    second.join();

    // Whatever the order of the operations, the accesses of one stay together.
    const Texts calls = sdk.Calls({"PxnMemory"});
    unsigned writes = 0;
    for (std::size_t at = 0; at < calls.size();) {
        const uint64_t base =
            calls[at] == Read(0x124) || calls[at] == Read(0x14C) ? kBase : kOtherBase;
        if (calls[at] == Read(0x14C, 4, base)) { // nothing waits, so that this is all
            ++at;
            continue;
        }
        ASSERT_LE(at + 6, calls.size());
        const std::string buffer =
            "PxnMemoryWrite(camera0, " + std::to_string(base + 0x400) + ", [78";
        for (const uint32_t size : {1024u, 476u}) {
            ASSERT_EQ(calls[at], Read(0x124, 4, base));
            ASSERT_EQ(calls[at + 1].compare(0, buffer.size(), buffer), 0);
            ASSERT_EQ(calls[at + 2], Write(0x12C, size, base));
            at += 3;
        }
        ++writes;
    }
    EXPECT_EQ(writes, 2u * kRounds);
}

} // namespace
