// soak_session.cpp - one random session of two grabbers with the simulator
#include "soak_session.h"

#include "platform/message_loop.h"
#include "pxnc_entries.h"

#include <chrono>
#include <cstdarg>
#include <cstring>
#include <iterator>
#include <thread>

namespace {

constexpr const char* kEntries[] = {
#define SOAK_ENTRY(name) #name,
    PXN_ENTRIES(SOAK_ENTRY)
#undef SOAK_ENTRY
};
constexpr int kCodes[] = {-1, -10, -12, -15, -20};
constexpr const char* kFrameFaults[] = {"incomplete", "small", "drop", "duplicate"};
constexpr unsigned kOperations = 60;
constexpr std::uint64_t kMostBuffers = 12;

bool BeginsWith(const char* text, const char* beginning) {
    return std::strncmp(text, beginning, std::strlen(beginning)) == 0;
}

/// A number of the flat JSON object that the simulator's status is.
std::uint64_t StatusNumber(const std::string& status, const std::string& name) {
    const std::size_t at = status.find("\"" + name + "\":");
    EXPECT_NE(at, std::string::npos) << name << " in " << status;
    return at == std::string::npos ? 0 : std::stoull(status.substr(at + name.size() + 3));
}

} // namespace

void FrameLines::Write(int, const char* format, ...) {
    if (BeginsWith(format, "%s: ")) {
        std::va_list arguments;
        va_start(arguments, format);
        const char* const context = va_arg(arguments, const char*);
        va_end(arguments);
        unclosed += BeginsWith(context, "CMivoraKVNqxAPIClass::CloseActCamera") ? 1 : 0;
    } else if (BeginsWith(format,
                          "CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame")) {
        ++complete;
    } else if (BeginsWith(format, "CMivoraKVNPyxenClass::FrameCallback: Receive error")) {
        ++damaged;
    }
}

SoakSession::SoakSession(support::InProcess& processToUse, const std::string& directory,
                         FrameLines& lines, std::uint64_t seed, std::uint64_t number)
    : process(processToUse),
      frameLines(lines),
      completeBefore(lines.Complete()),
      damagedBefore(lines.Damaged()),
      unclosedBefore(lines.Unclosed()),
      random(seed * 0x9E3779B97F4A7C15u + number) {
    stations.resize(2);
    for (std::size_t index = 0; index < stations.size(); ++index) {
        stations[index].session = this;
        stations[index].grabber = process.Create();
        stations[index].ini = directory + "/soak" + std::to_string(index) + ".ini";
    }
}

SoakSession::~SoakSession() {
    for (const Station& station : stations) {
        process.Delete(station.grabber);
    }
}

void SoakSession::Run() {
    for (std::size_t index = 0; index < stations.size(); ++index) {
        ASSERT_NE(stations[index].grabber, nullptr);
        Start(stations[index], index);
    }
    for (unsigned count = 0; count < kOperations; ++count) {
        const std::size_t index = Draw(stations.size());
        if (Draw(6) == 0) {
            OrderFault();
        } else {
            DoSomething(stations[index], index);
        }
        if (Draw(8) == 0) {
            process.Control("clear");
            Note("clear");
        }
        platform::ServeWindowMessages(nullptr, 0);
    }
    CalmDown();
    CheckFrames();
    End();
}

void SoakSession::Start(Station& station, std::size_t index) {
    CMivoraGrabber& grabber = *station.grabber;
    EXPECT_EQ(grabber.SetGrabberIni(station.ini.c_str(), 0), MV_OK);
    EXPECT_EQ(grabber.Init(), MV_OK);
    EXPECT_EQ(grabber.InstPostProcessCallBack(&OnFrame, this), MV_OK);
    EXPECT_EQ(grabber.SetActCameraIndex(static_cast<std::int32_t>(index)), MV_OK);
    EXPECT_EQ(grabber.OpenActCamera(), MV_OK);
    EXPECT_EQ(grabber.PrepareFrameBuffers(1 + Draw(kMostBuffers)), MV_OK);
    station.channel = grabber.CreateCmdChannel(1);
    EXPECT_NE(station.channel, nullptr);
}

