// chain_bench.cpp - frames from the simulator to the host, compared with the SDK alone
#include "bench/support/baseline.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr unsigned kBuffers = 8;
constexpr unsigned kRuns = 9;
constexpr std::uint64_t kRealFrames = 300; // per run, with a camera at its own frame rate

struct Image {
    const char* format;
    unsigned width;
    unsigned height;
    std::uint64_t frames; // per run
};

constexpr Image kImages[] = {
    {"Mono8", 64, 64, 1000000},
    {"Mono8", 640, 480, 20000},
    {"Mono12p", 640, 480, 20000},
    {"YUV422_8", 640, 480, 20000},
};

class DiscardingSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override {}
    void WriteError(const char*) override {}
};

// Counts frames and waits for an expected number of them.
class FrameCounter {
public:
    void Expect(std::uint64_t frames) {
        wanted = frames;
        count = 0;
        reached.Reset();
    }
    void Count() {
        if (++count == wanted) {
            reached.Set();
        }
    }
    void Wait() { reached.Wait(platform::kInfinite); }

private:
    std::atomic<std::uint64_t> count{0};
    std::uint64_t wanted = 0;
    platform::Event reached;
};

FrameCounter counter;

struct Cost {
    double seconds;
    double processorSeconds;
};

// Measures from the start of the acquisition until the last frame has arrived.
template <typename Start>
Cost TimeFrames(std::uint64_t frames, const Start& start) {
    counter.Expect(frames);
    const double processor = platform::ProcessCpuSeconds();
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    start();
    counter.Wait();
    return {static_cast<double>(platform::MonotonicNanoseconds() - begin) / 1e9,
            platform::ProcessCpuSeconds() - processor};
}

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s failed\n", what);
        std::exit(2);
    }
}

CPyxenAPIAccess* sdk = nullptr;

void PXN_CALL CountFrame(PxnHandle camera, PxnHandle, PxnFrame* frame) {
    sdk->PxnCaptureFrameQueue(camera, frame, &CountFrame);
    counter.Count();
}

// The least that a program without the module has to do.
Cost RunSdk(const std::string& configuration, const char* id, std::uint64_t wanted) {
    CPyxenAPIAccess api;
    sdk = &api;
    Require(api.Load(configuration.c_str(), nullptr), "loading the SDK");
    PxnHandle camera = nullptr;
    Require(api.PxnCameraOpen(id, 1, &camera) == PxnErrSuccess, "opening the camera");
    std::uint32_t payload = 0;
    api.PxnPayloadSizeGet(camera, &payload);
    std::vector<std::vector<std::uint8_t>> memory(kBuffers, std::vector<std::uint8_t>(payload));
    std::vector<PxnFrame> frames(kBuffers);
    for (unsigned index = 0; index < kBuffers; ++index) {
        frames[index].buffer = memory[index].data();
        frames[index].bufferSize = payload;
        api.PxnFrameAnnounce(camera, &frames[index], sizeof(PxnFrame));
    }
    Require(api.PxnCaptureStart(camera) == PxnErrSuccess, "starting the capture");
    for (PxnFrame& frame : frames) {
        api.PxnCaptureFrameQueue(camera, &frame, &CountFrame);
    }
    const Cost cost =
        TimeFrames(wanted, [&] { api.PxnFeatureCommandRun(camera, "AcquisitionStart"); });
    api.PxnFeatureCommandRun(camera, "AcquisitionStop");
    api.PxnCaptureEnd(camera);
    api.PxnCaptureQueueFlush(camera);
    api.PxnFrameRevokeAll(camera);
    api.PxnCameraClose(camera);
    return cost;
}

void CountBuffer(std::uint64_t index, std::uint32_t, void* context) {
    static_cast<CMivoraKVNPyxenClass*>(context)->ReleaseFrameBuffer(index);
    counter.Count();
}

