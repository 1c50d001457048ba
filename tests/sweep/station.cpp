// station.cpp - a grabber that a run uses, and its operations
#include "tests/sweep/station.h"

#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/support/wait_until.h"
#include "tests/sweep/list_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdarg>

namespace sweep {
namespace {

using support::AllocationPause;

constexpr std::uint32_t kAsynchronousSnap = 2;
constexpr std::size_t kAddressDigits = 16;

/// Addresses differ from run to run.
void HideAddresses(std::string& line) {
    for (std::size_t at = line.find("0x"); at != std::string::npos; at = line.find("0x", at + 2)) {
        const auto begin = line.begin() + static_cast<std::ptrdiff_t>(at + 2);
        const auto end = std::find_if_not(
            begin, line.end(), [](unsigned char digit) { return std::isxdigit(digit) != 0; });
        if (end - begin == kAddressDigits) {
            line.replace(begin, end, "*");
        }
    }
}

} // namespace

std::string Answer::Text() const {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += (index == 0 ? "" : " ") + std::to_string(values[index]);
    }
    return text;
}

void SweepSink::Write(int level, const char* format, ...) {
    const AllocationPause pause;
    char text[4096];
    std::va_list arguments;
    va_start(arguments, format);
    MivoraFormatLogText(text, sizeof text, format, arguments);
    va_end(arguments);
    RecordingSink::Write(level, "%s", text);
}

void SweepSink::WriteError(const char* text) {
    const AllocationPause pause;
    RecordingSink::WriteError(text);
}

Station::Station(const std::string& iniDirectory, const std::string& ini, std::size_t cameraToUse)
    : directory(iniDirectory), camera(cameraToUse) {
    MivoraInstallLogSink(&sink);
    grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
    MivoraInstallLogSink(nullptr);
    EXPECT_EQ(grabber->SetGrabberIni(platform::JoinPath(directory, ini).c_str(), 0), MV_OK);
    EXPECT_EQ(grabber->InstPostProcessCallBack(&Receive, this), MV_OK);
    channel = std::make_unique<CCmdKVNPyxen>(grabber.get(), grabber->SerialMutex());
    pyxen::SerialSettings settings;
    std::snprintf(settings.portName, sizeof settings.portName, "PYXENSERIALPORT2");
    channel->SetSettings(settings);
}

Station::~Station() {
    channel.reset();
    grabber->InstPostProcessCallBack(nullptr, nullptr);
    grabber.reset();
}

void Station::Perform(const Operations& operations, Transcript& transcript) {
    for (const Operation& operation : operations) {
        const Answer answer = operation.run(*this);
        const AllocationPause pause;
        Step step{operation.text, answer.Text(), {}};
        for (std::string& line : sink.Take()) {
            step.lines.push_back(Normal(std::move(line)));
        }
        transcript.push_back(std::move(step));
    }
}

bool Station::Deliver(std::uint64_t frame) {
    // The SDK's own memory. The callback itself allocates nothing, which has its own test.
    const AllocationPause pause;
    const bool isAsynchronous = grabber->GetAcquisitionState() == kAsynchronousSnap;
    const bool isDelivered = sdk.DeliverFrom(camera, frame);
    if (isDelivered && isAsynchronous) {
        // What its thread logs belongs to this operation.
        EXPECT_TRUE(support::WaitUntil([&] { return grabber->GetAcquisitionState() == 0; }));
    }
    return isDelivered;
}

unsigned Station::TakeFilledBuffers() {
    unsigned count = 0;
    std::uint64_t index = 0;
    while (grabber->GetLastFilledBuffer(&index) == MV_OK) {
        EXPECT_NE(grabber->GetFrameBuffer(index), nullptr);
        EXPECT_EQ(grabber->ReleaseFrameBuffer(index), MV_OK);
        ++count;
    }
    return count;
}

void Station::Receive(std::uint64_t, std::uint32_t, void* context) {
    ++static_cast<Station*>(context)->handedOver;
}

std::string Station::Normal(std::string line) const {
    Replace(line, directory, "{directory}");
    Replace(line, support::BuiltFile("sweep"), "{sdk}");
    Replace(line, platform::LibraryFileName("PxnC"), "PxnC");
    Replace(line, "\\", "/");
    HideAddresses(line);
    return line;
}

} // namespace sweep