void SoakSession::DoSomething(Station& station, std::size_t index) {
    CMivoraGrabber& grabber = *station.grabber;
    const auto note = [&](const char* what, std::uint64_t argument, std::uint64_t answer) {
        Note(std::to_string(index) + " " + what + " " + std::to_string(argument) + " = " +
             std::to_string(answer));
    };
    switch (Draw(16)) {
    case 0:
    case 1: {
        const bool wasOpen = grabber.IsCameraOpen() != 0;
        const MV_ERRCODE answer = grabber.OpenActCamera();
        reopened += wasOpen && answer == MV_OK ? 1 : 0;
        note("OpenActCamera", 0, answer);
        break;
    }
    case 2:
        note("CloseActCamera", 0, grabber.CloseActCamera());
        break;
    case 3:
    case 4: {
        const std::uint64_t count = Draw(kMostBuffers + 1);
        note("PrepareFrameBuffers", count, grabber.PrepareFrameBuffers(count));
        break;
    }
    case 5:
    case 6:
    case 7: {
        const auto mode = static_cast<std::uint32_t>(Draw(3) == 0 ? Draw(7) : 1);
        note("Snap", mode, grabber.Snap(mode));
        break;
    }
    case 8:
        note("StopSnap", 0, grabber.StopSnap());
        break;
    case 9: {
        const std::uint64_t milliseconds = Draw(30);
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        TakeFrames(station);
        note("wait", milliseconds, 0);
        break;
    }
    case 10: {
        const auto camera = static_cast<std::int32_t>(Draw(4)) - 1;
        note("SetActCameraIndex", static_cast<std::uint64_t>(camera),
             grabber.SetActCameraIndex(camera));
        break;
    }
    case 11:
        note("RefreshCameraList", 0, grabber.RefreshCameraList());
        break;
    case 12: {
        std::uint64_t exposure = 0;
        std::uint64_t interval = 0;
        note("GetGrabberParam", 257, grabber.GetGrabberParam(257, &exposure, &interval));
        note("SetGrabberParam", 257, grabber.SetGrabberParam(257, exposure, interval));
        break;
    }
    case 13:
        note("SaveGrabberConfig", 0, grabber.SaveGrabberConfig());
        note("LoadGrabberConfig", 0, grabber.LoadGrabberConfig());
        break;
    case 14:
        note("CamCntrlDialog", 0, grabber.CamCntrlDialog(nullptr));
        platform::ServeWindowMessages(nullptr, 0);
        note("CloseCamCntrlDialog", 0, grabber.CloseCamCntrlDialog());
        break;
    default:
        UseSerialPort(station);
        note("serial port", 0, 0);
        break;
    }
}

void SoakSession::UseSerialPort(Station& station) {
    if (!station.channel || station.channel->Open() != MV_OK) {
        return;
    }
    const std::uint8_t sent[] = {'a', 0, 0xFF, 'b'};
    std::uint8_t back[sizeof sent] = {};
    std::uint64_t count = 0;
    station.channel->WriteBuffer(sent, sizeof sent, &count);
    station.channel->ReadBuffer(back, sizeof back, &count);
    EXPECT_LE(count, sizeof back);
    station.channel->Close();
}

void SoakSession::TakeFrames(Station& station) {
    std::uint64_t index = 0;
    for (unsigned count = 0; count < 20 && station.grabber->GetLastFilledBuffer(&index) == MV_OK;
         ++count) {
        EXPECT_NE(station.grabber->GetFrameBuffer(index), nullptr);
        EXPECT_EQ(station.grabber->ReleaseFrameBuffer(index), MV_OK);
    }
}

void SoakSession::OrderFault() {
    std::string fault;
    const std::string camera = Draw(2) == 0 ? "A" : "B";
    const std::string entry = kEntries[Draw(std::size(kEntries))];
    switch (Draw(6)) {
    case 0:
    case 1:
        fault = "fail " + entry + " " + std::to_string(1 + Draw(3)) + " " +
                std::to_string(kCodes[Draw(std::size(kCodes))]);
        break;
    case 2:
        fault = "fail any " + std::to_string(1 + Draw(60)) + " " +
                std::to_string(kCodes[Draw(std::size(kCodes))]);
        break;
    case 3:
        fault = "frame-random " + std::to_string(Draw(1000)) + " " + std::to_string(1 + Draw(40)) +
                " " + kFrameFaults[Draw(std::size(kFrameFaults))];
        break;
    case 4:
        fault = "delay " + entry + " " + std::to_string(1 + Draw(5));
        break;
    default:
        // A camera that stays away would leave little to do. It comes back while the host looks.
        process.Control("unplug " + camera);
        process.Control("plug " + camera);
        Note("unplug, plug " + camera);
        return;
    }
    process.Control(fault);
    Note(fault);
}

// Without faults everything stops, and the SDK gives everything back.
void SoakSession::CalmDown() {
    process.Control("clear");
    for (const Station& station : stations) {
        EXPECT_EQ(station.grabber->StopSnap(), MV_OK);
        station.grabber->PrepareFrameBuffers(0);
        EXPECT_EQ(station.grabber->GetAcquisitionState(), 0u);
    }
}

// Every frame that the SDK delivers has its line, complete ones are handed over. What a camera that
// was left unclosed still had belongs to no grabber any more: each of its buffers may come once.
void SoakSession::CheckFrames() const {
    const std::uint64_t complete = frameLines.Complete() - completeBefore;
    const std::uint64_t damaged = frameLines.Damaged() - damagedBefore;
    const std::uint64_t left = frameLines.Unclosed() - unclosedBefore + reopened;
    const std::uint64_t callbacks = StatusNumber(process.Control("status"), "callbacks");
    EXPECT_GE(callbacks, complete + damaged);
    EXPECT_LE(callbacks, complete + damaged + left * kMostBuffers);
    EXPECT_EQ(deliveredFromSdk, complete);
}

void SoakSession::End() {
    // What the SDK refused to close is closed before the next shutdown.
    for (Station& station : stations) {
        EXPECT_EQ(station.grabber->DeInit(), MV_OK);
        delete station.channel;
        station.channel = nullptr;
    }
    EXPECT_EQ(process.Control("leaks"), "");
}

void SoakSession::OnFrame(std::uint64_t, std::uint32_t fromCallback, void* context) {
    auto& session = *static_cast<SoakSession*>(context);
    ++session.delivered;
    if (fromCallback != 0) {
        ++session.deliveredFromSdk;
    }
}
