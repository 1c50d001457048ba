// callback_bench.cpp - cost of the frame callback without pixel conversion
#include "bench/support/baseline.h"
#include "bench/support/median_times.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/mutex.h"

#include <cstdarg>
#include <cstdio>
#include <memory>

using namespace pyxen;

namespace {

volatile std::uint64_t queued = 0;

PxnError PXN_CALL QueueFrame(PxnHandle, const PxnFrame*, PxnFrameCallback) {
    queued = queued + 1;
    return PxnErrSuccess;
}

void PXN_CALL BareCallback(PxnHandle camera, PxnHandle, PxnFrame* frame) {
    if (frame->receiveStatus == PxnFrameStatusComplete) {
        QueueFrame(camera, frame, &BareCallback);
    }
}

void PXN_CALL ModuleCallback(PxnHandle, PxnHandle, PxnFrame* frame) {
    const FrameVisit visit(frame);
    if (IFrameReceiver* const receiver = visit.Receiver()) {
        receiver->OnFrame(frame);
    }
}

void PXN_CALL SlotAlone(PxnHandle, PxnHandle, PxnFrame* frame) {
    static_cast<CPyxenGrabber*>(frame->context[0])->FrameCallback(frame);
}

void FormatLine(char (&line)[512], const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    MivoraFormatLogText(line, sizeof line, format, arguments);
    va_end(arguments);
}

// Formats every line and discards it.
class FormattingSink final : public ILogSink {
public:
    void Write(int, const char* format, ...) override {
        va_list arguments;
        va_start(arguments, format);
        MivoraFormatLogText(line, sizeof line, format, arguments);
        va_end(arguments);
    }
    void WriteError(const char*) override {}

private:
    char line[512];
};

// Discards every line unformatted, as the programs do with logging disabled.
class DiscardingSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override {}
    void WriteError(const char*) override {}
};

// A grabber in continuous acquisition, with an SDK that queues frames at no cost.
class RunningGrabber final : public IFrameReceiver {
public:
    explicit RunningGrabber(ILogSink* sink) {
        MivoraInstallLogSink(sink);
        grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
        MivoraInstallLogSink(nullptr);
        grabber->Api().PxnCaptureFrameQueue = QueueFrame;
        grabber->CMivoraGrabber::PrepareFrameBuffers(1);
        grabber->SetAcquisitionState(1);
        frames = std::make_unique<FramePool>(static_cast<CPyxenGrabber*>(grabber.get()), *this);
        FramePool::Reshaping(*frames).Resize(1);
        Frame()->frameId = 123456;
        Frame()->width = 640;
        Frame()->height = 480;
        Frame()->bufferSize = 640 * 480;
    }
    ~RunningGrabber() { grabber->SetAcquisitionState(0); }
    RunningGrabber(const RunningGrabber&) = delete;
    RunningGrabber& operator=(const RunningGrabber&) = delete;

    PxnFrame* Frame() { return (*frames)[0].Frame(); }
    CMivoraKVNPyxenClass& Grabber() { return *grabber; }

    void OnFrame(PxnFrame* frame) override { grabber->FrameCallback(frame); }

private:
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::unique_ptr<FramePool> frames;
};

// Calls through a pointer that cannot be optimised away, as the SDK does.
std::function<void(std::size_t)> Calling(PxnFrameCallback callback, PxnFrame* frame) {
    return [callback, frame](std::size_t) {
        const volatile PxnFrameCallback pointer = callback;
        pointer(nullptr, nullptr, frame);
    };
}

} // namespace

int main(int argc, char** argv) {
    StartMeasuring(argc, argv);
    FormattingSink formatting;
    DiscardingSink discarding;
    RunningGrabber quiet(nullptr);
    RunningGrabber discarded(&discarding);
    RunningGrabber logged(&formatting);
    char line[512];
    const PxnFrame& frame = *logged.Frame();
    const auto format = [&](std::size_t turn) {
        FormatLine(
            line,
            "CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = %I64u, total count = %I64u. [RcvSize = %u, %ux%u, PixelFmt = %08X, UniqueId = %I64u]",
            std::uint64_t{0}, std::uint64_t{turn}, frame.bufferSize, frame.width, frame.height,
            frame.pixelFormat, frame.frameId);
    };
    FrameNote note;
    FrameHold hold;
    platform::Mutex mutex;
    auto times = MedianTimes(
        "callback", {{"bare SDK callback", Calling(&BareCallback, quiet.Frame())},
                     {"module without a sink", Calling(&ModuleCallback, quiet.Frame())},
                     {"its slot alone", Calling(&SlotAlone, quiet.Frame())},
                     {"module with a discarding sink", Calling(&ModuleCallback, discarded.Frame())},
                     {"module with a formatting sink", Calling(&ModuleCallback, logged.Frame())},
                     {"formatting its line alone", format},
                     {"part: the host's ring",
                      [&](std::size_t) {
                          quiet.Grabber().DoPostProcess(0, 1);
                      }},
                     {"part: noting the frame",
                      [&](std::size_t turn) {
                          note.Store(frame, turn, true);
                      }},
                     {"part: the mutex of queueing again",
                      [&](std::size_t) {
                          if (mutex.TryLock()) {
                              mutex.Unlock();
                          }
                      }},
                     {"part: who may write to the frame", [&](std::size_t) {
                          hold.BeginQueue();
                      }}});
    const double bare = times.at("bare SDK callback");
    std::printf("%s\n\n| frame callback | ns | over the bare one |\n|---|---|---|\n",
                ProcessorName().c_str());
    for (const auto& [name, time] : times) {
        std::printf("| %s | %.1f | %.1f |\n", name.c_str(), time, time - bare);
    }
    const double formatTime = times.at("formatting its line alone");
    return FinishRatios(argc, argv,
                        {{"callback with a formatting sink, of the formatting's speed",
                          {formatTime / times.at("module with a formatting sink")}},
                         {"callback without a sink, of the formatting's speed",
                          {formatTime / times.at("module without a sink")}}});
}