Cost RunModule(const std::string& ini, std::uint64_t wanted) {
    CMivoraKVNPyxenClass grabber(nullptr);
    Require(grabber.SetGrabberIni(ini.c_str(), 0) == MV_OK && grabber.Init() == MV_OK &&
                grabber.SetActCameraIndex(0) == MV_OK && grabber.OpenActCamera() == MV_OK &&
                grabber.PrepareFrameBuffers(kBuffers) == MV_OK,
            "preparing the grabber");
    grabber.InstPostProcessCallBack(&CountBuffer, &grabber);
    const Cost cost = TimeFrames(wanted, [&] { grabber.Snap(1); });
    grabber.StopSnap();
    grabber.InstPostProcessCallBack(nullptr, nullptr);
    return cost;
}

// Writes a file to the directory of the program and returns its path.
std::string Write(const char* name, const std::string& content) {
    const std::string path =
        platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name);
    std::ofstream file(path);
    file << content;
    Require(file.flush().good(), "writing the configuration");
    return path;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Runs the SDK alone and the module alternately and prints a row of the table. Returns the
// processor time per frame of the SDK alone, divided by that through the module.
double Compare(const std::string& name, const std::string& configuration, const char* id,
               std::uint64_t frames) {
    const std::string file = Write("PxnC.xml", configuration);
    const std::string ini = Write("host.ini", "");
    std::vector<double> rates[2];
    std::vector<double> processor[2];
    for (unsigned run = 0; run < kRuns; ++run) {
        const Cost costs[2] = {RunSdk(file, id, frames), RunModule(ini, frames)};
        for (unsigned variant = 0; variant < 2; ++variant) {
            rates[variant].push_back(static_cast<double>(frames) / costs[variant].seconds);
            processor[variant].push_back(costs[variant].processorSeconds * 1e6 /
                                         static_cast<double>(frames));
        }
    }
    std::printf("| %s | %.0f | %.0f | %.2f | %.2f |\n", name.c_str(), Median(rates[0]),
                Median(rates[1]), Median(processor[0]), Median(processor[1]));
    std::fflush(stdout);
    return Median(processor[0]) / Median(processor[1]);
}

void MeasureSimulator(Ratios& ratios) {
    for (const Image& image : kImages) {
        const std::string configuration =
            "<PxnC><camera id=\"bench\" freeRunning=\"true\" sensorWidth=\"640\" "
            "sensorHeight=\"480\"><feature name=\"Width\" value=\"" +
            std::to_string(image.width) + "\"/><feature name=\"Height\" value=\"" +
            std::to_string(image.height) + "\"/><feature name=\"PixelFormat\" value=\"" +
            image.format + "\"/></camera></PxnC>";
        const std::string name = std::string(image.format) + " " + std::to_string(image.width) +
                                 "x" + std::to_string(image.height);
        ratios["chain " + name + ", of the SDK's frames per processor second"] = {
            Compare(name, configuration, "bench", image.frames)};
    }
}

void UseSdk(const char* name) {
    platform::SetEnvironment(
        "PYXEN_HOME", platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name));
}

} // namespace

// chain_bench [--save|--baseline FILE]: the simulator
// chain_bench --camera ID: a real camera, which must be the first that the GenICam SDK finds
int main(int argc, char** argv) {
    DiscardingSink sink;
    MivoraInstallLogSink(&sink);
    std::printf("%s\n\n| image | frames/s, SDK alone | frames/s, through the module | processor "
                "microseconds a frame, SDK alone | through the module |\n|---|---|---|---|---|\n",
                ProcessorName().c_str());
    if (argc == 3 && std::strcmp(argv[1], "--camera") == 0) {
        UseSdk("genicam");
        Compare(argv[2], "<PxnC/>", argv[2], kRealFrames);
        return 0;
    }
    UseSdk("simulator");
    Ratios ratios;
    MeasureSimulator(ratios);
    return FinishRatios(argc, argv, ratios);
}
