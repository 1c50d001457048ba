// soak_session.h - one random session of two grabbers with the simulator
#pragma once

#include "tests/support/in_process_grabber.h"
#include "tests/support/temporary_directory.h"

#include "mivora/cmd_channel.h"
#include "mivora/log_sink.h"

#include <atomic>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// Counts what the module logs of frames, and of cameras that could not be closed.
class FrameLines final : public ILogSink {
public:
    void Write(int level, const char* format, ...) override;
    void WriteError(const char*) override {}

    std::uint64_t Complete() const { return complete; }
    std::uint64_t Damaged() const { return damaged; }
    std::uint64_t Unclosed() const { return unclosed; }

private:
    std::atomic<std::uint64_t> complete{0};
    std::atomic<std::uint64_t> damaged{0};
    std::atomic<std::uint64_t> unclosed{0};
};

/// One session: operations of two grabbers and faults of the simulator, drawn from a number.
///
/// The same seed and number draw the same operations. A session begins with nothing initialised
/// and ends so, and checks then that nothing is left over and every frame is accounted for.
class SoakSession {
public:
    SoakSession(support::InProcess& process, const std::string& directory, FrameLines& lines,
                std::uint64_t seed, std::uint64_t number);
    ~SoakSession();
    SoakSession(const SoakSession&) = delete;
    SoakSession& operator=(const SoakSession&) = delete;

    void Run();
    std::uint64_t Frames() const { return delivered; }
    /// What was done, one operation a line.
    const std::string& Story() const { return story; }

private:
    struct Station {
        SoakSession* session = nullptr;
        CMivoraGrabber* grabber = nullptr;
        CCmdChannel* channel = nullptr; // the grabber's
        std::string ini;
    };

    std::uint64_t Draw(std::uint64_t below) { return random() % below; }
    void Note(const std::string& text) { story += text + "\n"; }
    void Start(Station& station, std::size_t index);
    void DoSomething(Station& station, std::size_t index);
    void UseSerialPort(Station& station);
    void TakeFrames(Station& station);
    void OrderFault();
    void CalmDown();
    void CheckFrames() const;
    void End();
    static void OnFrame(std::uint64_t index, std::uint32_t fromCallback, void* context);

    support::InProcess& process;
    FrameLines& frameLines;
    const std::uint64_t completeBefore;
    const std::uint64_t damagedBefore;
    const std::uint64_t unclosedBefore;
    std::uint64_t reopened = 0; // cameras that were opened again without closing them
    std::mt19937_64 random;
    std::vector<Station> stations;
    std::string story;
    std::atomic<std::uint64_t> delivered{0};        // all images
    std::atomic<std::uint64_t> deliveredFromSdk{0}; // those of the SDK's callbacks
};
